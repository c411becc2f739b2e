#include "CredentialMemory.h"

#include <map>

namespace mv {

namespace {

struct Login {
  std::string host;
  Credentials credentials;
};

std::map<std::int64_t, Login>& memory() {
  static std::map<std::int64_t, Login> logins;
  return logins;
}

}  // namespace

void rememberSiteLogin(std::int64_t site, const std::string& host, const Credentials& credentials) {
  if (host.empty() || (credentials.user.empty() && credentials.password.empty()))
    memory().erase(site);
  else
    memory()[site] = {host, credentials};
}

std::optional<Credentials> siteLogin(std::int64_t site, const std::string& host) {
  const auto found = memory().find(site);
  if (found == memory().end() || found->second.host != host) return std::nullopt;
  return found->second.credentials;
}

void forgetSiteLogins() { memory().clear(); }

}  // namespace mv
