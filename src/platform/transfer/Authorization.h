// What a request says about its user, and to whom; with it the header fields that the request sends of its own.
#pragma once

#include <curl/curl.h>

#include <memory>
#include <string>

#include "ResponseHead.h"
#include "transfer/RequestAddress.h"

namespace mv {

class Authorization {
 public:
  // `easy` outlives the transfer that it is used for, and this object outlives that transfer.
  explicit Authorization(CURL* easy) : easy_(easy) {}

  // A header field that goes with every request, "Name: value". Before setCredentials.
  void addField(const char* field);
  // For `host` (as in RequestAddress) only. Basic goes along with the first request, as its server mostly wants it, at
  // no extra round trip; libcurl answers a digest challenge.
  void setCredentials(const Credentials& credentials, const std::string& host);
  // The request begins anew at `host`: another one than before gets no credentials.
  void beginAgain(const std::string& host);
  // At the end of every head, before libcurl acts on it: a redirect may keep or lose the credentials, a digest
  // challenge takes the basic ones back.
  void heed(const ResponseHead& head);

 private:
  struct SlistDeleter {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
  };
  using Slist = std::unique_ptr<curl_slist, SlistDeleter>;

  CURL* easy_;
  Slist plain_;
  Slist basic_;       // the same and the basic credentials
  std::string host_;  // of the credentials, "" without any
};

}  // namespace mv
