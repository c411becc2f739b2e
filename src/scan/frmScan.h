// The scan window of one running site.
#pragma once

#include "process/ProcessWindow.h"
#include "scan/ScanProcess.h"

class QLineEdit;

namespace mv {

class frmScan : public ProcessWindow {
  Q_OBJECT
 public:
  // Set the process's members and the caption ("Scan: " + location), show, then call initWindow.
  frmScan();
  ScanProcess& process() { return process_; }

  void initWindow();
  QString positionKey() const override;

 protected:
  void refresh() override;

 private:
  ScanProcess process_;
  QLabel* lblPage_;
  QLabel* lblPagesToScan_;
  QLabel* lblPagesProcessed_;
  QLabel* lblSiteId_;
  QLineEdit* txtInfoPageURL_;
};

}  // namespace mv
