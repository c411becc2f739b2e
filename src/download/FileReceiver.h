// Takes the body of a completed file request into a file that is on its way to its name, step by step.
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

// Where a file goes, and what it is to be like.
struct FileTarget {
  std::string folder;
  std::string name;       // of the address
  std::int64_t size = 0;  // bytes, as announced
  // Instead of the address's name: base, the next number of the sequence "filename_id", ".", type.
  struct Numbered {
    std::string base;
    std::string type;
  };
  std::optional<Numbered> numbered = {};
};

class FileReceiver {
 public:
  // Both outlive this. `login` sees a body that may be the login page.
  FileReceiver(InternetTransfer& transfer, LoginWatch& login) : transfer_(transfer), login_(login) {}

  // The request for this file has completed. What was received before is dropped.
  void begin(FileTarget target);

  enum class Step {
    Done,       // the next one may follow at once
    Cut,        // the time budget has ended: it goes on in a later event
    LoginPage,  // the body has ended, and is the site's login page
    Whole,      // the body has ended, and is the file: to be taken
  };
  // The path is chosen, of a numbered file the first one that is free, and the folder made: both may show a message
  // box. Then the body is received, as announced. Raises FileError, DatabaseError (when that may pass, the step can be
  // done again) and std::runtime_error.
  Step goOn();
  // Received so far.
  std::int64_t bytes() const { return file_ ? static_cast<std::int64_t>(file_->size()) : 0; }

  // The whole file, to be saved.
  SaveQueue::Save take(std::int64_t linkId);
  void drop() { file_.reset(); }

 private:
  Step choosePlace();
  bool choosePath();
  Step receive();
  bool receiveSome();
  void checkSize() const;

  InternetTransfer& transfer_;
  LoginWatch& login_;
  FileTarget target_;
  std::string path_;
  bool hasPlace_ = false;  // the path is chosen, the folder made
  clsPath folder_;
  std::unique_ptr<AtomicFile> file_;
  bool isPage_ = false;  // which may be the login page
};

}  // namespace mv
