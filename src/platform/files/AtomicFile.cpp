#include "files/AtomicFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

namespace mv {

namespace {

constexpr int kNameAttempts = 100;
constexpr std::size_t kBuffered = std::size_t{64} * 1024;

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

}  // namespace

struct AtomicFile::Private {
  std::string path;
  std::string temporary;  // "" while the file has no name at all
  OpenFile file;
  std::string buffer;  // small pieces on their way into the file

  void check(int error) const {
    if (error != 0) raise(error, path);
  }

  void openNamed(const std::string& folder) {
    int error = EEXIST;
    std::string name;
    for (int attempt = 0; error == EEXIST && attempt < kNameAttempts; ++attempt) {
      name = temporaryName(folder);
      error = file.openNamed(name);
    }
    check(error);
    temporary = name;
  }

  void flush() {
    check(file.write(buffer));
    buffer.clear();
  }

  // Gives the unnamed file its final name when that is free, else a temporary one to be renamed. True when done.
  bool linkUnnamed() {
    int error = file.link(path);
    if (error == 0) return true;
    if (error != EEXIST) raise(error, path);
    std::string name;
    for (int attempt = 0; error == EEXIST && attempt < kNameAttempts; ++attempt) {
      name = temporaryName(folderOf(path));
      error = file.link(name);
    }
    check(error);
    temporary = name;
    return false;
  }
};

AtomicFile::AtomicFile(const std::string& path) : d(std::make_unique<Private>()) {
  d->path = path;
  struct stat status {};
  const bool isFolder = stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
  if (path.empty() || path.back() == '/' || isFolder) raise(EISDIR, path);
  const std::string folder = folderOf(path);
  if (d->file.openUnnamed(folder) != 0) d->openNamed(folder);
}

AtomicFile::~AtomicFile() {
  d->file.close();
  if (!d->temporary.empty()) unlink(d->temporary.c_str());
}

void AtomicFile::write(std::string_view bytes) {
  if (d->buffer.size() + bytes.size() < kBuffered) {
    d->buffer.append(bytes);
    return;
  }
  d->flush();
  d->check(d->file.write(bytes));
}

bool AtomicFile::adopt(OpenFile& content) {
  if (size() > 0 || !d->file.isNameable() || !content.isNameable() || !content.isOn(folderOf(d->path))) return false;
  d->file = std::move(content);
  return true;
}

std::uint64_t AtomicFile::size() const { return d->file.size() + d->buffer.size(); }

void AtomicFile::commit() {
  d->flush();
  if (d->temporary.empty() && d->linkUnnamed()) return;
  d->check(d->file.close());
  if (std::rename(d->temporary.c_str(), d->path.c_str()) != 0) raise(errno, d->path);
  d->temporary.clear();
}

void AtomicFile::failAfterBytes(std::uint64_t bytes) { OpenFile::failAfterBytes(bytes); }

}  // namespace mv
