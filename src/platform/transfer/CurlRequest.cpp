#include "CurlRequest.h"

#include <sys/socket.h>

#include <QByteArray>
#include <algorithm>
#include <cctype>
#include <charconv>
#include <new>
#include <optional>

#include "CredentialMemory.h"
#include "transfer/TextDecoding.h"

namespace mv {

namespace {

constexpr const char* kUserAgent = "Morvane2000/1.0";
constexpr const char* kProtocols = "http,https";
constexpr long kMostRedirects = 20;
constexpr long kFileBuffer = 512L * 1024;
// The page that comes with an error is not wanted, but reading a short one keeps the connection.
constexpr std::size_t kErrorBodyRead = std::size_t{64} * 1024;
constexpr std::size_t kShortText = std::size_t{1} << 20;
constexpr std::size_t kHeaderLimit = std::size_t{1024} * 1024;

std::string lowered(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return result;
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlank = " \t\r\n";
  const auto start = text.find_first_not_of(kBlank);
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(kBlank) - start + 1);
}

struct Phrase {
  long status;
  const char* text;
};

// For servers that send none: HTTP/2 has no reason phrases.
constexpr Phrase kPhrases[] = {
    {400, "Bad Request"},
    {401, "Unauthorized"},
    {402, "Payment Required"},
    {403, "Forbidden"},
    {404, "Not Found"},
    {405, "Method Not Allowed"},
    {406, "Not Acceptable"},
    {407, "Proxy Authentication Required"},
    {408, "Request Timeout"},
    {410, "Gone"},
    {414, "URI Too Long"},
    {421, "Misdirected Request"},
    {429, "Too Many Requests"},
    {451, "Unavailable For Legal Reasons"},
    {500, "Internal Server Error"},
    {501, "Not Implemented"},
    {502, "Bad Gateway"},
    {503, "Service Unavailable"},
    {504, "Gateway Timeout"},
};

std::string standardPhrase(long status) {
  for (const Phrase& phrase : kPhrases)
    if (phrase.status == status) return phrase.text;
  return "HTTP status " + std::to_string(status);
}

CurlRequest* requestOf(void* self) { return static_cast<CurlRequest*>(self); }

}  // namespace

CurlRequest::CurlRequest(const std::string& address, BodyMode mode, const InternetTransfer::Limits& limits, Raise raise)
    : address_(address), mode_(mode), limits_(limits), raise_(std::move(raise)), file_(limits.spoolThreshold, {}) {}

CurlRequest::~CurlRequest() {
  if (running_) loop_->remove(easy_, this);
  curl_easy_cleanup(easy_);
}

void CurlRequest::start() {
  const auto target = toRequestAddress(address_);
  if (!target) {
    fail(CURLE_URL_MALFORMAT, "The address has no usable host name");
    return;
  }
  loop_ = CurlLoop::current();
  easy_ = curl_easy_init();
  if (easy_ == nullptr) throw std::bad_alloc();
  setOptions(target->url);
  setBodyOptions();
  const auto credentials = target->credentials ? target->credentials : hostCredentials(target->host);
  if (credentials) {
    setCredentials(*credentials);
    credentialsHost_ = target->host;
  }
  setObservers();
  loop_->prepare(easy_);
  loop_->add(easy_, this);
  running_ = true;
}

void CurlRequest::setOptions(const std::string& url) {
  curl_easy_setopt(easy_, CURLOPT_URL, url.c_str());
  curl_easy_setopt(easy_, CURLOPT_USERAGENT, kUserAgent);
  curl_easy_setopt(easy_, CURLOPT_PROTOCOLS_STR, kProtocols);
  curl_easy_setopt(easy_, CURLOPT_REDIR_PROTOCOLS_STR, kProtocols);
  curl_easy_setopt(easy_, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(easy_, CURLOPT_MAXREDIRS, kMostRedirects);
  curl_easy_setopt(easy_, CURLOPT_NOSIGNAL, 1L);
  // A request that ends while a name server is still silent must not wait for its answer.
  curl_easy_setopt(easy_, CURLOPT_QUICK_EXIT, 1L);
  curl_easy_setopt(easy_, CURLOPT_COOKIEFILE, "");  // cookies on, nothing read from or written to disk
  curl_easy_setopt(easy_, CURLOPT_HSTS_CTRL, static_cast<long>(CURLHSTS_ENABLE));
  curl_easy_setopt(easy_, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  curl_easy_setopt(easy_, CURLOPT_CONNECTTIMEOUT_MS, limits_.connectTimeoutMs);
  curl_easy_setopt(easy_, CURLOPT_LOW_SPEED_LIMIT, 1L);
  curl_easy_setopt(easy_, CURLOPT_LOW_SPEED_TIME, limits_.stallTimeoutS);
  curl_easy_setopt(easy_, CURLOPT_ERRORBUFFER, errorBuffer_);
}

void CurlRequest::setBodyOptions() {
  if (mode_ == BodyMode::Text) {
    curl_easy_setopt(easy_, CURLOPT_ACCEPT_ENCODING, "");  // every compression that libcurl can undo
    return;
  }
  // As a header of its own: with the option libcurl would undo what a server compresses unasked.
  plainHeaders_.reset(curl_slist_append(nullptr, "Accept-Encoding: identity"));
  curl_easy_setopt(easy_, CURLOPT_HTTPHEADER, plainHeaders_.get());
  curl_easy_setopt(easy_, CURLOPT_BUFFERSIZE, kFileBuffer);
}

// Basic goes along with the first request, as its server mostly wants it, at no extra round trip. libcurl is left to
// answer a digest challenge; takeHeaderField() then takes the basic header back. Neither follows to another host.
void CurlRequest::setCredentials(const Credentials& credentials) {
  curl_easy_setopt(easy_, CURLOPT_USERNAME, credentials.user.c_str());
  curl_easy_setopt(easy_, CURLOPT_PASSWORD, credentials.password.c_str());
  curl_easy_setopt(easy_, CURLOPT_HTTPAUTH, CURLAUTH_DIGEST);
  curl_easy_setopt(easy_, CURLOPT_UNRESTRICTED_AUTH, 0L);
  const auto pair = credentials.user + ":" + credentials.password;
  const auto basic = "Authorization: Basic " + QByteArray::fromStdString(pair).toBase64().toStdString();
  basicHeaders_.reset(curl_slist_append(nullptr, basic.c_str()));
  for (const auto* plain = plainHeaders_.get(); plain != nullptr; plain = plain->next) {
    curl_slist_append(basicHeaders_.get(), plain->data);
  }
  curl_easy_setopt(easy_, CURLOPT_HTTPHEADER, basicHeaders_.get());
}

// libcurl drops credentials where scheme or port change, and so also where a site sends its visitors from http to
// https.
void CurlRequest::redirectCredentials(std::string_view location) {
  const CredentialsOnRedirect what = credentialsOnRedirect(location, credentialsHost_);
  if (what == CredentialsOnRedirect::AsBefore) return;
  curl_easy_setopt(easy_, CURLOPT_UNRESTRICTED_AUTH, what == CredentialsOnRedirect::Keep ? 1L : 0L);
}

void CurlRequest::setObservers() {
  curl_easy_setopt(easy_, CURLOPT_RESOLVER_START_FUNCTION, &CurlRequest::onResolve);
  curl_easy_setopt(easy_, CURLOPT_RESOLVER_START_DATA, this);
  curl_easy_setopt(easy_, CURLOPT_OPENSOCKETFUNCTION, &CurlRequest::onOpen);
  curl_easy_setopt(easy_, CURLOPT_OPENSOCKETDATA, this);
  curl_easy_setopt(easy_, CURLOPT_PREREQFUNCTION, &CurlRequest::onReady);
  curl_easy_setopt(easy_, CURLOPT_PREREQDATA, this);
  curl_easy_setopt(easy_, CURLOPT_VERBOSE, 1L);  // only so that the sending of the request is told
  curl_easy_setopt(easy_, CURLOPT_DEBUGFUNCTION, &CurlRequest::onDebug);
  curl_easy_setopt(easy_, CURLOPT_DEBUGDATA, this);
  curl_easy_setopt(easy_, CURLOPT_HEADERFUNCTION, &CurlRequest::onHeader);
  curl_easy_setopt(easy_, CURLOPT_HEADERDATA, this);
  curl_easy_setopt(easy_, CURLOPT_WRITEFUNCTION, &CurlRequest::onBody);
  curl_easy_setopt(easy_, CURLOPT_WRITEDATA, this);
}

// ---- what libcurl tells

int CurlRequest::onResolve(void*, void*, void* self) {
  requestOf(self)->beginHop();
  requestOf(self)->raise(kResolvingHost);
  return 0;
}

curl_socket_t CurlRequest::onOpen(void* self, curlsocktype, curl_sockaddr* address) {
  auto* request = requestOf(self);
  request->beginHop();
  if (request->lastState_ == kResolvingHost) request->raise(kHostResolved);
  request->raise(kConnecting);
  return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

int CurlRequest::onReady(void* self, char*, char* localAddress, int, int localPort) {
  auto* request = requestOf(self);
  request->beginHop();
  request->loop_->connected(std::string(localAddress) + ' ' + std::to_string(localPort), request);
  if (request->lastState_ == kConnecting) request->raise(kConnected);
  request->raise(kRequesting);
  return CURL_PREREQFUNC_OK;
}

int CurlRequest::onDebug(CURL*, curl_infotype type, char*, std::size_t, void* self) {
  if (type == CURLINFO_HEADER_OUT && requestOf(self)->lastState_ == kRequesting) requestOf(self)->raise(kRequestSent);
  return 0;
}

std::size_t CurlRequest::onHeader(char* data, std::size_t size, std::size_t count, void* self) {
  auto* request = requestOf(self);
  const std::string_view line(data, size * count);
  request->headerBytes_ += line.size();
  if (request->headerBytes_ > kHeaderLimit) return 0;
  request->takeHeaderLine(line);
  return line.size();
}

std::size_t CurlRequest::onBody(char* data, std::size_t size, std::size_t count, void* self) {
  return requestOf(self)->takeBody({data, size * count});
}

// ---- headers

void CurlRequest::takeHeaderLine(std::string_view line) {
  if (line.starts_with("HTTP/")) {
    beginResponse(line);
  } else if (!inHeaders_) {
    return;  // a trailer
  } else if (trimmed(line).empty()) {
    endOfHeaders();
  } else if (line.front() == ' ' || line.front() == '\t') {
    if (!headers_.empty()) headers_.back().second.append(" ").append(trimmed(line));
  } else {
    takeHeaderField(line);
  }
}

void CurlRequest::beginResponse(std::string_view statusLine) {
  headers_.clear();
  inHeaders_ = true;
  errorBodyBytes_ = 0;
  raise(kReceivingResponse);
  const auto rest = trimmed(statusLine.substr(std::min(statusLine.find(' '), statusLine.size())));
  status_ = 0;
  std::from_chars(rest.data(), rest.data() + rest.size(), status_);
  const auto reason = trimmed(rest.substr(std::min(rest.find(' '), rest.size())));
  reason_ = reason.empty() ? standardPhrase(status_) : decodeText(std::string(reason), {});
}

void CurlRequest::takeHeaderField(std::string_view line) {
  const auto colon = line.find(':');
  if (colon == std::string_view::npos) return;
  const auto& [name, value] =
      headers_.emplace_back(lowered(trimmed(line.substr(0, colon))), trimmed(line.substr(colon + 1)));
  if (status_ >= 300 && status_ < 400 && name == "location" && !credentialsHost_.empty()) redirectCredentials(value);
  if (status_ == 401 && name == "www-authenticate" && lowered(value).find("digest") != std::string::npos) {
    curl_easy_setopt(easy_, CURLOPT_HTTPHEADER, plainHeaders_.get());
  }
}

bool CurlRequest::isFinalResponse() const {
  const bool redirects = status_ >= 300 && status_ < 400 && !header("location").empty();
  return status_ >= 200 && !redirects;
}

void CurlRequest::endOfHeaders() {
  inHeaders_ = false;
  // A 401 may be followed by another attempt, and an error's code is told when its body is out of the way.
  if (mode_ != BodyMode::HeadersOnly || !isFinalResponse() || status_ >= 400) return;
  held_ = true;
  raise(kResponseReceived);
  raise(kResponseCompleted);
}

std::string CurlRequest::header(std::string_view name) const {
  const auto wanted = lowered(name);
  const auto found =
      std::find_if(headers_.rbegin(), headers_.rend(), [&](const auto& header) { return header.first == wanted; });
  return found == headers_.rend() ? std::string() : found->second;
}

std::string CurlRequest::responseAddress() const {
  const char* url = nullptr;
  if (easy_ == nullptr || status_ == 0) return {};
  curl_easy_getinfo(easy_, CURLINFO_EFFECTIVE_URL, &url);
  const auto answered = toRequestAddress(url == nullptr ? "" : url);
  return answered ? answered->url : std::string();
}

// ---- body

std::size_t CurlRequest::takeBody(std::string_view bytes) {
  if (held_) {
    paused_ = true;
    return CURL_WRITEFUNC_PAUSE;
  }
  if (status_ >= 400) {
    errorBodyBytes_ += bytes.size();
    return errorBodyBytes_ > kErrorBodyRead ? CURL_WRITEFUNC_ERROR : bytes.size();
  }
  raise(kReceivingResponse);
  if (mode_ == BodyMode::Text) {
    if (text_.size() + bytes.size() > limits_.textLimit) {
      ownError_ = "The page is longer than " + std::to_string(limits_.textLimit) + " bytes";
      ownErrorCode_ = CURLE_FILESIZE_EXCEEDED;
      return CURL_WRITEFUNC_ERROR;
    }
    // Moving a long page to a larger place would take the user's time; room that is not used costs nothing.
    if (text_.size() > kShortText) text_.reserve(limits_.textLimit);
    text_.append(bytes);
    textChecked_ = wholeUtf8(text_, textChecked_);
  } else if (!written(file_.append(bytes))) {
    return CURL_WRITEFUNC_ERROR;
  }
  if (loop_->turnIsSpent()) loop_->readOnLater(easy_);
  return bytes.size();
}

bool CurlRequest::written(bool success) {
  if (!success) {
    ownError_ = file_.error();
    ownErrorCode_ = CURLE_WRITE_ERROR;
  }
  return success;
}

std::string CurlRequest::takeText() {
  text_.erase(0, std::exchange(textAt_, 0));
  return std::exchange(text_, {});
}

std::string CurlRequest::takeChunk(std::size_t size, ChunkType type) {
  if (mode_ != BodyMode::Text) return file_.read(size);
  const auto end = type == ChunkType::Text ? advanceCharacters(text_, textAt_, size)
                                           : textAt_ + std::min(size, text_.size() - textAt_);
  auto piece = text_.substr(textAt_, end - textAt_);
  textAt_ = end;
  return piece;
}

// ---- a held response

void CurlRequest::hold() {
  if (!held_ || !running_ || paused_) return;
  paused_ = true;
  curl_easy_pause(easy_, CURLPAUSE_RECV);
}

void CurlRequest::keepFileNear(const std::string& folder) { file_ = BodySpool(limits_.spoolThreshold, folder); }

void CurlRequest::resume() {
  mode_ = BodyMode::File;
  held_ = false;
  lastState_ = kRequestSent;
  if (!running_) {
    conclude(heldResult_);
    return;
  }
  if (!paused_) return;
  paused_ = false;
  const CURLcode result = curl_easy_pause(easy_, CURLPAUSE_CONT);
  if (result == CURLE_OK) return;
  loop_->remove(easy_, this);
  finished(result);
}

void CurlRequest::release() {
  released_ = true;
  if (!running_) return;
  running_ = false;
  loop_->remove(easy_, this);
}

// ---- states and outcome

// A redirect, an answered challenge or a second attempt on a fresh connection starts the states over.
void CurlRequest::beginHop() {
  if (lastState_ < kRequesting) return;
  if (lastState_ >= kReceivingResponse) raise(kResponseReceived);
  raiseDisconnected();
  lastState_ = 0;
}

void CurlRequest::raise(TransferState state) {
  if (state <= lastState_) return;
  lastState_ = state;
  raise_(state);
}

void CurlRequest::raiseDisconnected() {
  if (closed_ && lastState_ >= kRequesting) {
    raise(kDisconnecting);
    raise(kDisconnected);
  }
  closed_ = false;
}

void CurlRequest::finished(CURLcode result) {
  running_ = false;
  if (held_) {
    heldResult_ = result;
  } else {
    conclude(result);
  }
}

void CurlRequest::conclude(CURLcode result) {
  const bool answered = isFinalResponse() && !inHeaders_;
  if (result == CURLE_OK) written(file_.finish());
  if (answered && status_ >= 400) {
    raise(kResponseReceived);
    fail(status_, reason_);
  } else if (!ownError_.empty()) {
    fail(ownErrorCode_, ownError_);
  } else if (result != CURLE_OK) {
    fail(result, errorBuffer_[0] != '\0' ? errorBuffer_ : curl_easy_strerror(result));
  } else {
    if (mode_ == BodyMode::Text) text_ = decodeText(std::move(text_), header("content-type"), textChecked_);
    raise(kResponseReceived);
    raiseDisconnected();
    raise(kResponseCompleted);
  }
}

void CurlRequest::fail(long code, const std::string& info) {
  raiseDisconnected();
  code_ = code;
  info_ = withoutCredentials(info);
  raise(kError);
}

}  // namespace mv
