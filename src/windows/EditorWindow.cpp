#include "windows/EditorWindow.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

#include "windows/MainFrame.h"

namespace mv {

EditorWindow::EditorWindow(const QString& caption, int width, int height) : ChildWindow(width, height) {
  if (!caption.isEmpty()) setCaption(caption);
  setOpens(Opens::Cascaded);
}

void EditorWindow::open() {
  run([this] { initWindow(); });
  showChild();
}

QLabel* EditorWindow::makeLabel(const char* name, const QString& text, QWidget* buddy) {
  auto* label = new QLabel(text, this);
  label->setObjectName(QString::fromLatin1(name));
  label->setBuddy(buddy);
  return label;
}

QHBoxLayout* EditorWindow::makeButtons(const QString& okName, const QString& applyName, const QString& cancelName,
                                       const QString& okCaption, const QString& cancelCaption,
                                       const QString& applyCaption) {
  auto* row = new QHBoxLayout;
  row->addStretch();
  const auto add = [&](const QString& name, const QString& caption) {
    auto* button = new QPushButton(caption, this);
    button->setObjectName(name);
    row->addWidget(button);
    return button;
  };
  QPushButton* ok = add(okName, okCaption);
  ok->setDefault(true);
  QPushButton* apply = applyName.isEmpty() ? nullptr : add(applyName, applyCaption);
  connectButtons(ok, apply, add(cancelName, cancelCaption));
  return row;
}

void EditorWindow::connectButtons(QPushButton* ok, QPushButton* apply, QPushButton* cancel) {
  ok_ = ok;
  cancel_ = cancel;
  connect(ok, &QPushButton::clicked, this, [this] { acceptAndClose(); });
  if (apply) connect(apply, &QPushButton::clicked, this, [this] { run([this] { this->apply(); }); });
  connect(cancel, &QPushButton::clicked, this, [this] { cancelAndClose(); });
}

void EditorWindow::acceptAndClose() {
  run([this] {
    if (accept()) unload();
  });
}

void EditorWindow::cancelAndClose() {
  const Busy busy(*this);
  run([this] { cancel(); });
  run([this] { unload(); });
}

void EditorWindow::activated() {
  if (MainFrame* frame = MainFrame::current()) frame->setClipboardItemsEnabled(true);
}

void EditorWindow::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter) {
    auto* focused = qobject_cast<QPushButton*>(focusWidget());
    QPushButton* button = focused && focused->hasFocus() ? focused : ok_;
    if (button) button->click();
  } else if (event->key() == Qt::Key_Escape && cancel_) {
    cancel_->click();
  } else {
    ChildWindow::keyPressEvent(event);
  }
}

}  // namespace mv
