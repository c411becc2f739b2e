#include "files/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "TemporaryName.h"

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

int answerOf(int done) { return done == 0 ? 0 : errno; }

// Runs `take` with one temporary name after the other until one is free. The name; "" and `error` when none was taken.
template <class Take>
std::string takeTemporaryName(const std::string& folder, int& error, Take take) {
  error = EEXIST;
  std::string name;
  for (int attempt = 0; error == EEXIST && attempt < kNameAttempts; ++attempt) {
    name = temporaryPath(folder);
    error = take(name);
  }
  return error == 0 ? name : std::string();
}

// EEXIST when `to` is there. Not every file system knows such a rename, and not every one of those knows links; where
// neither is, a file of another program that comes within these two calls is replaced.
int renameToFreeName(const char* from, const char* to) {
  int error = answerOf(::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE));
  if (error != EINVAL && error != ENOSYS) return error;
  error = answerOf(::link(from, to));
  if (error == 0) return answerOf(::unlink(from));
  if (error == EEXIST) return error;
  struct stat found {};
  return ::lstat(to, &found) == 0 ? EEXIST : answerOf(std::rename(from, to));
}

}  // namespace

struct AtomicFile::Private {
  std::string path;
  std::string temporary;  // "" while the file has no name at all
  OpenFile file;
  std::string buffer;  // small pieces on their way into the file
  bool flushed = false;

  void check(int error) const {
    if (error != 0) raise(error, path);
  }

  void openNamed(const std::string& folder) {
    int error = 0;
    temporary = takeTemporaryName(folder, error, [this](const std::string& name) { return file.openNamed(name); });
    check(error);
  }

  void finish() {
    check(file.write(buffer));
    buffer.clear();
  }

  // A name that is taken is taken over with one rename, for which the file needs another name first.
  int takeOverName() {
    if (temporary.empty()) {
      file.lock();
      int error = 0;
      temporary = takeTemporaryName(folderOf(path), error, [this](const std::string& name) { return file.link(name); });
      if (error != 0) return error;
    }
    return answerOf(std::rename(temporary.c_str(), path.c_str()));
  }

  int takeName(Existing existing) {
    if (temporary.empty()) {
      const int error = file.link(path);
      if (error != EEXIST || existing == Existing::Keep) return error;
    }
    const int error = existing == Existing::Keep ? renameToFreeName(temporary.c_str(), path.c_str()) : takeOverName();
    if (error == 0) temporary.clear();
    return error;
  }
};

AtomicFile::AtomicFile(const std::string& path) : d(std::make_unique<Private>()) {
  d->path = path;
  struct stat status {};
  const bool isFolder = stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
  if (path.empty() || path.back() == '/' || isFolder) raise(EISDIR, path);
  const std::string inFolder = folderOf(path);
  if (d->file.openUnnamed(inFolder) != 0) d->openNamed(inFolder);
}

AtomicFile::~AtomicFile() {
  d->file.close();
  if (!d->temporary.empty()) unlink(d->temporary.c_str());
}

void AtomicFile::write(std::string_view bytes) {
  d->flushed = false;
  if (d->buffer.size() + bytes.size() < kBuffered) {
    d->buffer.append(bytes);
    return;
  }
  d->finish();
  d->check(d->file.write(bytes));
}

bool AtomicFile::adopt(OpenFile& content) {
  if (size() > 0 || !d->file.isNameable() || !content.isNameable() || !content.isOn(folder())) return false;
  d->file = std::move(content);
  d->flushed = false;
  return true;
}

std::uint64_t AtomicFile::size() const { return d->file.size() + d->buffer.size(); }

void AtomicFile::setPath(const std::string& path) { d->path = path; }

const std::string& AtomicFile::path() const { return d->path; }

std::string AtomicFile::folder() const { return folderOf(d->path); }

void AtomicFile::finish() { d->finish(); }

void AtomicFile::startWriteback() { d->file.startWriteback(); }

void AtomicFile::awaitWriteback() { d->check(d->file.awaitWriteback()); }

bool AtomicFile::flushTogether(const std::vector<AtomicFile*>& files) {
  if (files.empty() || files.front()->d->file.flushFileSystem() != 0) return false;
  for (AtomicFile* file : files) file->d->flushed = true;
  return true;
}

std::uint64_t AtomicFile::device() const { return d->file.device(); }

void AtomicFile::flush() {
  if (d->flushed) return;
  d->check(d->file.flush());
  d->flushed = true;
}

bool AtomicFile::commit(Existing existing) {
  finish();
  flush();
  const int error = d->takeName(existing);
  if (error == EEXIST) return false;
  d->check(error);
  return true;
}

int AtomicFile::flushFolder() const { return d->file.flushFolder(folder()); }

void AtomicFile::failAfterBytes(std::uint64_t bytes) { OpenFile::failAfterBytes(bytes); }

}  // namespace mv
