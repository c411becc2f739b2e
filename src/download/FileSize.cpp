#include "FileSize.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>
#include <utility>

#include "net/TextBody.h"

namespace mv {

namespace {

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

std::int64_t inBytes(std::int64_t limit, std::int64_t unit) {
  std::int64_t bytes = 0;
  return __builtin_mul_overflow(limit, unit, &bytes) ? kMost : bytes;
}

std::int64_t lowerLimit(const DownloadLimits& limits) { return inBytes(limits.lowerKilobytes, 1024); }

std::int64_t upperLimit(const DownloadLimits& limits) { return inBytes(limits.upperMegabytes, 1024 * 1024); }

}  // namespace

std::int64_t leadingSize(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  std::int64_t size = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), size);
  return error == std::errc::result_out_of_range ? kMost : std::max<std::int64_t>(size, 0);
}

bool fits(std::int64_t bytes, const DownloadLimits& limits) {
  return bytes != 0 && lowerLimit(limits) <= bytes && bytes <= upperLimit(limits);
}

SizeStatus announcedSize(std::string header) {
  SizeStatus size;
  size.bytes = leadingSize(header);
  size.announced = std::move(header);
  return size;
}

SizeStatus refusal(SizeStatus size, const DownloadLimits& limits) {
  using Verdict = SizeStatus::Verdict;
  if (size.bytes == 0) {
    size.verdict = Verdict::Unknown;
  } else if (size.bytes > upperLimit(limits)) {  // which is what counts where the limits contradict each other
    size.verdict = Verdict::TooBig;
    size.limit = upperLimit(limits);
  } else {
    size.verdict = Verdict::TooSmall;
    size.limit = lowerLimit(limits);
  }
  return size;
}

FileProgress fileProgress(std::int64_t bytes, std::int64_t size) {
  const std::int64_t maximum = size + std::int64_t{kChunkSize};
  const std::int64_t unit = maximum / std::numeric_limits<int>::max() + 1;
  return {static_cast<long>(std::min(bytes, maximum) / unit), static_cast<long>(maximum / unit)};
}

}  // namespace mv
