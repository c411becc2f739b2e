// The list of file types, "FileType Manager".
#pragma once

#include "windows/ListWindow.h"

namespace mv {

class frmFileTypeManager : public ListWindow {
  Q_OBJECT
 public:
  frmFileTypeManager();

 protected:
  void fillList() override;
  void openNew() override;
  void editChosen() override;
  void deleteChosen() override;
};

}  // namespace mv
