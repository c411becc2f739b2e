// The editor of one field of a login form definition. The opener chooses the caption.
#pragma once

#include <QString>
#include <memory>
#include <string>

#include "windows/RecordEditor.h"

namespace mv {

struct FormField;
namespace Ui {
class frmNewField;
}

class frmNewField : public RecordEditor {
  Q_OBJECT
 public:
  frmNewField();
  ~frmNewField() override;

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
  FormField record() const;

  std::unique_ptr<Ui::frmNewField> ui_;
};

}  // namespace mv
