#include "app/ErrorLog.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <iterator>

#include "app/Settings.h"
#include "base/Clock.h"
#include "files/AtomicFile.h"

namespace mv {
namespace {

constexpr std::size_t kRuleLength = 56;
constexpr mode_t kMode = 0666;  // less what the user's mask takes away

[[noreturn]] void fail() {
  const int number = errno;
  throw FileError(number, errorLogPath() + ": " + std::strerror(number));
}

// Not to be waited for: a pipe in the log's place would hold the program until somebody reads it.
int openLog() {
  const int file = open(errorLogPath().c_str(), O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK | O_CLOEXEC, kMode);
  const bool isPipe = file < 0 && errno == ENXIO;
  if (file < 0 && !isPipe) fail();
  struct stat status {};
  if (!isPipe && fstat(file, &status) == 0 && !S_ISFIFO(status.st_mode)) return file;
  if (!isPipe) close(file);
  throw FileError(ENXIO, errorLogPath() + " is not a file.");
}

void logStamp(const std::string& what) {
  appendToErrorLog({what + ' ' + std::string(kRuleLength, '='), dateTimeText(now())});
}

}  // namespace

std::string errorLogPath() { return gProgramFolder + QDir::separator().toLatin1() + "MV2Errors.txt"; }

void appendToErrorLog(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";

  const int file = openLog();
  // One write, so that two programs' entries do not mix. One that is cut off has met a full disk.
  errno = ENOSPC;
  const bool written = write(file, text.data(), text.size()) == std::ssize(text);
  const int writeError = errno;
  const bool closed = close(file) == 0;
  if (written && closed) return;
  if (!written) errno = writeError;
  fail();
}

void tryAppendToErrorLog(const std::vector<std::string>& lines) noexcept {
  try {
    appendToErrorLog(lines);
  } catch (const std::exception&) {
    // The entry is lost; the caller goes on.
  }
}

std::string asOneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, ' ');
  return text;
}

void logOpened() { logStamp("Log opened"); }
void logClosed() { logStamp("Log closed"); }

}  // namespace mv
