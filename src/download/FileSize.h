// The sizes that a site's files may have, and how far a file of a size has come.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "download/DownloadStatus.h"
#include "store/ProcessData.h"

namespace mv {

// The leading whole number of a header's value, at most the largest number; 0 for anything that is no size.
std::int64_t leadingSize(std::string_view text);

// Lies a known size within the limits, both ends included? Limits beyond 64 bits are the largest number.
bool fits(std::int64_t bytes, const DownloadLimits& limits);
// What a Content-Length header says.
SizeStatus announcedSize(std::string header);
// Why a file of that size is not taken: the verdict, and the limit that is broken. Nothing can be said of 0 bytes.
SizeStatus refusal(SizeStatus size, const DownloadLimits& limits);

// For a progress bar, which counts in int: a larger file is counted in larger units.
struct FileProgress {
  long value = 0;
  long maximum = 0;  // a little beyond the whole file, for the last step
};
FileProgress fileProgress(std::int64_t bytes, std::int64_t size);

}  // namespace mv
