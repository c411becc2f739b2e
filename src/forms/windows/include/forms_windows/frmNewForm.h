// The editor of one login form definition, with the list of its fields. The opener chooses the caption.
#pragma once

#include <QString>
#include <cstdint>

#include "windows/EditorWindow.h"

class QComboBox;
class QPushButton;

namespace mv {

class EntryBox;
class ListView;

class frmNewForm : public EditorWindow {
  Q_OBJECT
 public:
  frmNewForm();

  // Set by the opener in mode "edit"; in mode "new" the editor draws the identifier.
  std::int32_t FormID = 0;
  QString FormType;
  QString Name;
  QString Description;

  // "fields" rebuilds the list of fields, "formtype" selects FormType; other words do nothing.
  void buildWorkingLists(const std::string& command, long id = 0) override;

 protected:
  void initWindow() override;
  bool accept() override;
  void apply() override;
  void cancel() override;
  void activated() override;

 private:
  QWidget* makeGeneralPage();
  ListView* makeFieldList();
  QWidget* makeFieldsPage();
  void fillFields();
  void chooseField(int row);
  // The row of the field last clicked, -1 when there is none, or when the user has unmarked it.
  int chosenRow() const;
  void enableFieldButtons();
  // False, after a message, as long as the form has never been stored.
  bool isStored();
  void openNewField();
  void openEditField();
  void deleteField();
  // False, after a message, when the form is gone or no identifier is to be had.
  bool save();
  bool writeRow();

  bool savedOnce_ = false;    // a new form stored with Apply: Cancel takes it back
  std::int64_t fieldId_ = 0;  // last clicked, 0 when none
  EntryBox* txtName_;
  EntryBox* txtDescription_;
  QComboBox* cmboFormType_;
  ListView* lvwFields_;
  QPushButton* cmdEditField_;
  QPushButton* cmdDeleteField_;
};

}  // namespace mv
