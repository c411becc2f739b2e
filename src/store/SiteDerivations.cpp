#include "store/SiteDerivations.h"

#include <algorithm>

#include "LeadingNumber.h"
#include "base/Text.h"

namespace mv {

namespace {

constexpr std::string_view kScheme = "http://";
constexpr std::int64_t kMostHops = 100;
constexpr std::size_t kBaseNameLimit = 200;
constexpr const char* kDefaultBaseName = "NewFile";

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
