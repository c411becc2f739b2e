// Writes a file so that its final name only ever shows the whole content: the bytes go to an unnamed or temporary file
// in the same folder, which takes the final name in one step once they are on the disk. A crash, a power cut, a full
// disk or a forgotten commit leaves what was there before, and nothing half-written.
//
// Bringing bytes to the disk takes its time. It may be done on another thread than the rest, by one thread at a time;
// GroupCommit does it for many files.
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "files/OpenFile.h"

namespace mv {

// A failed file operation: the operating system's error number and its description.
class FileError : public std::runtime_error {
 public:
  FileError(int number, const std::string& description) : std::runtime_error(description), number_(number) {}
  int number() const { return number_; }

 private:
  int number_;
};

// What becomes of a file that has the name already.
enum class Existing { Keep, Replace };

class AtomicFile {
 public:
  // Opens a temporary file in the folder of `path` (UTF-8). Raises FileError: no such folder, `path` is a folder or
  // ends with a separator, no permission, disk full.
  explicit AtomicFile(const std::string& path);
  // Not committed: removes what was written.
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  // Appends. Raises FileError (a full disk above all), for the last pieces only when they are handed over.
  void write(std::string_view bytes);
  // Instead of writing: the whole content is in `content` already, and becomes this file without a copy. False, and
  // nothing has changed, when something has been written or the two are not on one file system.
  bool adopt(OpenFile& content);
  std::uint64_t size() const;

  // The final name may still be changed within its folder.
  void setPath(const std::string& path);
  const std::string& path() const;
  std::string folder() const;

  // Hands the last pieces over to the system. Raises FileError.
  void finish();
  // The system begins to bring the file to the disk, without waiting for it.
  void startWriteback();
  // Waits for that. Raises FileError.
  void awaitWriteback();
  // Everything is on the disk afterwards; done once. Raises FileError.
  void flush();
  // Brings `files` to the disk with one flush of their file system. They have awaited their writeback. False where that
  // cannot be done, or has failed: each is to be flushed then.
  static bool flushTogether(const std::vector<AtomicFile*>& files);
  // Tells file systems apart.
  std::uint64_t device() const;
  // finish, flush, and the final name. False when the name is taken and to be kept: another one may be tried. Raises
  // FileError. The name itself outlives a power cut when the folder has been flushed. Afterwards only that and
  // destruction are left.
  bool commit(Existing existing);
  // Behind commit(): brings the names in the file's folder to the disk. Answers the system's error number.
  int flushFolder() const;

  // For tests: the operating-system calls can be made to fail from the n-th byte on. 0 switches that off.
  static void failAfterBytes(std::uint64_t bytes);

 private:
  struct Private;
  std::unique_ptr<Private> d;
};

}  // namespace mv
