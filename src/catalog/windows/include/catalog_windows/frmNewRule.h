// The rule editor: If a part of a link compares so with This, Then. The opener chooses the caption.
#pragma once

#include <cstdint>

#include "windows/EditorWindow.h"

class QComboBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace mv {

class EntryBox;

class frmNewRule : public EditorWindow {
  Q_OBJECT
 public:
  frmNewRule();

  std::int64_t RuleId = 0;  // set by the opener in mode "edit"; drawn by the editor in mode "new"

  // "fields" and "ruletypes" fill the lists "If" and "Then", nothing is chosen then; other words do nothing. Raises
  // DatabaseError.
  void buildWorkingLists(const std::string& command, long id = 0) override;

 protected:
  void initWindow() override;
  bool accept() override;

 private:
  void buildFields();
  QHBoxLayout* makePathRow();
  void loadRule();
  void ruleTypeChosen();
  void browse();
  bool isComplete();
  bool save();

  QComboBox* cmboFields_;
  QComboBox* cmboOperator_;
  EntryBox* txtValue_;
  QComboBox* cmboRuleTypes_;
  QLineEdit* txtPath_;
  QPushButton* cmdBrowse_;
  EntryBox* txtRuleName_;
  QLabel* lblId_;
};

}  // namespace mv
