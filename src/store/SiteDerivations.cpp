#include "store/SiteDerivations.h"

#include <algorithm>

#include "LeadingNumber.h"

namespace mv {

namespace {

constexpr std::string_view kScheme = "http://";
constexpr std::int64_t kMostHops = 100;
constexpr std::size_t kBaseNameLimit = 200;
constexpr const char* kDefaultBaseName = "NewFile";

std::size_t characterCount(std::string_view utf8) {
  return static_cast<std::size_t>(
      std::count_if(utf8.begin(), utf8.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }));
}

}  // namespace

std::string siteLocation(std::string_view typed) {
  if (typed.starts_with(kScheme)) typed.remove_prefix(kScheme.size());
  return std::string(typed);
}

std::string siteDomain(std::string_view location) { return std::string(location.substr(0, location.find('/'))); }

std::int64_t siteHops(std::string_view typed) { return std::clamp<std::int64_t>(leadingNumber(typed), 0, kMostHops); }

std::string siteBaseName(const std::string& typed) {
  return !typed.empty() && characterCount(typed) < kBaseNameLimit ? typed : kDefaultBaseName;
}

}  // namespace mv
