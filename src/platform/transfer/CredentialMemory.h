// User names and passwords of hosts, for requests whose addresses hold none. In memory only, gone with the program.
// Other rooms use InternetTransfer::rememberCredentials.
#pragma once

#include <optional>
#include <string>

#include "transfer/RequestAddress.h"

namespace mv {

// `host` as in RequestAddress. Empty credentials forget the host.
void rememberHostCredentials(const std::string& host, const Credentials& credentials);
std::optional<Credentials> hostCredentials(const std::string& host);
void forgetHostCredentials();

}  // namespace mv
