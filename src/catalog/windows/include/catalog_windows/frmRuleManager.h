// The list of rules, "Rule Manager".
#pragma once

#include "windows/RecordWindow.h"

namespace mv {

class frmRuleManager : public RecordWindow {
  Q_OBJECT
 public:
  frmRuleManager();

 protected:
  RecordEditor* makeEditor(int row) override;
};

}  // namespace mv
