// The list of file types, "FileType Manager". Built-in ones cannot be deleted.
#pragma once

#include "windows/RecordWindow.h"

namespace mv {

class frmFileTypeManager : public RecordWindow {
  Q_OBJECT
 public:
  frmFileTypeManager();

 protected:
  RecordEditor* makeEditor(int row) override;
  bool mayDelete(int row) override;
};

}  // namespace mv
