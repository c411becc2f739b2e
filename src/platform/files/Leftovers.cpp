#include "files/Leftovers.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

#include "TemporaryName.h"

namespace mv {

namespace fs = std::filesystem;

namespace {

void removeUnlessLocked(const std::string& path) {
  // For writing: network file systems give the lock to nobody else. Without blocking: it might be no plain file at all.
  const int file = ::open(path.c_str(), O_RDWR | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
  if (file < 0) return;
  if (::flock(file, LOCK_EX | LOCK_NB) == 0) ::unlink(path.c_str());
  ::close(file);
}

}  // namespace

void removeLeftovers(const std::string& folder) {
  std::error_code error;
  fs::directory_iterator entry(folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error))
    if (isTemporaryName(entry->path().filename().native())) removeUnlessLocked(entry->path().native());
}

}  // namespace mv
