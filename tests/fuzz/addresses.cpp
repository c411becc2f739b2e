// Addresses as they are typed and linked: what goes over the wire, and what may be shown of them.
#include <string>

#include "Fuzz.h"
#include "base/WebAddress.h"
#include "net/Address.h"
#include "transfer/RequestAddress.h"

namespace {

using mvfuzz::require;

void checkRequest(std::string_view address) {
  const auto request = mv::toRequestAddress(address);
  if (!request) return;
  for (const char c : request->url)
    require(static_cast<unsigned char>(c) > 0x20 && static_cast<unsigned char>(c) < 0x7f, "a request is plain ASCII");
  const auto again = mv::toRequestAddress(request->url);
  require(again && again->url == request->url && again->host == request->host,
          "an address asked for twice is the same");
  require(!again->credentials, "no user stands in a request's address");
}

}  // namespace

void mvfuzz::fuzzOne(std::string_view input) {
  const std::string address(takePart(input));
  const std::string host(takePart(input));
  checkRequest(address);
  checkRequest(mv::withCredentials(address, host, input));
  const std::string masked = mv::maskPassword(address);
  require(mv::maskPassword(masked) == masked, "a masked address stays masked");
  mv::maskPasswords(input);
  mv::shortened(address);
  mv::lastSegment(address);
  // To whom the credentials go on: another host never gets them.
  if (mv::credentialsOnRedirect(address, host) == mv::CredentialsOnRedirect::Keep)
    require(mv::hostOf(address) == host, "credentials stay with their host");
}
