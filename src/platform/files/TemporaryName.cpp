#include "TemporaryName.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cctype>

namespace mv {

namespace {

constexpr std::string_view kBegin = ".mv";
constexpr char kBetween = '-';
constexpr std::string_view kEnd = ".part";

bool isNumber(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
}

}  // namespace

std::string temporaryPath(const std::string& folder) {
  static std::atomic<unsigned> counter{0};
  std::string path = folder + '/';
  path.append(kBegin).append(std::to_string(getpid())) += kBetween;
  return path.append(std::to_string(++counter)).append(kEnd);
}

bool isTemporaryName(std::string_view name) {
  if (!name.starts_with(kBegin) || !name.ends_with(kEnd) || name.size() < kBegin.size() + kEnd.size()) return false;
  const std::string_view numbers = name.substr(kBegin.size(), name.size() - kBegin.size() - kEnd.size());
  const std::size_t between = numbers.find(kBetween);
  return between != std::string_view::npos && isNumber(numbers.substr(0, between)) &&
         isNumber(numbers.substr(between + 1));
}

}  // namespace mv
