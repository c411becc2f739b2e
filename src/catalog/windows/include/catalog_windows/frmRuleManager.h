// The list of rules, "Rule Manager".
#pragma once

#include "windows/ListWindow.h"

namespace mv {

class frmRuleManager : public ListWindow {
  Q_OBJECT
 public:
  frmRuleManager();

 protected:
  void fillList() override;
  void openNew() override;
  void editChosen() override;
  void deleteChosen() override;
};

}  // namespace mv
