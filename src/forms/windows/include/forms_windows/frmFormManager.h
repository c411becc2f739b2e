// The list of login form definitions, "Form Manager". The built-in ones can be neither edited nor deleted here.
#pragma once

#include "windows/RecordWindow.h"

namespace mv {

class frmFormManager : public RecordWindow {
  Q_OBJECT
 public:
  frmFormManager();

  // "init" rebuilds the list, "cannotmodify" enables Edit and Delete unless a built-in form is chosen.
  void buildWorkingLists(const std::string& command, long id = 0) override;

 protected:
  RecordEditor* makeEditor(int row) override;
  void editChosen() override;
  bool mayDelete(int row) override;
};

}  // namespace mv
