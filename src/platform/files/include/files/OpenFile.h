// A file that is open under no name at all, or under one that does not matter yet: what is received goes into one, and
// it takes its name when it is whole. Internal to AtomicFile and the transfer component, which hand it to each other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace mv {

// Operations answer the operating system's error number, 0 when they succeeded.
class OpenFile {
 public:
  OpenFile() = default;
  ~OpenFile();
  OpenFile(OpenFile&& other) noexcept;
  OpenFile& operator=(OpenFile&& other) noexcept;

  // Without a name, on the file system of `folder`, able to take one there. A killed program leaves nothing behind.
  int openUnnamed(const std::string& folder);
  // The same; where the file system has no such files, one that can never take a name.
  int openScratch(const std::string& folder);
  // A new file of that name, locked (see lock); EEXIST when there is one.
  int openNamed(const std::string& path);
  // Marks the file as one that a running program works on, until it is closed: removeLeftovers passes it over.
  // EWOULDBLOCK when another holds the mark.
  int lock() const;

  bool isOpen() const { return descriptor_ >= 0; }
  bool isNameable() const { return nameable_; }
  // Lies on the file system of that folder.
  bool isOn(const std::string& folder) const;
  std::uint64_t size() const { return size_; }

  // Appends.
  int write(std::string_view bytes);
  // Puts what stands at `offset` into `bytes` and cuts that to what there was, "" at the end.
  int read(std::uint64_t offset, std::string& bytes) const;
  // Another handle of the same file; not open when the system has none left.
  OpenFile duplicate() const;
  // The system begins to bring what was written to the disk. Promises nothing, and waits at most for the disk to take
  // the work.
  void startWriteback() const;
  // Waits for that. A power cut may still take it back: a flush is to follow.
  int awaitWriteback() const;
  // Every byte written is on the disk afterwards, and the file's size is.
  int flush() const;
  // The same for all files of the file system that have awaited their writeback: its journal is committed once for all.
  // ENOTSUP where that is not known to be as safe.
  int flushFileSystem() const;
  // The names that were given in `folder`, where this file has one, are on the disk afterwards.
  int flushFolder(const std::string& folder) const;
  // Tells file systems apart.
  std::uint64_t device() const;
  // Gives a nameable file that name; EEXIST when it is taken.
  int link(const std::string& path) const;
  // The system may tell only now that something could not be written.
  int close();

  // For tests: no file grows beyond so many bytes. 0 switches that off.
  static void failAfterBytes(std::uint64_t bytes);
  // For tests: runs before every flush, of a folder too, or wait for a writeback, on that thread; an answer other than
  // 0 is its error. An empty function switches that off. Not to be changed while something is flushed.
  static void setBeforeFlush(std::function<int()> before);
  // For tests: file systems without unnamed files.
  static void refuseUnnamed(bool refuse);

 private:
  int descriptor_ = -1;
  bool nameable_ = false;
  std::uint64_t size_ = 0;
};

}  // namespace mv
