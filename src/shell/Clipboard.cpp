#include "shell/Clipboard.h"

#include <QApplication>
#include <QClipboard>
#include <QFocusEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextDocumentFragment>
#include <QTextEdit>
#include <functional>

namespace mv {

namespace {

// What the commands need of a control: its selected text, and a way to replace it (none for a read-only control).
struct Selection {
  QString text;
  std::function<void(const QString&)> replace;
};

template <class TextEdit>
Selection selectionOf(TextEdit* edit) {
  Selection selection{edit->textCursor().selection().toPlainText(), {}};
  if (!edit->isReadOnly()) selection.replace = [edit](const QString& text) { edit->insertPlainText(text); };
  return selection;
}

Selection activeSelection() {
  QWidget* control = QApplication::focusWidget();
  if (auto* edit = qobject_cast<QLineEdit*>(control)) {
    Selection selection{edit->selectedText(), {}};
    if (edit->echoMode() != QLineEdit::Normal) selection.text.clear();  // a password stays where it is
    if (!edit->isReadOnly()) selection.replace = [edit](const QString& text) { edit->insert(text); };
    return selection;
  }
  if (auto* edit = qobject_cast<QTextEdit*>(control)) return selectionOf(edit);
  if (auto* edit = qobject_cast<QPlainTextEdit*>(control)) return selectionOf(edit);
  return {};
}

class SelectionKeeper : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::FocusOut || !qobject_cast<QLineEdit*>(watched)) return false;
    if (static_cast<QFocusEvent*>(event)->reason() != Qt::MenuBarFocusReason) return false;
    QFocusEvent asUnderAPopup(QEvent::FocusOut, Qt::PopupFocusReason);
    watched->event(&asUnderAPopup);
    return true;
  }
};

}  // namespace

void keepSelectionsUnderMenus() {
  static SelectionKeeper* const keeper = new SelectionKeeper(qApp);
  qApp->installEventFilter(keeper);
}

void cutToClipboard() {
  const Selection selection = activeSelection();
  if (selection.text.isEmpty() || !selection.replace) return;
  QApplication::clipboard()->setText(selection.text);
  selection.replace({});
}

void copyToClipboard() {
  const Selection selection = activeSelection();
  if (!selection.text.isEmpty()) QApplication::clipboard()->setText(selection.text);
}

void pasteFromClipboard() {
  const Selection selection = activeSelection();
  const QString text = QApplication::clipboard()->text();
  if (selection.replace && !text.isEmpty()) selection.replace(text);
}

}  // namespace mv
