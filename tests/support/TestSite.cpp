#include "support/TestSite.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <list>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <thread>

namespace mvtest {

namespace {

using Clock = std::chrono::steady_clock;
using SharedResource = std::shared_ptr<const Resource>;

constexpr std::size_t kSendAtOnce = 64 * 1024;

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

std::string usualPhrase(int status) {
  static const std::map<int, std::string> phrases = {
      {200, "OK"}, {401, "Unauthorized"}, {404, "Not Found"}, {500, "Internal Server Error"}};
  const auto found = phrases.find(status);
  return found == phrases.end() ? "Status" : found->second;
}

bool hasHeader(const Resource& resource, const std::string& lowerName) {
  return std::any_of(resource.headers.begin(), resource.headers.end(),
                     [&](const auto& header) { return lower(header.first) == lowerName; });
}

// Status line and headers of the answer.
std::string headOf(const Resource& resource, bool keepAlive) {
  const bool bodyless = resource.status == 204 || resource.status == 304;
  const bool announces = !bodyless && resource.fault != Fault::NoContentLength;
  const auto length = resource.body.size() + (resource.fault == Fault::WrongLength ? 100 : 0);
  std::string head = "HTTP/1.1 " + std::to_string(resource.status) + " " +
                     (resource.reason.empty() ? usualPhrase(resource.status) : resource.reason) + "\r\n";
  if (!resource.type.empty() && !hasHeader(resource, "content-type")) head += "Content-Type: " + resource.type + "\r\n";
  if (announces && !hasHeader(resource, "content-length")) head += "Content-Length: " + std::to_string(length) + "\r\n";
  for (const auto& [name, value] : resource.headers) head.append(name).append(": ").append(value).append("\r\n");
  head += keepAlive ? "Connection: keep-alive\r\n" : "Connection: close\r\n";
  return head + "\r\n";
}

// How many bytes of the body go out.
std::size_t bodyLengthSent(const Resource& resource) {
  if (resource.status == 204 || resource.status == 304) return 0;
  switch (resource.fault) {
    case Fault::Reset:
    case Fault::ShortBody:
      return resource.body.size() / 2;
    case Fault::Refuse:
    case Fault::HeaderOnly:
    case Fault::Garbage:
      return 0;
    default:
      return resource.body.size();
  }
}

std::optional<Request> parseRequest(std::string& in) {
  const auto end = in.find("\r\n\r\n");
  if (end == std::string::npos) return std::nullopt;
  Request request;
  std::string_view text(in.data(), end);
  bool first = true;
  while (!text.empty()) {
    const auto line = text.substr(0, text.find("\r\n"));
    text.remove_prefix(std::min(text.size(), line.size() + 2));
    if (first) {
      const auto blank = line.find(' ');
      const auto second = line.rfind(' ');
      request.method = line.substr(0, blank);
      if (second != std::string_view::npos && second > blank) request.path = line.substr(blank + 1, second - blank - 1);
      first = false;
      continue;
    }
    const auto colon = line.find(':');
    if (colon == std::string_view::npos) continue;
    auto value = line.substr(colon + 1);
    while (value.starts_with(' ')) value.remove_prefix(1);
    request.headers[lower(std::string(line.substr(0, colon)))] = value;
  }
  in.erase(0, end + 4);
  return request;
}

struct Connection {
  enum class Phase { Idle, Waiting, Sending, Silent };
  int socket = -1;
  Phase phase = Phase::Idle;
  std::string in;
  Clock::time_point due;
  SharedResource resource;
  bool keepAlive = true;
  std::string head;
  std::size_t headSent = 0;
  std::size_t bodySent = 0;
  std::size_t bodyLength = 0;
};

}  // namespace

struct TestSite::Private {
  Private();
  ~Private();

  void run();
  void accept();
  bool serve(Connection& connection, short events);
  bool receive(Connection& connection);
  bool takeRequest(Connection& connection);
  void beginAnswer(Connection& connection);
  bool send(Connection& connection);
  bool finishAnswer(Connection& connection);
  SharedResource find(const Request& request);

  mutable std::mutex mutex;
  std::map<std::string, SharedResource> resources;
  Rule rule;
  std::vector<Request> requests;
  std::atomic<std::uint64_t> bytesSent{0};
  std::atomic<bool> stop{false};
  int listener = -1;
  int wakeUp = -1;
  int port = 0;
  std::list<Connection> connections;
  std::thread thread;
};

TestSite::Private::Private() {
  // A proxy of the environment must not see the traffic of a test.
  ::setenv("no_proxy", "127.0.0.1,localhost", 1);
  wakeUp = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  listener = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* plain = reinterpret_cast<sockaddr*>(&address);
  if (wakeUp < 0 || listener < 0 || ::bind(listener, plain, size) != 0 || ::listen(listener, 64) != 0 ||
      ::getsockname(listener, plain, &size) != 0) {
    throw std::runtime_error("The test site cannot listen");
  }
  port = ntohs(address.sin_port);
  thread = std::thread([this] { run(); });
}

TestSite::Private::~Private() {
  stop = true;
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = ::write(wakeUp, &one, sizeof one);
  thread.join();
  for (const auto& connection : connections) ::close(connection.socket);
  ::close(listener);
  ::close(wakeUp);
}

void TestSite::Private::run() {
  while (!stop) {
    std::vector<pollfd> polled{{wakeUp, POLLIN, 0}, {listener, POLLIN, 0}};
    int timeout = -1;
    for (const auto& connection : connections) {
      short events = POLLIN;
      if (connection.phase == Connection::Phase::Sending) events |= POLLOUT;
      polled.push_back({connection.socket, events, 0});
      if (connection.phase != Connection::Phase::Waiting) continue;
      const auto left = std::chrono::ceil<std::chrono::milliseconds>(connection.due - Clock::now()).count();
      const int wait = static_cast<int>(std::max<long>(left, 0));
      timeout = timeout < 0 ? wait : std::min(timeout, wait);
    }
    if (::poll(polled.data(), polled.size(), timeout) < 0) continue;
    std::size_t at = 2;
    for (auto connection = connections.begin(); connection != connections.end(); ++at) {
      if (serve(*connection, polled[at].revents)) {
        ++connection;
      } else {
        ::close(connection->socket);
        connection = connections.erase(connection);
      }
    }
    if ((polled[1].revents & POLLIN) != 0) accept();
  }
}

void TestSite::Private::accept() {
  const int socket = ::accept4(listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
  if (socket < 0) return;
  const int on = 1;
  ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  connections.emplace_back().socket = socket;
}

// One turn of a connection; false when it is to be closed.
bool TestSite::Private::serve(Connection& connection, short events) {
  if ((events & (POLLIN | POLLHUP | POLLERR)) != 0 && !receive(connection)) return false;
  if (connection.phase == Connection::Phase::Idle && !takeRequest(connection)) return false;
  if (connection.phase == Connection::Phase::Waiting && Clock::now() >= connection.due) {
    if (connection.resource->fault == Fault::Refuse) return false;
    beginAnswer(connection);
  }
  return connection.phase != Connection::Phase::Sending || send(connection);
}

bool TestSite::Private::receive(Connection& connection) {
  char buffer[16 * 1024];
  const auto count = ::recv(connection.socket, buffer, sizeof buffer, 0);
  if (count < 0) return errno == EAGAIN || errno == EINTR;
  connection.in.append(buffer, static_cast<std::size_t>(count));
  return count > 0;
}

bool TestSite::Private::takeRequest(Connection& connection) {
  auto request = parseRequest(connection.in);
  if (!request) return connection.in.size() < 1024 * 1024;
  connection.keepAlive = lower(request->headers["connection"]) != "close";
  connection.resource = find(*request);
  connection.due = Clock::now() + std::chrono::milliseconds(connection.resource->delayMs);
  connection.phase = Connection::Phase::Waiting;
  const std::lock_guard lock(mutex);
  requests.push_back(std::move(*request));
  return true;
}

SharedResource TestSite::Private::find(const Request& request) {
  static const auto missing = [] {
    auto resource = std::make_shared<Resource>();
    resource->status = 404;
    resource->body = "<html><body>There is no such page.</body></html>";
    return resource;
  }();
  const std::lock_guard lock(mutex);
  if (auto answer = rule ? rule(request) : std::nullopt) return std::make_shared<const Resource>(std::move(*answer));
  const auto found = resources.find(request.path);
  return found == resources.end() ? missing : found->second;
}

void TestSite::Private::beginAnswer(Connection& connection) {
  const auto& resource = *connection.resource;
  const bool closes = resource.fault != Fault::None && resource.fault != Fault::HeaderOnly;
  connection.keepAlive = connection.keepAlive && !closes;
  connection.head = resource.fault == Fault::Garbage ? std::string("\x01\x02 this is no answer\r\n\r\n")
                                                     : headOf(resource, connection.keepAlive);
  connection.headSent = 0;
  connection.bodySent = 0;
  connection.bodyLength = bodyLengthSent(resource);
  connection.phase = Connection::Phase::Sending;
}

bool TestSite::Private::send(Connection& connection) {
  const auto& body = connection.resource->body;
  for (;;) {
    const bool inHead = connection.headSent < connection.head.size();
    const auto left =
        inHead ? connection.head.size() - connection.headSent : connection.bodyLength - connection.bodySent;
    if (left == 0) return finishAnswer(connection);
    const char* from = inHead ? connection.head.data() + connection.headSent : body.data() + connection.bodySent;
    const auto count = ::send(connection.socket, from, std::min(left, kSendAtOnce), MSG_NOSIGNAL);
    if (count < 0) return errno == EAGAIN || errno == EINTR;
    (inHead ? connection.headSent : connection.bodySent) += static_cast<std::size_t>(count);
    if (!inHead) bytesSent += static_cast<std::uint64_t>(count);
  }
}

bool TestSite::Private::finishAnswer(Connection& connection) {
  const auto fault = connection.resource->fault;
  if (fault == Fault::HeaderOnly) {
    connection.phase = Connection::Phase::Silent;
    return true;
  }
  if (fault == Fault::Reset) {
    const linger atOnce{1, 0};
    ::setsockopt(connection.socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    return false;
  }
  if (!connection.keepAlive) return false;
  connection.phase = Connection::Phase::Idle;
  return takeRequest(connection);
}

TestSite::TestSite() : d(std::make_unique<Private>()) {}
TestSite::~TestSite() = default;

void TestSite::add(const std::string& path, Resource resource) {
  const std::lock_guard lock(d->mutex);
  d->resources[path] = std::make_shared<const Resource>(std::move(resource));
}

void TestSite::setRule(Rule rule) {
  const std::lock_guard lock(d->mutex);
  d->rule = std::move(rule);
}

void TestSite::page(const std::string& path, const std::string& html) { file(path, "text/html", html); }

void TestSite::file(const std::string& path, const std::string& type, const std::string& body) {
  Resource resource;
  resource.type = type;
  resource.body = body;
  add(path, std::move(resource));
}

int TestSite::port() const { return d->port; }

std::string TestSite::host() const { return "127.0.0.1:" + std::to_string(d->port); }

std::vector<Request> TestSite::requests() const {
  const std::lock_guard lock(d->mutex);
  return d->requests;
}

int TestSite::requestCount(const std::string& path) const {
  const std::lock_guard lock(d->mutex);
  return static_cast<int>(std::count_if(d->requests.begin(), d->requests.end(),
                                        [&](const Request& request) { return request.path == path; }));
}

std::uint64_t TestSite::bytesSent() const { return d->bytesSent; }

}  // namespace mvtest
