// Base of the editors: the mode, the buttons OK, Apply and Cancel and their keys (Enter, Escape), closing.
//
// An editor is a new window for every New and Edit. The opener sets its public members and calls open(), which runs
// initWindow() guarded and shows the window.
#pragma once

#include <QString>
#include <string>

#include "windows/ChildWindow.h"

class QHBoxLayout;
class QLabel;
class QPushButton;

namespace mv {

class EditorWindow : public ChildWindow {
  Q_OBJECT
 public:
  std::string Mode = "new";  // "new" or "edit"

  // Loads the editor from its members and shows it.
  void open();

 protected:
  EditorWindow(const QString& caption, int width, int height);

  virtual void initWindow() = 0;
  // Checks and saves. True: the editor closes. Raises DatabaseError (the editor then stays open).
  virtual bool accept() = 0;
  // Checks and saves; the editor stays.
  virtual void apply() {}
  // Cancel was chosen; the editor closes afterwards.
  virtual void cancel() {}

  // A label of the window for `buddy`, which its mnemonic, if it has one, brings the focus to.
  QLabel* makeLabel(const char* name, const QString& text, QWidget* buddy);
  // A row of buttons: OK (default), Apply when its name is not empty, Cancel. Object names and captions as given.
  QHBoxLayout* makeButtons(const QString& okName, const QString& applyName, const QString& cancelName,
                           const QString& okCaption = "OK", const QString& cancelCaption = "Cancel",
                           const QString& applyCaption = "&Apply");
  QPushButton& okButton() { return *ok_; }

  void activated() override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void acceptAndClose();
  void cancelAndClose();

  QPushButton* ok_ = nullptr;
  QPushButton* apply_ = nullptr;
  QPushButton* cancel_ = nullptr;
};

}  // namespace mv
