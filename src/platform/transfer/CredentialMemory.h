// User names and passwords of sites, for requests whose addresses hold none. In memory only, gone with the program.
// Other rooms use InternetTransfer::rememberLogin.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "transfer/RequestAddress.h"

namespace mv {

// For the site's own `host`, as in RequestAddress. Empty credentials forget the site's.
void rememberSiteLogin(std::int64_t site, const std::string& host, const Credentials& credentials);
// What a request of the site to `host` carries.
std::optional<Credentials> siteLogin(std::int64_t site, const std::string& host);
void forgetSiteLogins();

}  // namespace mv
