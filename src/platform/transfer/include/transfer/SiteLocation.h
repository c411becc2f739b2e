// A site's location as its row keeps it, perhaps with "https://", and what requests make of it.
#pragma once

#include <string>
#include <string_view>

namespace mv {

class SiteLocation {
 public:
  explicit SiteLocation(std::string_view name = {});

  // Without scheme.
  const std::string& address() const { return address_; }
  // The part of it before the first "/".
  std::string host() const;
  // The user has typed "https://", in whatever case: the site's own host is asked by https only.
  bool isHttps() const { return isHttps_; }
  // With the scheme that it is asked by.
  std::string withScheme() const;
  // Makes that known to all requests. To be called when a process of the site starts.
  void announce() const;

 private:
  std::string address_;
  bool isHttps_;
};

}  // namespace mv
