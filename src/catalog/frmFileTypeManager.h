// The list of file types, "FileType Manager".
#pragma once

#include "app/ListWindow.h"

namespace mv {

class frmFileTypeManager : public ListWindow {
  Q_OBJECT
 public:
  frmFileTypeManager();

  // "init" rebuilds the list.
  void buildWorkingLists(const std::string& command, long id = 0) override;

 protected:
  void fillList() override;
  void editChosen() override;
  void deleteChosen() override;

 private:
  void openNew();
};

}  // namespace mv
