// Fetches one web site's stored file links, one after the other, and saves the files. Without a window; frmDownload
// shows it. It runs until it is stopped: a used-up work list is rebuilt from the database.
//
// A file that has come is brought to the disk while the next one is fetched; its name, its row's state and the link's
// status follow when it is there, also when the process has been stopped meanwhile.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "download/DownloadStatus.h"
#include "process/Process.h"
#include "store/Id.h"

namespace mv {

class DatabaseError;
class DownloadQueue;
class DownloadReport;
class FileReceiver;
class LoginWatch;
struct SaveResult;

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
  // "skip" when a file of the address's name is there, or waits to be there, and overwriting is off, else "".
  void checkIfFileExists(std::string& result);
  void receiveFile();

  const DownloadStatus& status() const;
  // No stored link of the site waits, none is being fetched.
  bool hasNothingLeft() const;
  // The site's download folder.
  const std::string& folder() const;

 Q_SIGNALS:
  // A file has been saved under its final name. Not told by a process that has been stopped.
  void fileSaved(const std::string& path);

 protected:
  void tick() override;
  void transferEvent(int state) override;
  void failed(const std::exception& error) override;

 private:
  // The file taken up last, or one that is being saved. Every one begins with a new Entry.
  struct Entry {
    std::int64_t linkId = 0;
    std::string url = {};
    std::string fileName = {};  // of the address
    std::string fileType = {};
    std::string savePath = {};
    std::string_view mode = {};  // what the running request is for
    SizeStatus size = {};
    std::int64_t bytesReceived = 0;
    bool isPage = false;      // which may be the login page
    bool outcomeDue = false;  // still to be written
    bool skippedExisting = false;
    bool failed = false;
  };

  void rebuildQueue();
  void beginEntry(const WorkRow& row);
  // Takes row `index` up; true when it was skipped and the next row is to be tried.
  bool takeUp(int index);
  void skipEntry(int index);
  void refuseFile();
  void transferFailed();
  // Counts, shows and logs a failure of the current entry.
  void countError(const std::string& reason, long code);
  // The current entry ends as an error.
  void entryFailed(const std::string& reason, long code);
  // The current entry has ended without a file.
  void settle();
  void requestPage();
  void checkPage();
  void awaitLogin();
  // Sets the state of the entry's row; false when the list has none.
  bool showOutcome(const Entry& entry);
  // Runs a step of receiving the file; an exception ends the entry as an error, or has the step done again, and goes no
  // further.
  void receive(void (DownloadProcess::*step)());
  void receiveLater(void (DownloadProcess::*step)(), const DatabaseError& error);
  void beginReceiving();
  void receiveChunks();
  void showReceived(std::int64_t bytes);
  void showArriving();
  void fileIsAt(std::int64_t linkId, const std::string& path);
  void showSaveProgress(std::int64_t bytes);
  void fileReceived();
  void save();
  void saveSettled(const SaveResult& result);
  void saveFailed(const Entry& entry, const SaveResult& result);
  void receivingFailed(const std::exception& error);

  std::unique_ptr<DownloadQueue> queue_;
  std::unique_ptr<LoginWatch> login_;
  std::unique_ptr<FileReceiver> receiver_;  // holds a file from the first to the last chunk
  std::unique_ptr<DownloadReport> report_;
  Entry entry_;
  QTimer arriving_;                       // shows how much of a file has arrived
  std::map<std::int64_t, Entry> saving_;  // by link: received, and on their way to the disk
  bool awaitsRoom_ = false;               // for further ones
};

}  // namespace mv
