// Base of the editors: the mode, the buttons OK, Apply and Cancel and their keys (Enter, Escape), closing.
//
// An editor is a new window for every New and Edit. The opener sets its public members and calls open(), which runs
// initWindow() guarded and shows the window.
#pragma once

#include <QString>
#include <string_view>

#include "windows/ChildWindow.h"

class QHBoxLayout;
class QLabel;
class QPushButton;

namespace mv {

// Whether an editor makes a record or changes one. Openers write it as a word, "new" or "edit".
class EditorMode {
 public:
  enum Value { New, Edit };

  constexpr EditorMode(Value value) : value_(value) {}
  constexpr EditorMode(std::string_view word) : value_(word == "new" ? New : Edit) {}
  constexpr EditorMode(const char* word) : EditorMode(std::string_view(word)) {}
  friend constexpr bool operator==(EditorMode, EditorMode) = default;

 private:
  Value value_;
};

class EditorWindow : public ChildWindow {
  Q_OBJECT
 public:
  EditorMode Mode = EditorMode::New;

  // Loads the editor from its members and shows it.
  void open();

 protected:
  // An empty caption leaves it to the window's form.
  EditorWindow(const QString& caption, int width, int height);

  bool isNew() const { return Mode == EditorMode::New; }

  virtual void initWindow() = 0;
  // Checks and saves. True: the editor closes. Raises DatabaseError (the editor then stays open).
  virtual bool accept() = 0;
  // Checks and saves; the editor stays.
  virtual void apply() {}
  // Cancel was chosen; the editor closes afterwards.
  virtual void cancel() {}

  // The buttons of the form; OK is its default one, and there may be no Apply. To be called before the window opens.
  void connectButtons(QPushButton* ok, QPushButton* apply, QPushButton* cancel);
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
  QPushButton* cancel_ = nullptr;
};

}  // namespace mv
