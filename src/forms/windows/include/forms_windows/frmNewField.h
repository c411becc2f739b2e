// The editor of one field of a login form definition. The opener chooses the caption.
#pragma once

#include <QString>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "database/Statement.h"
#include "windows/EditorWindow.h"

class QCheckBox;
class QGridLayout;
class QLineEdit;

namespace mv {

class frmNewField : public EditorWindow {
  Q_OBJECT
 public:
  frmNewField();

  // Set by the opener, in mode "new" the form only.
  std::int32_t FormID = 0;
  std::int64_t FieldID = 0;  // drawn by the editor in mode "new"
  QString Name;
  QString LogicalNumber;
  QString SearchString;
  std::string SuppliedByUser = "no";
  QString Prompt;
  QString FieldName;
  QString FieldValue;

 protected:
  void initWindow() override;
  bool accept() override;

 private:
  QLineEdit* addBox(QGridLayout& grid, const char* labelName, const QString& caption, const char* boxName);
  // In the order of the columns.
  using Value = std::pair<SqlText, Literal>;
  std::vector<Value> values() const;
  bool save();
  bool insertRow();
  bool updateRow();
  bool refuse(const QString& text);

  QLineEdit* txtName_;
  QLineEdit* txtFieldNumber_;
  QLineEdit* txtSearchString_;
  QLineEdit* txtPrompt_;
  QLineEdit* txtFieldName_;
  QLineEdit* txtFieldValue_;
  QCheckBox* chkSuppliedByUser_;
};

}  // namespace mv
