// Fetches one web site's stored file links, one after the other, and saves the files. Without a window; frmDownload
// shows it. It runs until it is stopped: a used-up work list is rebuilt from the database.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "catalog/clsPath.h"
#include "download/DownloadStatus.h"
#include "files/AtomicFile.h"
#include "process/Process.h"
#include "store/Id.h"
#include "store/ProcessData.h"

namespace mv {

class DownloadProcess : public Process {
  Q_OBJECT
 public:
  DownloadProcess();
  ~DownloadProcess() override;

  // Given by the opener before initWindow.
  Id SiteId = 0;
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

  const DownloadStatus& status() const { return status_; }

 Q_SIGNALS:
  // A file has been saved under its final name.
  void fileSaved(const std::string& path);

 protected:
  void tick() override;
  void transferEvent(int state) override;
  void failed(const std::exception& error) override;

 private:
  void loadSiteLimits();
  // Files that this round may still take up.
  std::int64_t queueSize() const { return limits_.queueSize - processedCount_; }
  void rebuildQueue();
  void beginEntry(const WorkRow& row);
  // Takes row `index` up; true when it was skipped and the next row is to be tried.
  bool takeUp(int index);
  void skipEntry(int index);
  void refuseFile();
  void showSize(SizeStatus::Verdict verdict, std::int64_t limit = 0);
  void showFile(FileStatus::Note note);
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

  // The file taken up last. Every one begins with a new Entry.
  struct Entry {
    std::int64_t linkId = 0;
    std::string url = {};
    std::string fileName = {};  // of the address; of a numbered file, its name from the moment it is received
    std::string fileType = {};
    std::string savePath = {};
    std::string fullPath = {};
    std::string_view mode = {};        // what the running request is for
    std::string announcedLength = {};  // as the header has it
    std::int64_t contentLength = 0;    // bytes; 0: not known
    std::int64_t bytesReceived = 0;
    bool outcomeDue = false;  // still to be written
    bool skippedExisting = false;
    bool failed = false;
  };

  clsPath path_;
  std::unique_ptr<AtomicFile> file_;  // open from the first to the last chunk
  Entry entry_;
  DownloadLimits limits_;
  std::int64_t processedCount_ = 0;  // in this round
  DownloadStatus status_;
};

}  // namespace mv
