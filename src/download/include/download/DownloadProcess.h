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

#include "download/DownloadStatus.h"
#include "process/Process.h"
#include "store/Id.h"

namespace mv {

class DatabaseError;
class DownloadQueue;
class DownloadReport;
class FileReceiver;
class FileTransfer;
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
  // The file taken up last. Every one begins with a new Entry.
  struct Entry {
    std::int64_t linkId = 0;
    std::string url = {};
    std::string fileName = {};  // of the address
    std::string fileType = {};
    std::string savePath = {};
    RowState outcome = RowState::Done;
    bool outcomeDue = false;  // still to be written
  };
  // One that is on its way to the disk.
  struct SavingFile {
    std::int64_t linkId = 0;
    std::string url;
    std::string name;       // of the address
    std::int64_t size = 0;  // bytes
  };

  void rebuildQueue();
  void readSettings();
  void beginEntry(const WorkRow& row);
  void entryBroken(const std::exception& error);
  // Takes row `index` up; true when it was skipped and the next row is to be tried.
  bool takeUp(int index);
  void skipEntry();
  void takeEvent(int state);
  void refuseFile();
  void transferFailed();
  // Counts, shows and logs a failure of the current entry.
  void countError(const std::string& reason, long code);
  // The current entry ends as an error.
  void entryFailed(const std::string& reason, long code);
  // The current entry has ended without a file.
  void settle();
  void awaitLogin();
  // Receives the file; an exception ends the entry as an error, or has it tried again, and goes no further.
  void receive();
  void receiveLater(const DatabaseError& error);
  void showReceived(std::int64_t bytes);
  void save();
  void saveSettled(const SaveResult& result);
  void saveFailed(const SavingFile& file, const SaveResult& result);
  void receivingFailed(const std::exception& error);

  std::unique_ptr<DownloadQueue> queue_;
  std::unique_ptr<LoginWatch> login_;
  std::unique_ptr<FileReceiver> receiver_;  // holds a file from the first to the last chunk
  std::unique_ptr<DownloadReport> report_;
  std::unique_ptr<FileTransfer> request_;
  Entry entry_;
  std::map<std::int64_t, SavingFile> saving_;  // by link
  bool awaitsRoom_ = false;                    // for further ones
};

}  // namespace mv
