// The list of the strings that mark a link in a page, "Tag Manager".
#pragma once

#include "windows/RecordWindow.h"

namespace mv {

class frmTagManager : public RecordWindow {
  Q_OBJECT
 public:
  frmTagManager();

  // "init" reloads the list, "reset" clears it.
  void buildWorkingLists(const std::string& command, long id = 0) override;

 protected:
  RecordEditor* makeEditor(int row) override;
};

}  // namespace mv
