#include "transfer/SiteLocation.h"

#include "base/Text.h"
#include "transfer/HttpsHosts.h"

namespace mv {

namespace {

constexpr std::string_view kHttp = "http://";
constexpr std::string_view kHttps = "https://";

bool startsWith(std::string_view text, std::string_view scheme) {
  return toQString(text.substr(0, scheme.size())).compare(toQString(scheme), Qt::CaseInsensitive) == 0;
}

}  // namespace

SiteLocation::SiteLocation(std::string_view name) : isHttps_(startsWith(name, kHttps)) {
  if (isHttps_) name.remove_prefix(kHttps.size());
  if (startsWith(name, kHttp)) name.remove_prefix(kHttp.size());
  address_ = name;
}

std::string SiteLocation::host() const { return address_.substr(0, address_.find('/')); }

std::string SiteLocation::withScheme() const { return std::string(isHttps_ ? kHttps : kHttp) + address_; }

void SiteLocation::announce() const {
  if (isHttps_) requireHttps(address_);
}

}  // namespace mv
