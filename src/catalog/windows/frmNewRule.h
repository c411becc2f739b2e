// The rule editor: If a part of a link compares so with This, Then. The opener chooses the caption of an
// existing one.
#pragma once

#include "windows/RecordEditor.h"

class QComboBox;
class QHBoxLayout;
class QLineEdit;
class QPushButton;

namespace mv {

class EntryBox;
struct Rule;

class frmNewRule : public RecordEditor {
  Q_OBJECT
 public:
  frmNewRule();

  Id& RuleId = RecordId;

  // "fields" and "ruletypes" fill the lists "If" and "Then", nothing is chosen then; other words do nothing. Raises
  // DatabaseError.
  void buildWorkingLists(const std::string& command, long id = 0) override;

 protected:
  void initWindow() override;
  void loadRecord() override;
  Checks checks(Choice choice) const override;
  void insertRecord() override;
  bool updateRecord() override;

 private:
  void buildFields();
  QHBoxLayout* makePathRow();
  void ruleTypeChosen();
  void browse();
  Rule record() const;

  QComboBox* cmboFields_;
  QComboBox* cmboOperator_;
  EntryBox* txtValue_;
  QComboBox* cmboRuleTypes_;
  QLineEdit* txtPath_;
  QPushButton* cmdBrowse_;
  EntryBox* txtRuleName_;
};

}  // namespace mv
