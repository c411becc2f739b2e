// Fetches one web site's stored file links, one after the other, and saves the files. Without a window; frmDownload
// shows it. It runs until it is stopped: a used-up work list is rebuilt from the database.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "catalog/clsPath.h"
#include "platform/AtomicFile.h"
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

  static constexpr long kQueueLimit = 1000;

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
  const std::string& fileLabel() const { return fileLabel_; }        // "File: " + name + what became of it
  std::string queueText() const;                                     // "Queue: " + QueueSize
  std::string processedText() const;                                 // "Processed: " + ProcessedCount
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
  // Takes row `index` up; true when it was skipped and the next row is to be tried.
  bool takeUp(int index);
  void transferFailed();
  void receiveChunks();
  void fileReceived();
  void receivingFailed(const std::string& description, long number);
  void closeFile();

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
  std::int64_t pendingLinkId_ = 0;
  std::int64_t upperLimitMB_ = 0;
  std::int64_t lowerLimitKB_ = 0;
  long queueSize_ = 0;
  long queueRemaining_ = 0;
  long processedCount_ = 0;
  bool skippedExisting_ = false;
  bool errorFlag_ = false;
  std::string fileLabel_;
  std::string sizeText_;
  std::string receivedText_;
  std::string leftText_;
  std::string savePathText_;
};

}  // namespace mv
