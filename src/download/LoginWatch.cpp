#include "LoginWatch.h"

#include <algorithm>
#include <vector>

#include "store/BuiltInForms.h"
#include "store/ProcessData.h"
#include "store/SiteStore.h"
#include "transfer/InternetTransfer.h"

namespace mv {

namespace {

constexpr int kMostWaits = 3;
constexpr std::string_view kPageType = "html";  // within "text/html" and "application/xhtml+xml"

// ASCII letters only, as a scan compares.
std::string lowered(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return lower;
}

}  // namespace

void LoginWatch::start(Id siteId) {
  const Id form = siteLoginForm(siteId);
  if (form != 0 && form != kNoLoginForm && !isAuthenticationForm(form)) {
    const std::vector<LoginField> fields = loadLoginFields(form, siteId);
    if (!fields.empty()) searchString_ = fields.front().searchString;
  }
  started_ = true;
}

bool LoginWatch::beginAnswer(const InternetTransfer& answer) {
  found_ = false;
  tail_.clear();
  looking_ = !searchString_.empty() && lowered(answer.GetHeader("Content-Type")).find(kPageType) != std::string::npos;
  return looking_;
}

void LoginWatch::look(std::string_view piece) {
  if (!looking_ || found_) return;
  tail_ += lowered(piece);
  found_ = tail_.find(searchString_) != std::string::npos;
  const std::size_t kept = std::min(tail_.size(), searchString_.size() - 1);
  tail_.erase(0, tail_.size() - kept);
}

bool LoginWatch::putOff(std::int64_t linkId) {
  Wait& wait = waits_[linkId];
  // A login that came after the request has opened the session that the request did not have yet.
  wait.logins = loginsAtRequest_ + 1;
  return ++wait.times <= kMostWaits;
}

void LoginWatch::loggedIn() { ++logins_; }

bool LoginWatch::isPutOff(std::int64_t linkId) const {
  const auto wait = waits_.find(linkId);
  return wait != waits_.end() && wait->second.logins > logins_;
}

}  // namespace mv
