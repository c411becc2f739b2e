#include "windows/ChoiceBox.h"

#include <QKeyEvent>
#include <QWheelEvent>

namespace mv {

ChoiceBox::ChoiceBox(QWidget* parent) : QComboBox(parent) {}

void ChoiceBox::keyPressEvent(QKeyEvent* event) {
  const QString text = event->text();
  if (text.isEmpty() || !text[0].isPrint()) QComboBox::keyPressEvent(event);
}

void ChoiceBox::wheelEvent(QWheelEvent* event) { event->ignore(); }

}  // namespace mv
