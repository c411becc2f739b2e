// The scan window of one running site.
#pragma once

#include <memory>

#include "process_windows/ProcessWindow.h"
#include "scan/ScanProcess.h"

class QLineEdit;

namespace mv {

class frmScan : public ProcessWindow {
  Q_OBJECT
 public:
  // Set the process's members and the caption ("Scan: " + location), show, then call initWindow.
  frmScan();
  ScanProcess& process() { return *process_; }

  void initWindow();
  QString positionKey() const override;
  QString settledCaption() const override;

 protected:
  // The download of its site.
  int windowsToFollow() const override { return 1; }
  void refresh() override;

 private:
  explicit frmScan(std::unique_ptr<ScanProcess> process);
  void buildSummary();
  void buildDetails();

  std::unique_ptr<ScanProcess> process_;
  ElidedLabel* lblPage_;
  ElidedLabel* lblPagesToScan_;
  ElidedLabel* lblPagesProcessed_;
  QLineEdit* txtInfoPageURL_;
  ElidedLabel* lblInfoLogin_;
};

}  // namespace mv
