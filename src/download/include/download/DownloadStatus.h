// How a download process stands: what its window shows, in numbers and names. DownloadTexts has the words. What is not
// known yet is none.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "process/WaitingRows.h"

namespace mv {

// The file taken up.
struct FileStatus {
  enum class Note { None, Exists, TooSmall, TooBig };

  std::string name;  // "" between two rounds
  Note note = Note::None;

  bool operator==(const FileStatus&) const = default;
};

// What its server said of its size.
struct SizeStatus {
  enum class Verdict { Wanted, Unknown, TooSmall, TooBig };

  Verdict verdict = Verdict::Wanted;
  std::int64_t bytes = 0;
  std::string announced;   // as the header has it
  std::int64_t limit = 0;  // bytes; the one that the file breaks

  bool operator==(const SizeStatus&) const = default;
};

// What came of the files since the process was started.
struct DownloadCounts {
  long saved = 0;
  long existing = 0;
  long tooSmall = 0;
  long tooBig = 0;
  long unknownSize = 0;
  std::int64_t bytes = 0;  // saved
};

struct DownloadStatus {
  std::optional<FileStatus> file;
  std::optional<std::int64_t> queue;      // files that this round may still take up
  std::optional<std::int64_t> processed;  // files that it has taken up
  std::optional<SizeStatus> size;
  std::optional<std::int64_t> received;  // bytes
  std::optional<std::int64_t> left;      // bytes
  std::optional<std::string> savePath;   // folder
  DownloadCounts counts;
  WaitingRows waiting;
};

}  // namespace mv
