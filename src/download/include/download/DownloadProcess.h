// Fetches one web site's stored file links, one after the other, and saves the files. Without a window; frmDownload
// shows it. It runs until it is stopped: a used-up work list is rebuilt from the database.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "catalog/clsPath.h"
#include "files/AtomicFile.h"
#include "process/Process.h"

namespace mv {

class DownloadProcess : public Process {
  Q_OBJECT
 public:
  DownloadProcess();
  ~DownloadProcess() override;

  // Given by the opener before initWindow.
  std::int32_t SiteId = 0;
  std::string SiteName;
  std::string UniqueNames;        // "yes": numbered file names
  std::string BaseName;           // their stem
  std::string OverwriteExisting;  // as the opener read it; the saver looks at the process-wide setting

  static constexpr std::int64_t kQueueLimit = 1000;  // most rows of the work list

  void initWindow();
  void buildQueue();
  void downloadNext();
  void checkHeader();
  void requestFile();
  void markLinkDone();
  // `kind` "filesinqueue" refreshes the counters, "error" fills the error panel; other kinds do nothing.
  void showCounters(const std::string& kind, const std::string& reason, long code);
  void logDownloadError();
  void findSavePath();
  // "skip" when a file of the address's name is there and overwriting is off, else "".
  void checkIfFileExists(std::string& result);
  void receiveFile();

  // What the window shows.
  std::string title() const;                                   // "Download: " + the site's name without a password
  const std::string& fileLabel() const { return fileLabel_; }  // "File: " + name + what became of it
  const std::string& queueText() const { return queueText_; }  // "Queue: " + entries that this round may still take
  const std::string& processedText() const { return processedText_; }  // "Processed: " + entries that it has taken
  const std::string& sizeText() const { return sizeText_; }
  const std::string& receivedText() const { return receivedText_; }  // "Received: " + bytes
  const std::string& leftText() const { return leftText_; }          // "Left: " + bytes
  const std::string& savePathText() const { return savePathText_; }  // "Saving to: " + folder

 Q_SIGNALS:
  // A file has been saved under its final name.
  void fileSaved(const std::string& path);

 protected:
  void tick() override;
  void transferEvent(int state) override;
  void failed(const std::exception& error) override;

 private:
  void loadSiteLimits();
  void rebuildQueue();
  void beginEntry(const WorkRow& row);
  // Takes row `index` up; true when it was skipped and the next row is to be tried.
  bool takeUp(int index);
  void skipEntry(int index);
  void refuseFile();
  void transferFailed();
  // Counts, shows and logs a failure of the current entry.
  void countError(const std::string& reason, long code);
  // Runs a step of receiving the file; an exception ends the entry as an error and goes no further.
  void receive(void (DownloadProcess::*step)());
  void beginReceiving();
  void chooseFullPath();
  void receiveChunks();
  void showReceived(std::int64_t bytes);
  void showSaveProgress(std::int64_t bytes);
  void fileReceived();
  void receivingFailed(const std::exception& error);
  // Changes one of the texts shown and has the window refreshed when it is a new one.
  void show(std::string& shown, std::string text);

  clsPath path_;
  std::unique_ptr<AtomicFile> file_;  // open from the first to the last chunk
  std::string requestKind_;
  std::string url_;
  std::string fileName_;
  std::string fileType_;
  std::string savePath_;
  std::string fullPath_;
  std::string downloadPath_;
  std::string contentLengthText_;
  std::int64_t contentLength_ = 0;
  std::int64_t bytesReceived_ = 0;
  std::int64_t linkId_ = 0;
  std::int64_t pendingLinkId_ = 0;  // link whose outcome is still to be written, 0 when none
  std::int64_t upperLimitMB_ = 0;
  std::int64_t lowerLimitKB_ = 0;
  std::int64_t queueSize_ = 0;
  std::int64_t processedCount_ = 0;
  bool skippedExisting_ = false;
  bool errorFlag_ = false;  // the current entry ended in an error
  std::string fileLabel_ = "File:";
  std::string queueText_ = "Queue:";
  std::string processedText_ = "Processed:";
  std::string sizeText_ = "Size (In Kilobytes) :";
  std::string receivedText_ = "Received:";
  std::string leftText_ = "Left:";
  std::string savePathText_ = "Saving to:";
};

}  // namespace mv
