// Base of the editors of one record: its number, the checks before it is saved, insert or update, what is said when it
// is gone, taking back on Cancel what Apply made, telling the list window.
//
// A subclass hands a description to the constructor and says what its record is: loadRecord(), checks(),
// insertRecord(), updateRecord(); where it has an Apply button, deleteRecord().
#pragma once

#include <vector>

#include "desktop/Dialogs.h"
#include "store/Id.h"
#include "windows/EditorWindow.h"

class QLabel;

namespace mv {

class RecordEditor : public EditorWindow {
  Q_OBJECT
 public:
  // Set by the opener in mode "edit", drawn by the editor in mode "new". Editors give it a name of their own, too.
  Id RecordId = 0;

 protected:
  struct Description {
    int width = 0;  // twips
    int height = 0;
    const char* record = "";          // what the user is told of: "This filter has been deleted meanwhile."
    const char* manager = "";         // position key of the list window that shows the records
    bool rebuildsManager = false;     // the list is rebuilt at once, otherwise when it is activated next
    const char* sequence = "";        // where a new record's identifier is drawn when the editor opens
    bool numberedByDatabase = false;  // the database gives the identifier; one of the sequence is only shown
  };
  explicit RecordEditor(const Description& description);

  enum class Choice { Ok, Apply };
  // What must not be so when the record is saved, and the message then. Without a title it has the program's.
  struct Check {
    bool failed;
    const char* title;
    QString text;
    QWidget* box = nullptr;  // what the message names: gets the focus, on its tab
    MessageIcon icon = MessageIcon::Exclamation;
  };
  using Checks = std::vector<Check>;

  // Mode "edit", when the editor opens: shows the record. Raises DatabaseError.
  virtual void loadRecord() {}
  // In the order in which they are made; the first that fails is told, and nothing is saved. Raises DatabaseError.
  virtual Checks checks(Choice choice) const = 0;
  // Raises DatabaseError.
  virtual void insertRecord() = 0;
  // False: it is gone, and nothing is stored. Raises DatabaseError.
  virtual bool updateRecord() = 0;
  // Cancel takes the record back that Apply made. Raises DatabaseError.
  virtual void deleteRecord() {}
  // The record has been stored, or taken back: tells the manager. Raises DatabaseError.
  virtual void recordChanged();
  // An update found nothing: says so.
  virtual void sayGone();

  // The control that has the focus when the editor opens.
  void startIn(QWidget* control) { firstControl_ = control; }
  // The form's label that shows the identifier once there is one, and is read as "Identifier" with it.
  void showNumberIn(QLabel* label) { idLabel_ = label; }
  // Did this editor insert its record?
  bool isCreator() const { return isCreator_; }

  // Draws the identifier of a new record, or loads an existing one.
  void initWindow() override;
  bool accept() override { return isComplete(Choice::Ok) && save(); }
  void apply() override;
  void cancel() override;

 private:
  bool isComplete(Choice choice);
  void bringTo(QWidget* box);
  bool save();
  // False when no identifier is to be had.
  bool saveNew();
  void drawNumber();
  void showNumber();

  Description description_;
  QWidget* firstControl_ = nullptr;
  QLabel* idLabel_ = nullptr;
  bool isCreator_ = false;
};

}  // namespace mv
