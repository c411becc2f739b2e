// From an address as the program keeps it to what goes over the wire.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mv {

struct Credentials {
  std::string user;
  std::string password;
};

struct RequestAddress {
  // With scheme, without user information and fragment, every byte that a URL may not hold percent-encoded.
  std::string url;
  // "host" or "host:port" in lower case; the scheme's usual port is left out.
  std::string host;
  std::optional<Credentials> credentials;
};

// Without a scheme it is http. User information is the text before the last "@" of the authority; the user ends at its
// first ":", then every "%XX" of both stands for its byte. Elsewhere an existing "%XX" and "&amp;" stay as they are.
// Empty when there is no usable host.
std::optional<RequestAddress> toRequestAddress(std::string_view address);

// The same address by https; one of another scheme than http stays as it is.
void askByHttps(RequestAddress& address);

// Where a redirect to `location` leads from `base`, both with scheme, as libcurl resolves it; "" when it is no address.
std::string redirectTarget(const std::string& base, const std::string& location);

// RequestAddress::host of `address`; "" when there is no usable host.
std::string hostOf(std::string_view address);

// What a redirect to `location` does with the credentials of a request to `host` (as in RequestAddress).
enum class CredentialsOnRedirect { Keep, Drop, AsBefore };
// Keep: the same host over https, as sites send those who come over http. AsBefore: a path on the host that answered.
CredentialsOnRedirect credentialsOnRedirect(std::string_view location, const std::string& host);

}  // namespace mv
