#include "CurlRequest.h"

#include <sys/socket.h>

#include <new>
#include <utility>

#include "CredentialMemory.h"
#include "base/WebAddress.h"
#include "transfer/RequestAddress.h"

namespace mv {

namespace {

constexpr const char* kUserAgent = "Morvane2000/1.0";
constexpr const char* kProtocols = "http,https";
constexpr long kMostRedirects = 20;
constexpr long kFileBuffer = 512L * 1024;
// The page that comes with an error is not wanted, but reading a short one keeps the connection.
constexpr std::size_t kErrorBodyRead = std::size_t{64} * 1024;
constexpr std::size_t kHeadLimit = std::size_t{1024} * 1024;

CurlRequest* requestOf(void* self) { return static_cast<CurlRequest*>(self); }

}  // namespace

// The loop first: it sets libcurl up.
CurlRequest::CurlRequest(const std::string& address, BodyMode mode, const TransferLimits& limits,
                         StateReporter::Raise raise)
    : address_(address),
      mode_(mode),
      limits_(limits),
      states_(std::move(raise)),
      loop_(CurlLoop::current()),
      easy_(curl_easy_init()),
      authorization_(easy_.get()),
      head_(easy_.get()),
      body_(mode, limits) {
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
  setOptions(target->url);
  setLimits();
  setBodyOptions();
  const auto credentials = target->credentials ? target->credentials : hostCredentials(target->host);
  if (credentials) authorization_.setCredentials(*credentials, target->host);
  setObservers();
  loop_->prepare(easy_.get());
  loop_->add(easy_.get(), this);
  running_ = true;
}

void CurlRequest::setOptions(const std::string& url) {
  CURL* easy = easy_.get();
  curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
  curl_easy_setopt(easy, CURLOPT_USERAGENT, kUserAgent);
  curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, kProtocols);
  curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, kProtocols);
  curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(easy, CURLOPT_MAXREDIRS, kMostRedirects);
  curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(easy, CURLOPT_COOKIEFILE, "");  // cookies on, nothing read from or written to disk
  curl_easy_setopt(easy, CURLOPT_HSTS_CTRL, static_cast<long>(CURLHSTS_ENABLE));
  curl_easy_setopt(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, errorBuffer_);
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
  if (mode_ == BodyMode::Text) {
    curl_easy_setopt(easy_.get(), CURLOPT_ACCEPT_ENCODING, "");  // every compression that libcurl can undo
    return;
  }
  // As a field of its own: with the option libcurl would undo what a server compresses unasked.
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

int CurlRequest::onResolve(void*, void*, void* self) {
  auto& states = requestOf(self)->states_;
  states.beginHop();
  states.raise(kResolvingHost);
  return 0;
}

curl_socket_t CurlRequest::onOpen(void* self, curlsocktype, curl_sockaddr* address) {
  auto& states = requestOf(self)->states_;
  states.beginHop();
  if (states.isLast(kResolvingHost)) states.raise(kHostResolved);
  states.raise(kConnecting);
  return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

int CurlRequest::onReady(void* self, char*, char* localAddress, int, int localPort) {
  auto* request = requestOf(self);
  auto& states = request->states_;
  states.beginHop();
  request->loop_->connected(std::string(localAddress) + ' ' + std::to_string(localPort), request);
  if (states.isLast(kConnecting)) states.raise(kConnected);
  states.raise(kRequesting);
  return CURL_PREREQFUNC_OK;
}

int CurlRequest::onDebug(CURL*, curl_infotype type, char*, std::size_t, void* self) {
  auto& states = requestOf(self)->states_;
  if (type == CURLINFO_HEADER_OUT && states.isLast(kRequesting)) states.raise(kRequestSent);
  return 0;
}

std::size_t CurlRequest::onHeader(char* data, std::size_t size, std::size_t count, void* self) {
  auto* request = requestOf(self);
  const std::string_view line(data, size * count);
  request->headBytes_ += line.size();
  if (request->headBytes_ > kHeadLimit) return 0;
  const auto event = request->head_.take(line);
  if (event == ResponseHead::Event::Begun) request->states_.raise(kReceivingResponse);
  if (event == ResponseHead::Event::Ended) request->endOfHead();
  return line.size();
}

std::size_t CurlRequest::onBody(char* data, std::size_t size, std::size_t count, void* self) {
  return requestOf(self)->takeBody({data, size * count});
}

// ---- the response

void CurlRequest::endOfHead() {
  errorBodyBytes_ = 0;
  authorization_.heed(head_);
  // A 401 may be followed by another attempt, and an error's code is told when its body is out of the way.
  if (mode_ != BodyMode::HeadersOnly || !head_.isFinal() || head_.status() >= 400) return;
  held_ = true;
  states_.raise(kResponseReceived);
  states_.raise(kResponseCompleted);
}

std::string CurlRequest::responseAddress() const {
  const char* url = nullptr;
  if (head_.status() == 0) return {};
  curl_easy_getinfo(easy_.get(), CURLINFO_EFFECTIVE_URL, &url);
  const auto answered = toRequestAddress(url == nullptr ? "" : url);
  return answered ? answered->url : std::string();
}

std::size_t CurlRequest::takeBody(std::string_view bytes) {
  if (held_) {
    paused_ = true;
    return CURL_WRITEFUNC_PAUSE;
  }
  if (head_.status() >= 400) {
    errorBodyBytes_ += bytes.size();
    return errorBodyBytes_ > kErrorBodyRead ? CURL_WRITEFUNC_ERROR : bytes.size();
  }
  states_.raise(kReceivingResponse);
  if (!body_.append(bytes)) return CURL_WRITEFUNC_ERROR;
  if (loop_->budgetIsSpent()) loop_->readOnLater(easy_.get());
  return bytes.size();
}

// ---- a held response

void CurlRequest::hold() {
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
  if (!paused_) return;
  paused_ = false;
  const CURLcode result = curl_easy_pause(easy_.get(), CURLPAUSE_CONT);
  if (result == CURLE_OK) return;
  loop_->remove(easy_.get(), this);
  finished(result);
}

void CurlRequest::release() {
  released_ = true;
  if (!running_) return;
  running_ = false;
  loop_->remove(easy_.get(), this);
}

// ---- the outcome

void CurlRequest::finished(CURLcode result) {
  running_ = false;
  if (held_) {
    heldResult_ = result;
  } else {
    conclude(result);
  }
}

void CurlRequest::conclude(CURLcode result) {
  if (result == CURLE_OK) body_.finish(header("Content-Type"));
  if (head_.status() >= 400 && !head_.isOpen()) {
    states_.raise(kResponseReceived);
    fail(head_.status(), head_.reason());
  } else if (body_.hasFailed()) {
    fail(body_.failureCode(), body_.failureText());
  } else if (result != CURLE_OK) {
    fail(result, errorBuffer_[0] != '\0' ? errorBuffer_ : curl_easy_strerror(result));
  } else {
    states_.raise(kResponseReceived);
    states_.raiseDisconnected();
    states_.raise(kResponseCompleted);
  }
}

void CurlRequest::fail(long code, const std::string& info) {
  states_.raiseDisconnected();
  code_ = code;
  info_ = maskPasswords(info);
  states_.raise(kError);
}

}  // namespace mv
