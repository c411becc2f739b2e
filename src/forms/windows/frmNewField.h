// The editor of one field of a login form definition. The opener chooses the caption.
#pragma once

#include <QString>
#include <string>

#include "windows/RecordEditor.h"

class QCheckBox;
class QGridLayout;
class QLineEdit;

namespace mv {

struct FormField;

class frmNewField : public RecordEditor {
  Q_OBJECT
 public:
  frmNewField();

  // Set by the opener, in mode "new" the form only.
  Id FormID = 0;
  Id& FieldID = RecordId;
  QString Name;
  QString LogicalNumber;
  QString SearchString;
  std::string SuppliedByUser = "no";
  QString Prompt;
  QString FieldName;
  QString FieldValue;

 protected:
  void loadRecord() override;
  Checks checks(Choice choice) const override;
  void insertRecord() override;
  bool updateRecord() override;

 private:
  QLineEdit* addBox(QGridLayout& grid, const char* labelName, const QString& caption, const char* boxName);
  FormField record() const;

  QLineEdit* txtName_;
  QLineEdit* txtFieldNumber_;
  QLineEdit* txtSearchString_;
  QLineEdit* txtPrompt_;
  QLineEdit* txtFieldName_;
  QLineEdit* txtFieldValue_;
  QCheckBox* chkSuppliedByUser_;
};

}  // namespace mv
