// Base of the editors: the mode, the buttons OK, Apply and Cancel and their keys (Enter, Escape), closing.
//
// An editor is a new window for every New and Edit. The opener sets its public members and calls open(), which runs
// initWindow() guarded and shows the window.
#pragma once

#include <string_view>

#include "windows/ChildWindow.h"

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
  // In twips, frame included.
  EditorWindow(int width, int height);

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

  void activated() override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void acceptAndClose();
  void cancelAndClose();

  QPushButton* ok_ = nullptr;
  QPushButton* cancel_ = nullptr;
};

}  // namespace mv
