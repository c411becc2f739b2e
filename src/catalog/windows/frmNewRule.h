// The rule editor: If a part of a link compares so with This, Then. The opener chooses the caption of an
// existing one.
#pragma once

#include <memory>

#include "windows/RecordEditor.h"

namespace mv {

struct Rule;
namespace Ui {
class frmNewRule;
}

class frmNewRule : public RecordEditor {
  Q_OBJECT
 public:
  frmNewRule();
  ~frmNewRule() override;

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
  void ruleTypeChosen();
  void browse();
  Rule record() const;

  std::unique_ptr<Ui::frmNewRule> ui_;
};

}  // namespace mv
