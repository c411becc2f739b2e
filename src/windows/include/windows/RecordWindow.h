// Base of the managers, the list windows of the records of one kind: New, Edit and Delete, the row last chosen, what is
// said when none is.
//
// A subclass hands a description to the constructor and calls load() at the end of its own; it makes the editors, and
// adds what its kind alone has.
#pragma once

#include <functional>
#include <vector>

#include "store/Id.h"
#include "windows/ListWindow.h"

namespace mv {

class RecordEditor;

class RecordWindow : public ListWindow {
  Q_OBJECT
 protected:
  struct Description {
    const char* kind = "";  // "Rule": caption and messages speak of it, "Rule Manager", "No Rule Selected"
    int width = 0;          // twips
    int height = 0;
    const char* windowName = "";  // object names
    const char* listName = "";
    std::vector<ListColumn> columns;  // the first is the record's name, the last its identifier
    bool opensInFreeSpace = false;    // otherwise at the top left
    const char* editCaption = "";     // of the editor of a record; its name follows
    bool toolTips = true;             // of the buttons
    bool sorted = true;               // a rebuild keeps the order that a header was clicked for
    bool keepsChosen = false;         // a rebuild marks the row last chosen again
    // The texts of the rows. Raises DatabaseError.
    std::function<std::vector<QStringList>()> readRows;
    // Deletes a record with all that refers to it. Raises DatabaseError.
    std::function<void(Id)> remove;
  };
  explicit RecordWindow(Description description);

  // An editor, its caption that of a new record. For an existing one, the one in `row`, it is given what the list knows
  // of it; its mode, identifier and caption are set by the caller. `row` is -1 for a new one.
  virtual RecordEditor* makeEditor(int row) = 0;
  // May the record in `row` be deleted? A subclass that says no may tell why.
  virtual bool mayDelete(int) { return true; }

  std::vector<QStringList> readRows() override { return description_.readRows(); }
  void editChosen() override;
  void deleteChosen() override;

  // Edit and Delete of the toolbar.
  void setChangeEnabled(bool enabled);

 private:
  void addButtons();
  void openNew();

  Description description_;
  QToolButton* edit_ = nullptr;
  QToolButton* delete_ = nullptr;
};

}  // namespace mv
