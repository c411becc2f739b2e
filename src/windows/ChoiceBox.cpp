#include "windows/ChoiceBox.h"

#include <QKeyEvent>
#include <QWheelEvent>

namespace mv {

ChoiceBox::ChoiceBox(QWidget* parent) : QComboBox(parent) {}

ChoiceBox::ChoiceBox(const QString& objectName, QWidget* parent) : QComboBox(parent) { setObjectName(objectName); }

void ChoiceBox::keyPressEvent(QKeyEvent* event) {
  const QString text = event->text();
  if (text.isEmpty() || !text[0].isPrint()) QComboBox::keyPressEvent(event);
}

void ChoiceBox::wheelEvent(QWheelEvent* event) { event->ignore(); }

}  // namespace mv
