#include "Authorization.h"

#include <QByteArray>
#include <algorithm>

#include "base/Text.h"

namespace mv {

namespace {

bool asksForDigest(const ResponseHead& head) {
  const auto challenges = head.fields("WWW-Authenticate");
  return std::any_of(challenges.begin(), challenges.end(),
                     [](const auto& value) { return toQString(value).contains("digest", Qt::CaseInsensitive); });
}

}  // namespace

void Authorization::addField(const char* field) {
  plain_.reset(curl_slist_append(plain_.release(), field));
  curl_easy_setopt(easy_, CURLOPT_HTTPHEADER, plain_.get());
}

void Authorization::setCredentials(const Credentials& credentials, const std::string& host) {
  host_ = host;
  curl_easy_setopt(easy_, CURLOPT_UNRESTRICTED_AUTH, 0L);
  // libcurl writes the user's name into its answer as it is: behind a line break it would be a field of its own.
  if (credentials.user.find_first_of("\r\n") == std::string::npos) {
    curl_easy_setopt(easy_, CURLOPT_USERNAME, credentials.user.c_str());
    curl_easy_setopt(easy_, CURLOPT_PASSWORD, credentials.password.c_str());
    curl_easy_setopt(easy_, CURLOPT_HTTPAUTH, CURLAUTH_DIGEST);
  }
  const auto pair = credentials.user + ":" + credentials.password;
  const auto basic = "Authorization: Basic " + QByteArray::fromStdString(pair).toBase64().toStdString();
  basic_.reset(curl_slist_append(nullptr, basic.c_str()));
  for (const auto* field = plain_.get(); field != nullptr; field = field->next)
    curl_slist_append(basic_.get(), field->data);
  curl_easy_setopt(easy_, CURLOPT_HTTPHEADER, basic_.get());
}

void Authorization::beginAgain(const std::string& host) {
  curl_easy_setopt(easy_, CURLOPT_UNRESTRICTED_AUTH, 0L);
  if (host != host_) {
    host_.clear();
    curl_easy_setopt(easy_, CURLOPT_HTTPHEADER, plain_.get());
    basic_.reset();
    curl_easy_setopt(easy_, CURLOPT_USERNAME, nullptr);
    curl_easy_setopt(easy_, CURLOPT_PASSWORD, nullptr);
  }
  curl_easy_setopt(easy_, CURLOPT_HTTPHEADER, basic_ ? basic_.get() : plain_.get());
}

// libcurl drops credentials where scheme or port change, and so also where a site sends its visitors from http to
// https.
void Authorization::heed(const ResponseHead& head) {
  if (host_.empty()) return;
  if (const auto location = head.redirection(); !location.empty()) {
    const auto what = credentialsOnRedirect(location, host_);
    if (what != CredentialsOnRedirect::AsBefore)
      curl_easy_setopt(easy_, CURLOPT_UNRESTRICTED_AUTH, what == CredentialsOnRedirect::Keep ? 1L : 0L);
  }
  if (head.status() == 401 && asksForDigest(head)) curl_easy_setopt(easy_, CURLOPT_HTTPHEADER, plain_.get());
}

}  // namespace mv
