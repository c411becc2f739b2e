// Takes the body of a completed file request into a file that is on its way to its name.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "SaveQueue.h"
#include "catalog/clsPath.h"
#include "files/AtomicFile.h"
#include "transfer/InternetTransfer.h"

namespace mv {

class LoginWatch;

// Where a file goes.
struct FileTarget {
  std::string folder;
  std::string name;  // of the address
  // Instead of the address's name: base, the next number of the sequence "filename_id", ".", type.
  struct Numbered {
    std::string base;
    std::string type;
  };
  std::optional<Numbered> numbered = {};
};

class FileReceiver {
 public:
  // Chooses the path; of a numbered file the first one that is free. False when the time budget has ended before. May
  // show a message box; raises std::runtime_error when no number can be drawn, DatabaseError when one may be later.
  bool choosePath(const FileTarget& target);
  // Makes sure that the folder exists; may show a message box. Raises FileError.
  void makeFolder();
  // Drops what was received before. Raises FileError, see AtomicFile.
  void open();
  // Takes what the time budget allows; true when the body has ended. `watch` sees every byte, if there is one. Raises
  // FileError and what GetChunk raises.
  bool goOn(InternetTransfer& transfer, LoginWatch* watch);
  // Received so far.
  std::int64_t bytes() const { return static_cast<std::int64_t>(file_->size()); }

  // The whole file, to be saved.
  SaveQueue::Save take(std::int64_t linkId);
  void drop() { file_.reset(); }

 private:
  FileTarget target_;
  std::string path_;
  clsPath folder_;
  std::unique_ptr<AtomicFile> file_;
};

}  // namespace mv
