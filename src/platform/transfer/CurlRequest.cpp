#include "CurlRequest.h"

#include <sys/socket.h>

#include <cstdio>
#include <new>
#include <utility>

#include "CredentialMemory.h"
#include "TransportError.h"
#include "base/WebAddress.h"
#include "transfer/HttpsHosts.h"

namespace mv {

namespace {

constexpr const char* kUserAgent = "Morvane2000/1.0";
constexpr const char* kProtocols = "http,https";
constexpr std::string_view kHttpsStart = "https://";
constexpr long kMostRedirects = 20;
constexpr long kFileBuffer = 512L * 1024;
// The page that comes with an error is not wanted, but reading a short one keeps the connection.
constexpr std::size_t kErrorBodyRead = std::size_t{64} * 1024;
constexpr std::size_t kPackedPiece = 1024;                   // deflate makes a MiB of it at most: a few milliseconds
constexpr std::size_t kHeadLimit = std::size_t{256} * 1024;  // less than libcurl's own

}  // namespace

// The loop first: it sets libcurl up.
CurlRequest::CurlRequest(const Order& order, StateReporter::Raise raise)
    : address_(order.address),
      mode_(order.mode),
      limits_(order.limits),
      site_(order.site),
      states_(std::move(raise)),
      slow_(limits_.slowSpanMs, limits_.slowBytesPerSecond, [this] { giveUp(); }),
      loop_(CurlLoop::current()),
      easy_(curl_easy_init()),
      authorization_(easy_.get()),
      head_(easy_.get()),
      body_(mode_, limits_) {
  if (!easy_) throw std::bad_alloc();
}

CurlRequest::~CurlRequest() {
  if (running_) loop_->remove(easy_.get(), this);
}

void CurlRequest::start() {
  const auto target = toRequestAddress(address_);
  if (!target) {
    fail(CURLE_URL_MALFORMAT, "The address has no usable host name");
    return;
  }
  target_ = *target;
  setOptions();
  setLimits();
  setBodyOptions();
  const auto credentials = target_.credentials ? target_.credentials : siteLogin(site_, target_.host);
  if (credentials) authorization_.setCredentials(*credentials, target_.host);
  setObservers();
  loop_->prepare(easy_.get());
  begin();
}

void CurlRequest::begin() {
  RequestAddress asked = target_;
  const HttpsUse use = httpsUse(target_.host);
  if (use != HttpsUse::No) askByHttps(asked);
  httpMayDo_ = use == HttpsUse::Tried && asked.url != target_.url;
  errorBuffer_[0] = '\0';
  headBytes_ = 0;
  curl_easy_setopt(easy_.get(), CURLOPT_URL, asked.url.c_str());
  curl_easy_setopt(easy_.get(), CURLOPT_MAXREDIRS, kMostRedirects - redirects_);
  loop_->add(easy_.get(), this);
  running_ = true;
  slow_.start();
}

// Whether the request goes on at another place, or at the same one by http.
bool CurlRequest::beginAgain(CURLcode result) {
  if (!next_.host.empty()) {
    target_ = std::exchange(next_, {});
    authorization_.beginAgain(target_.host);
  } else if (result != CURLE_OK && httpMayDo_ && head_.status() == 0 && isHttpsFailure(easy_.get(), result)) {
    giveUpHttps(target_.host);
  } else {
    return false;
  }
  begin();
  return true;
}

void CurlRequest::setOptions() {
  CURL* easy = easy_.get();
  curl_easy_setopt(easy, CURLOPT_USERAGENT, kUserAgent);
  curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, kProtocols);
  curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, kProtocols);
  curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(easy, CURLOPT_COOKIEFILE, "");  // cookies on, nothing read from or written to disk
  curl_easy_setopt(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, errorBuffer_);
  if (!limits_.certificates.empty()) curl_easy_setopt(easy, CURLOPT_CAINFO, limits_.certificates.c_str());
}

void CurlRequest::setLimits() {
  CURL* easy = easy_.get();
  curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, limits_.connectTimeoutMs);
  curl_easy_setopt(easy, CURLOPT_LOW_SPEED_LIMIT, 1L);
  curl_easy_setopt(easy, CURLOPT_LOW_SPEED_TIME, limits_.stallTimeoutS);
  // A request that ends while a name server is still silent must not wait for its answer.
  curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
}

void CurlRequest::setBodyOptions() {
  // As a field of its own: with the option libcurl would unpack the body itself.
  if (mode_ == BodyMode::Text) {
    authorization_.addField(std::string("Accept-Encoding: ").append(Unpacker::kAccepted).c_str());
    return;
  }
  authorization_.addField("Accept-Encoding: identity");
  curl_easy_setopt(easy_.get(), CURLOPT_BUFFERSIZE, kFileBuffer);
}

void CurlRequest::setObservers() {
  CURL* easy = easy_.get();
  curl_easy_setopt(easy, CURLOPT_RESOLVER_START_FUNCTION, &CurlRequest::onResolve);
  curl_easy_setopt(easy, CURLOPT_RESOLVER_START_DATA, this);
  curl_easy_setopt(easy, CURLOPT_OPENSOCKETFUNCTION, &CurlRequest::onOpen);
  curl_easy_setopt(easy, CURLOPT_OPENSOCKETDATA, this);
  curl_easy_setopt(easy, CURLOPT_PREREQFUNCTION, &CurlRequest::onReady);
  curl_easy_setopt(easy, CURLOPT_PREREQDATA, this);
  curl_easy_setopt(easy, CURLOPT_VERBOSE, 1L);  // only so that the sending of the request is told
  curl_easy_setopt(easy, CURLOPT_DEBUGFUNCTION, &CurlRequest::onDebug);
  curl_easy_setopt(easy, CURLOPT_DEBUGDATA, this);
  curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &CurlRequest::onHeader);
  curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
  curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &CurlRequest::onBody);
  curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
}

// ---- what libcurl tells

// No exception may pass through libcurl: it ends the request, and nothing else.
template <class Answer, class Work>
Answer CurlRequest::guarded(void* self, Answer failure, const Work& work) {
  auto& request = *static_cast<CurlRequest*>(self);
  try {
    return work(request);
  } catch (const std::bad_alloc&) {
    request.callbackFailed("Out of memory");
  } catch (const std::exception& error) {
    request.callbackFailed(error.what());
  }
  return failure;
}

void CurlRequest::callbackFailed(const char* why) noexcept {
  body_.discard();
  std::snprintf(exception_.data(), exception_.size(), "%s", why);
}

int CurlRequest::onResolve(void*, void*, void* self) {
  return guarded(self, 1, [](CurlRequest& request) {
    request.states_.beginHop();
    request.states_.raise(kResolvingHost);
    return 0;
  });
}

curl_socket_t CurlRequest::onOpen(void* self, curlsocktype, curl_sockaddr* address) {
  return guarded(self, CURL_SOCKET_BAD, [address](CurlRequest& request) {
    auto& states = request.states_;
    states.beginHop();
    if (states.isLast(kResolvingHost)) states.raise(kHostResolved);
    states.raise(kConnecting);
    return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
  });
}

int CurlRequest::onReady(void* self, char*, char* localAddress, int, int localPort) {
  return guarded(self, CURL_PREREQFUNC_ABORT, [localAddress, localPort](CurlRequest& request) {
    auto& states = request.states_;
    states.beginHop();
    request.loop_->connected(std::string(localAddress) + ' ' + std::to_string(localPort), &request);
    if (states.isLast(kConnecting)) states.raise(kConnected);
    states.raise(kRequesting);
    return CURL_PREREQFUNC_OK;
  });
}

int CurlRequest::onDebug(CURL*, curl_infotype type, char*, std::size_t, void* self) {
  if (type != CURLINFO_HEADER_OUT) return 0;
  return guarded(self, 0, [](CurlRequest& request) {
    if (request.states_.isLast(kRequesting)) request.states_.raise(kRequestSent);
    return 0;
  });
}

std::size_t CurlRequest::onHeader(char* data, std::size_t size, std::size_t count, void* self) {
  const std::string_view line(data, size * count);
  return guarded(self, std::size_t{0},
                 [line](CurlRequest& request) { return request.takeHeader(line) ? line.size() : 0; });
}

std::size_t CurlRequest::onBody(char* data, std::size_t size, std::size_t count, void* self) {
  const std::string_view bytes(data, size * count);
  return guarded(self, std::size_t{CURL_WRITEFUNC_ERROR},
                 [bytes](CurlRequest& request) { return request.takeBody(bytes); });
}

// ---- the response

bool CurlRequest::takeHeader(std::string_view line) {
  slow_.received(line.size());
  headBytes_ += line.size();
  if (headBytes_ > kHeadLimit) return false;
  const auto event = head_.take(line);
  if (event == ResponseHead::Event::Begun) states_.raise(kReceivingResponse);
  return event != ResponseHead::Event::Ended || endOfHead();
}

// False when there is nothing more to be wanted of this answer.
bool CurlRequest::endOfHead() {
  errorBodyBytes_ = 0;
  authorization_.heed(head_);
  const std::string hop = hopAddress();
  if (hop.starts_with(kHttpsStart)) {
    rememberHttps(hop);
    if (const auto demand = head_.field("Strict-Transport-Security"); !demand.empty()) rememberHsts(hop, demand);
  }
  if (!head_.isFinal()) return follow(hop);
  // A 401 may be followed by another attempt, and an error's code is told when its body is out of the way.
  if (head_.status() >= 400) return true;
  flaw_ = head_.flaw(mode_ != BodyMode::Text);
  if (!flaw_.empty()) return false;
  body_.begin({head_.field("Content-Type"), head_.field("Content-Encoding"), head_.announcedLength()});
  if (mode_ != BodyMode::HeadersOnly) return true;
  held_ = true;
  states_.raise(kResponseReceived);
  states_.raise(kResponseCompleted);
  return true;
}

// A redirect may lead by http to a host that is asked by https only. libcurl would go there: the request begins again.
bool CurlRequest::follow(const std::string& hop) {
  const auto location = head_.redirection();
  if (location.empty()) return true;
  ++redirects_;
  auto target = toRequestAddress(redirectTarget(hop, location));
  if (!target || httpsUse(target->host) != HttpsUse::Only || redirects_ > kMostRedirects) return true;
  const std::string url = target->url;
  askByHttps(*target);
  if (target->url == url) return true;
  next_ = *target;
  return false;
}

// Of the answer that is coming in.
std::string CurlRequest::hopAddress() const {
  const char* url = nullptr;
  curl_easy_getinfo(easy_.get(), CURLINFO_EFFECTIVE_URL, &url);
  return url == nullptr ? "" : url;
}

std::string CurlRequest::responseAddress() const {
  if (head_.status() == 0) return {};
  const auto answered = toRequestAddress(hopAddress());
  return answered ? answered->url : std::string();
}

std::size_t CurlRequest::takeBody(std::string_view bytes) {
  if (held_) {
    paused_ = true;
    return CURL_WRITEFUNC_PAUSE;
  }
  if (head_.status() >= 400) {
    slow_.received(bytes.size());
    errorBodyBytes_ += bytes.size();
    return errorBodyBytes_ > kErrorBodyRead ? CURL_WRITEFUNC_ERROR : bytes.size();
  }
  states_.raise(kReceivingResponse);
  return takePieces(bytes);
}

// What is left when the time is spent comes again with what was taken already: libcurl keeps the whole.
std::size_t CurlRequest::takePieces(std::string_view bytes) {
  const std::size_t all = bytes.size();
  const std::size_t size = body_.isPacked() ? kPackedPiece : all;
  for (std::size_t at = std::exchange(taken_, 0); at < all;) {
    const auto piece = bytes.substr(at, size);
    slow_.received(piece.size());
    if (!body_.append(piece)) return CURL_WRITEFUNC_ERROR;
    at += piece.size();
    if (!loop_->budgetIsSpent()) continue;
    loop_->readOnLater(easy_.get());
    if (at == all) break;
    taken_ = at;
    return CURL_WRITEFUNC_PAUSE;
  }
  return all;
}

// ---- a held response

void CurlRequest::hold() {
  slow_.stop();
  if (!held_ || !running_ || paused_) return;
  paused_ = true;
  curl_easy_pause(easy_.get(), CURLPAUSE_RECV);
}

void CurlRequest::resume() {
  mode_ = BodyMode::File;
  held_ = false;
  states_.reopenResponse();
  if (!running_) {
    conclude(heldResult_);
    return;
  }
  slow_.start();
  if (!paused_) return;
  paused_ = false;
  const CURLcode result = curl_easy_pause(easy_.get(), CURLPAUSE_CONT);
  if (result == CURLE_OK) return;
  loop_->remove(easy_.get(), this);
  finished(result);
}

void CurlRequest::release() {
  released_ = true;
  slow_.stop();
  if (!running_) return;
  running_ = false;
  loop_->remove(easy_.get(), this);
}

// ---- the outcome

void CurlRequest::finished(CURLcode result) {
  running_ = false;
  slow_.stop();
  guarded(this, false, [result](CurlRequest& request) {
    if (request.beginAgain(result)) return true;
    if (request.held_)
      request.heldResult_ = result;
    else
      request.conclude(result);
    return true;
  });
  if (exception_[0] != '\0' && code_ == 0) fail(CURLE_OUT_OF_MEMORY, exception_.data());
}

void CurlRequest::giveUp() {
  loop_->remove(easy_.get(), this);
  running_ = false;
  fail(CURLE_OPERATION_TIMEDOUT, "The server has sent less than " + std::to_string(limits_.slowBytesPerSecond) +
                                     " bytes a second over " + std::to_string(limits_.slowSpanMs / 1000) + " seconds");
}

void CurlRequest::conclude(CURLcode result) {
  if (result == CURLE_OK && head_.isComplete() && head_.status() < 400) body_.finish();
  if (exception_[0] != '\0') {
    fail(CURLE_OUT_OF_MEMORY, exception_.data());
  } else if (head_.status() >= 400 && !head_.isOpen()) {
    states_.raise(kResponseReceived);
    fail(head_.status(), head_.reason());
  } else if (!flaw_.empty()) {
    fail(CURLE_WEIRD_SERVER_REPLY, flaw_);
  } else if (body_.hasFailed()) {
    fail(body_.failureCode(), body_.failureText());
  } else if (!head_.isComplete() && (result == CURLE_OK || result == CURLE_PARTIAL_FILE)) {
    fail(CURLE_PARTIAL_FILE, "The answer ends within its header");
  } else if (result != CURLE_OK) {
    failByTransport(result);
  } else {
    states_.raise(kResponseReceived);
    states_.raiseDisconnected();
    states_.raise(kResponseCompleted);
  }
}

void CurlRequest::failByTransport(CURLcode result) {
  // libcurl's own limit for a line of a header is less, and its name for that is "out of memory".
  if (headBytes_ > kHeadLimit || (result == CURLE_OUT_OF_MEMORY && !head_.isComplete()))
    fail(CURLE_WEIRD_SERVER_REPLY, "The header of the answer is too long");
  else
    fail(result, transportErrorText(easy_.get(), result, errorBuffer_));
}

void CurlRequest::fail(long code, const std::string& info) {
  states_.raiseDisconnected();
  code_ = code;
  info_ = asPlainLine(maskPasswords(info));
  states_.raise(kError);
}

}  // namespace mv
