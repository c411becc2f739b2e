#include "platform/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

namespace mv {

namespace {

constexpr mode_t kNewFileMode = 0666;  // less the umask
constexpr std::uint64_t kWriteBackStep = 8 * 1024 * 1024;
constexpr int kNameAttempts = 100;

std::uint64_t failFrom = 0;

[[noreturn]] void raise(int number, const std::string& path) {
  throw FileError(number, "The file " + path + " cannot be written: " + std::generic_category().message(number) + '.');
}

std::string folderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

// Short, so that it fits where the final name does.
std::string temporaryName(const std::string& folder) {
  static std::atomic<unsigned> counter{0};
  return folder + "/.mv" + std::to_string(getpid()) + '-' + std::to_string(++counter) + ".part";
}

std::string descriptorPath(int file) { return "/proc/self/fd/" + std::to_string(file); }

}  // namespace

struct AtomicFile::Private {
  std::string path;
  std::string temporary;  // "" while the file has no name at all
  int file = -1;
  std::uint64_t size = 0;
  std::uint64_t writtenBack = 0;

  // A nameless file vanishes by itself when the program is killed.
  bool openNameless(const std::string& folder) {
    file = open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, kNewFileMode);
    if (file >= 0 && access(descriptorPath(file).c_str(), F_OK) == 0) return true;
    closeFile();
    return false;
  }

  void openNamed(const std::string& folder) {
    for (int attempt = 0; file < 0 && attempt < kNameAttempts; ++attempt) {
      temporary = temporaryName(folder);
      file = open(temporary.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, kNewFileMode);
      if (file < 0 && errno != EEXIST) break;
    }
    if (file >= 0) return;
    temporary.clear();
    raise(errno, path);
  }

  // False when the system tells only now that something could not be written.
  bool closeFile() { return file < 0 || close(std::exchange(file, -1)) == 0; }

  int link(const std::string& name) const {
    const int done = linkat(AT_FDCWD, descriptorPath(file).c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW);
    return done == 0 ? 0 : errno;
  }

  // Gives the nameless file its final name when that is free, else a temporary one to be renamed. True when done.
  bool linkNameless() {
    int error = link(path);
    if (error == 0) return true;
    if (error != EEXIST) raise(error, path);
    std::string name;
    for (int attempt = 0; error == EEXIST && attempt < kNameAttempts; ++attempt) {
      name = temporaryName(folderOf(path));
      error = link(name);
    }
    if (error != 0) raise(error, path);
    temporary = name;
    return false;
  }

  // One call to the system: the number of bytes it took.
  std::size_t writeSome(std::string_view bytes) const {
    if (failFrom > 0) {
      if (size >= failFrom) raise(ENOSPC, path);
      bytes = bytes.substr(0, static_cast<std::size_t>(failFrom - size));
    }
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) raise(errno, path);
    return written < 0 ? 0 : static_cast<std::size_t>(written);
  }

  // The disk starts on the bytes now; nobody waits for it here. Else a memory's worth would have to go out at once.
  void startWriteBack() {
    if (size - writtenBack < kWriteBackStep) return;
    sync_file_range(file, static_cast<off64_t>(writtenBack), static_cast<off64_t>(size - writtenBack),
                    SYNC_FILE_RANGE_WRITE);
    writtenBack = size;
  }
};

AtomicFile::AtomicFile(const std::string& path) : d(std::make_unique<Private>()) {
  d->path = path;
  struct stat status {};
  const bool isFolder = stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
  if (path.empty() || path.back() == '/' || isFolder) raise(EISDIR, path);
  const std::string folder = folderOf(path);
  if (!d->openNameless(folder)) d->openNamed(folder);
}

AtomicFile::~AtomicFile() {
  d->closeFile();
  if (!d->temporary.empty()) unlink(d->temporary.c_str());
}

void AtomicFile::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t written = d->writeSome(bytes);
    bytes.remove_prefix(written);
    d->size += written;
  }
  d->startWriteBack();
}

std::uint64_t AtomicFile::size() const { return d->size; }

void AtomicFile::commit() {
  if (d->temporary.empty() && d->linkNameless()) return;
  if (!d->closeFile() || std::rename(d->temporary.c_str(), d->path.c_str()) != 0) raise(errno, d->path);
  d->temporary.clear();
}

void AtomicFile::failAfterBytes(std::uint64_t bytes) { failFrom = bytes; }

}  // namespace mv
