// The download window of one running site.
#pragma once

#include "download/DownloadProcess.h"
#include "process/ProcessWindow.h"

class QLineEdit;

namespace mv {

class PictureDisplay;

class frmDownload : public ProcessWindow {
  Q_OBJECT
 public:
  // Set the process's members and the caption ("Download: " + site name), show, then call initWindow.
  frmDownload();
  DownloadProcess& process() { return process_; }

  void initWindow();
  QString positionKey() const override;

 protected:
  void refresh() override;

 private:
  void showPreview(const std::string& path);
  QWidget* makeLinksTab();
  QWidget* makePreviewTab();
  QWidget* makeInfoTab();

  DownloadProcess process_;
  bool sortDescending_ = false;
  PictureDisplay* Gear1_;
  QLabel* lblFile_;
  QLabel* lblFilesInQueue_;
  QLabel* lblFilesProcessed_;
  QLabel* lblSiteId_;
  QLabel* lblInfoSize_;
  QLabel* lblInfoBytesReceived_;
  QLabel* lblInfoBytesLeft_;
  QLineEdit* txtInfoSavePath_;
};

}  // namespace mv
