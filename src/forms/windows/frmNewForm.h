// The editor of one login form definition, with the list of its fields. The opener chooses the caption of an
// existing one.
#pragma once

#include <QString>
#include <memory>

#include "windows/RecordEditor.h"

namespace mv {

struct Form;
namespace Ui {
class frmNewForm;
}

class frmNewForm : public RecordEditor {
  Q_OBJECT
 public:
  frmNewForm();
  ~frmNewForm() override;

  Id& FormID = RecordId;
  // Set by the opener in mode "edit".
  QString FormType;
  QString Name;
  QString Description;

  // "fields" rebuilds the list of fields, "formtype" selects FormType; other words do nothing.
  void buildWorkingLists(const std::string& command, long id = 0) override;

 protected:
  void initWindow() override;
  void loadRecord() override { buildWorkingLists("formtype"); }
  Checks checks(Choice choice) const override;
  void insertRecord() override;
  bool updateRecord() override;
  void deleteRecord() override;
  void activated() override;

 private:
  void connectFields();
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
  Form record() const;

  std::unique_ptr<Ui::frmNewForm> ui_;
  Id fieldId_ = 0;  // last clicked, 0 when none
};

}  // namespace mv
