#include "windows/EditorWindow.h"

#include <QKeyEvent>
#include <QPushButton>

#include "windows/MainFrame.h"

namespace mv {

EditorWindow::EditorWindow(int width, int height) : ChildWindow(width, height) { setOpens(Opens::Cascaded); }

void EditorWindow::open() {
  run([this] { initWindow(); });
  showChild();
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
