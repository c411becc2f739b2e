#include "app/ErrorLog.h"

#include <QDir>
#include <QFile>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>

#include "app/Settings.h"
#include "base/Clock.h"
#include "base/Text.h"
#include "files/AtomicFile.h"

namespace mv {
namespace {

constexpr std::size_t kRuleLength = 56;

[[noreturn]] void fail() {
  const int number = errno;
  throw FileError(number, errorLogPath() + ": " + std::strerror(number));
}

void logStamp(const std::string& what) {
  appendToErrorLog({what + ' ' + std::string(kRuleLength, '='), dateTimeText(now())});
}

}  // namespace

std::string errorLogPath() { return gProgramFolder + QDir::separator().toLatin1() + "MV2Errors.txt"; }

void appendToErrorLog(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";

  std::FILE* file = std::fopen(QFile::encodeName(toQString(errorLogPath())).constData(), "ab");
  if (!file) fail();
  // Unbuffered, so that an entry is one write and two programs' entries do not mix.
  std::setvbuf(file, nullptr, _IONBF, 0);
  const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  const int writeError = errno;
  const bool closed = std::fclose(file) == 0;
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
      text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
  return text;
}

void logOpened() { logStamp("Log opened"); }
void logClosed() { logStamp("Log closed"); }

}  // namespace mv
