#include "download/DownloadTexts.h"

#include <QString>

#include "app/Settings.h"
#include "base/Text.h"
#include "base/WebAddress.h"
#include "process/ProcessTexts.h"

namespace mv {

namespace {

// Only the caption as long as there is no value.
std::string captioned(const char* caption, const std::optional<std::string>& value) {
  return value ? std::string(caption).append(" ").append(*value) : caption;
}

std::string captioned(const char* caption, std::optional<std::int64_t> value) {
  return captioned(caption, value ? std::optional(std::to_string(*value)) : std::nullopt);
}

const char* noteText(FileStatus::Note note) {
  switch (note) {
    case FileStatus::Note::None:
      return "";
    case FileStatus::Note::Exists:
      return " Exists";
    case FileStatus::Note::TooSmall:
      return " Too Small";
    case FileStatus::Note::TooBig:
      return " Too Big";
  }
  return "";
}

// Rounded to two decimals, without trailing zeros.
std::string kilobytes(std::int64_t bytes) {
  QString text = QString::number(static_cast<double>(bytes) / 1024.0, 'f', 2);
  while (text.endsWith(u'0')) text.chop(1);
  if (text.endsWith(u'.')) text.chop(1);
  return toUtf8(text);
}

std::string refusalText(const SizeStatus& size) {
  if (size.verdict == SizeStatus::Verdict::Unknown) return " Zero Conetnt-Length - File Size Unknown";
  const char* side = size.verdict == SizeStatus::Verdict::TooSmall ? " Below" : " Above";
  return side + (" threshold of " + std::to_string(size.limit));
}

}  // namespace

std::string downloadTitle(const std::string& siteName) { return kDownloadTitle + maskPassword(siteName); }

std::string fileText(const DownloadStatus& status) {
  const auto& file = status.file;
  return captioned("File:", file ? std::optional(file->name + noteText(file->note)) : std::nullopt);
}

std::string queueText(const DownloadStatus& status) { return captioned("Queue:", status.queue); }

std::string filesProcessedText(const DownloadStatus& status) { return captioned("Processed:", status.processed); }

std::string sizeText(const DownloadStatus& status) {
  const auto& size = status.size;
  if (size && size->verdict != SizeStatus::Verdict::Wanted)
    return "File Size:  " + size->announced + refusalText(*size);
  return captioned("Size (In Kilobytes) :", size ? std::optional(kilobytes(size->bytes)) : std::nullopt);
}

std::string receivedText(const DownloadStatus& status) { return captioned("Received:", status.received); }

std::string leftText(const DownloadStatus& status) { return captioned("Left:", status.left); }

std::string outcomeText(const DownloadStatus& status, long failed) {
  const DownloadCounts& counts = status.counts;
  const std::string outcomes = joinedCounts({{counts.saved, "file saved", "files saved"},
                                             {counts.existing, "there already"},
                                             {counts.tooSmall, "too small"},
                                             {counts.tooBig, "too big"},
                                             {counts.unknownSize, "of unknown size"},
                                             {failed, "failed"}});
  const char* none = status.waiting == WaitingRows() ? "No new file" : "No file yet";
  return (outcomes.empty() ? none : outcomes) + ". " + waitingText(status.waiting, "file");
}

std::string savePathText(const DownloadStatus& status) { return captioned("Saving to:", status.savePath); }

}  // namespace mv
