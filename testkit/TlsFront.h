// Stands in front of a TestSite and speaks https for it, on a port of its own that takes plain http as well, as "host"
// does on two ports. Its certificate is made when it starts and is its own issuer.
#pragma once

#include <memory>
#include <string>

#include "testkit/TestSite.h"

namespace mvtest {

class TlsFront {
 public:
  enum class Kind {
    Good,
    Expired,
    OtherHost,  // the certificate is for another host
    NoTls,      // closes what begins with TLS
  };

  explicit TlsFront(const TestSite& site, Kind kind = Kind::Good);
  ~TlsFront();
  TlsFront(const TlsFront&) = delete;
  TlsFront& operator=(const TlsFront&) = delete;

  // "localhost:port", which the certificate is for.
  std::string host() const;
  // The certificate, PEM: whoever takes it for an issuer trusts the front.
  std::string certificateFile() const;
  // Connections that came so far, with TLS and without.
  int encrypted() const;
  int plain() const;

 private:
  struct Private;
  std::unique_ptr<Private> d;
};

}  // namespace mvtest
