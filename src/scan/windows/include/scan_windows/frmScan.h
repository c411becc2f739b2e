// The scan window of one running site.
#pragma once

#include <memory>

#include "process_windows/ProcessWindow.h"
#include "scan/ScanProcess.h"

namespace mv {

namespace Ui {
class frmScan;
}

class frmScan : public ProcessWindow {
  Q_OBJECT
 public:
  // Set the process's members and the caption ("Scan: " + location), show, then call initWindow.
  frmScan();
  ~frmScan() override;
  ScanProcess& process() { return *process_; }

  void initWindow();
  QString positionKey() const override;
  QString settledCaption() const override;

  Totals totals() const override;

 protected:
  // The download of its site.
  int windowsToFollow() const override { return 1; }
  std::string stateText() const override;
  void refresh() override;

 private:
  explicit frmScan(std::unique_ptr<ScanProcess> process);
  void showStatus();

  std::unique_ptr<Ui::frmScan> ui_;
  std::unique_ptr<ScanProcess> process_;
};

}  // namespace mv
