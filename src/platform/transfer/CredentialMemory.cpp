#include "CredentialMemory.h"

#include <map>

namespace mv {

namespace {

std::map<std::string, Credentials>& memory() {
  static std::map<std::string, Credentials> credentials;
  return credentials;
}

}  // namespace

void rememberHostCredentials(const std::string& host, const Credentials& credentials) {
  if (host.empty()) return;
  if (credentials.user.empty() && credentials.password.empty())
    memory().erase(host);
  else
    memory()[host] = credentials;
}

std::optional<Credentials> hostCredentials(const std::string& host) {
  const auto found = memory().find(host);
  if (found == memory().end()) return std::nullopt;
  return found->second;
}

void forgetHostCredentials() { memory().clear(); }

}  // namespace mv
