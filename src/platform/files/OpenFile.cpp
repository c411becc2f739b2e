#include "files/OpenFile.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <utility>

namespace mv {

namespace {

constexpr mode_t kNewFileMode = 0666;  // less the umask

std::uint64_t failFrom = 0;
bool refusesUnnamed = false;

std::function<int()>& beforeFlush() {
  static std::function<int()> before;
  return before;
}

int hookError() { return beforeFlush() ? beforeFlush()() : 0; }

std::string descriptorPath(int file) { return "/proc/self/fd/" + std::to_string(file); }

}  // namespace

OpenFile::~OpenFile() { close(); }

OpenFile::OpenFile(OpenFile&& other) noexcept { *this = std::move(other); }

OpenFile& OpenFile::operator=(OpenFile&& other) noexcept {
  if (this == &other) return *this;
  close();
  descriptor_ = std::exchange(other.descriptor_, -1);
  nameable_ = std::exchange(other.nameable_, false);
  size_ = std::exchange(other.size_, 0);
  return *this;
}

int OpenFile::openUnnamed(const std::string& folder) {
  *this = OpenFile();
  if (refusesUnnamed) return EOPNOTSUPP;
  const int file = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, kNewFileMode);
  if (file < 0) return errno;
  descriptor_ = file;
  nameable_ = ::access(descriptorPath(file).c_str(), F_OK) == 0;
  if (nameable_) return 0;
  close();
  return EOPNOTSUPP;
}

int OpenFile::openScratch(const std::string& folder) {
  if (openUnnamed(folder) == 0) return 0;
  std::string path = folder + "/morvane2000-XXXXXX";
  descriptor_ = ::mkostemp(path.data(), O_CLOEXEC);
  if (descriptor_ < 0) return errno;
  ::unlink(path.c_str());
  return 0;
}

int OpenFile::openNamed(const std::string& path) {
  *this = OpenFile();
  descriptor_ = ::open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, kNewFileMode);
  if (descriptor_ < 0) return errno;
  // Another program's removeLeftovers may have taken it for one between the two calls.
  struct stat own {};
  if (lock() != EWOULDBLOCK && ::fstat(descriptor_, &own) == 0 && own.st_nlink > 0) return 0;
  close();
  return EEXIST;
}

int OpenFile::lock() const { return ::flock(descriptor_, LOCK_EX | LOCK_NB) == 0 ? 0 : errno; }

bool OpenFile::isOn(const std::string& folder) const {
  struct stat own {};
  struct stat other {};
  return ::fstat(descriptor_, &own) == 0 && ::stat(folder.c_str(), &other) == 0 && own.st_dev == other.st_dev;
}

int OpenFile::write(std::string_view bytes) {
  while (!bytes.empty()) {
    std::string_view next = bytes;
    if (failFrom > 0) {
      if (size_ >= failFrom) return ENOSPC;
      next = next.substr(0, static_cast<std::size_t>(failFrom - size_));
    }
    const ssize_t written = ::write(descriptor_, next.data(), next.size());
    if (written < 0 && errno != EINTR) return errno;
    if (written < 0) continue;
    bytes.remove_prefix(static_cast<std::size_t>(written));
    size_ += static_cast<std::uint64_t>(written);
  }
  return 0;
}

int OpenFile::read(std::uint64_t offset, std::string& bytes) const {
  ssize_t count = 0;
  do {
    count = ::pread(descriptor_, bytes.data(), bytes.size(), static_cast<off_t>(offset));
  } while (count < 0 && errno == EINTR);
  const int error = count < 0 ? errno : 0;
  bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  return error;
}

OpenFile OpenFile::duplicate() const {
  OpenFile copy;
  copy.descriptor_ = ::fcntl(descriptor_, F_DUPFD_CLOEXEC, 0);
  copy.size_ = size_;
  return copy;
}

void OpenFile::startWriteback() const { ::sync_file_range(descriptor_, 0, 0, SYNC_FILE_RANGE_WRITE); }

int OpenFile::awaitWriteback() const {
  constexpr unsigned kAll = SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
  if (const int error = hookError()) return error;
  return ::sync_file_range(descriptor_, 0, 0, kAll) == 0 ? 0 : errno;
}

int OpenFile::flushFileSystem() const {
  struct statfs system {};
  if (::fstatfs(descriptor_, &system) != 0) return errno;
  // The others may leave it at handing everything over to their server.
  const bool isKnown = system.f_type == EXT4_SUPER_MAGIC || system.f_type == XFS_SUPER_MAGIC;
  if (!isKnown) return ENOTSUP;
  return ::syncfs(descriptor_) == 0 ? 0 : errno;
}

int OpenFile::flushFolder(const std::string& folder) const {
  if (const int error = hookError()) return error;
  const int file = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  // It may be written to, but not read, or there is no handle left: then the whole file system.
  if (file < 0) return ::syncfs(descriptor_) == 0 ? 0 : errno;
  const int error = ::fsync(file) == 0 ? 0 : errno;
  ::close(file);
  return error == EINVAL ? 0 : error;  // a file system that has nothing to flush there
}

std::uint64_t OpenFile::device() const {
  struct stat own {};
  return ::fstat(descriptor_, &own) == 0 ? own.st_dev : 0;
}

int OpenFile::flush() const {
  if (const int error = hookError()) return error;
  int done = 0;
  do {
    done = ::fdatasync(descriptor_);
  } while (done != 0 && errno == EINTR);
  return done == 0 ? 0 : errno;
}

int OpenFile::link(const std::string& path) const {
  const int done = ::linkat(AT_FDCWD, descriptorPath(descriptor_).c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW);
  return done == 0 ? 0 : errno;
}

int OpenFile::close() {
  if (descriptor_ < 0) return 0;
  return ::close(std::exchange(descriptor_, -1)) == 0 ? 0 : errno;
}

void OpenFile::failAfterBytes(std::uint64_t bytes) { failFrom = bytes; }

void OpenFile::setBeforeFlush(std::function<int()> before) { beforeFlush() = std::move(before); }

void OpenFile::refuseUnnamed(bool refuse) { refusesUnnamed = refuse; }

}  // namespace mv
