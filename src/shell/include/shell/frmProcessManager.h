// The process manager: lists the running scan and download windows, which are often hidden, brings one back into view
// and ends one.
#pragma once

#include "windows/ListWindow.h"

namespace mv {

class frmProcessManager : public ListWindow {
  Q_OBJECT
 public:
  frmProcessManager();

 protected:
  std::vector<QStringList> readRows() override;
  // "Expand", Enter and double click.
  void editChosen() override;
  void deleteChosen() override;
  void activated() override;

 private:
  // Position key of the selected process's window; "" when none is selected.
  QString chosenKey() const;
};

}  // namespace mv
