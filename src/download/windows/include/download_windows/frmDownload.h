// The download window of one running site.
#pragma once

#include <memory>
#include <string>

#include "download/DownloadProcess.h"
#include "process_windows/ProcessWindow.h"

namespace mv {

namespace Ui {
class frmDownload;
}

class frmDownload : public ProcessWindow {
  Q_OBJECT
 public:
  // Set the process's members and the caption ("Download: " + site name), show, then call initWindow.
  frmDownload();
  ~frmDownload() override;
  DownloadProcess& process() { return *process_; }

  void initWindow();
  QString positionKey() const override;
  QString settledCaption() const override;

  Totals totals() const override;

 protected:
  // The scan of its site.
  const ChildWindow* standsBelow() const override;
  std::string stateText() const override;
  Commands commandsOf(int row) override;
  Commands commandsOfList() override;
  void openRow(int row) override;
  void refresh() override;
  // The preview comes into view, or its file is opened.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // The process stands before the base that listens to it.
  explicit frmDownload(std::unique_ptr<DownloadProcess> process);
  void showStatus();
  // Pictures are decoded only while they can be seen; the last one saved is caught up with.
  void fileSaved(const std::string& path);
  void showPreview();
  // Of the preview: a double click, or Enter.
  static bool opensFile(const QEvent& event);
  Commands previewCommands();
  Command folderCommand(const QString& folder);
  Commands fileCommands(const QString& path, const QString& folder);

  std::unique_ptr<Ui::frmDownload> ui_;
  std::unique_ptr<DownloadProcess> process_;
  std::string lastSaved_;
  bool previewDue_ = false;
};

}  // namespace mv
