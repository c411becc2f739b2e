// The list of the strings that mark a link in a page, "Tag Manager".
#pragma once

#include "windows/ListWindow.h"

namespace mv {

class frmTagManager : public ListWindow {
  Q_OBJECT
 public:
  frmTagManager();

  // "init" reloads the list, "reset" clears it.
  void buildWorkingLists(const std::string& command, long id = 0) override;

 protected:
  void fillList() override;
  void openNew() override;
  void editChosen() override;
  void deleteChosen() override;
};

}  // namespace mv
