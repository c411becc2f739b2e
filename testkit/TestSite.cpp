#include "testkit/TestSite.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <thread>

namespace mvtest {

namespace {

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

bool isBodyless(const Resource& resource) { return resource.status == 204 || resource.status == 304; }

// Status line and headers of the answer.
std::string headOf(const Resource& resource, bool keepAlive) {
  const bool announces = !isBodyless(resource) && resource.fault != Fault::NoContentLength;
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
  const Fault fault = resource.fault;
  if (isBodyless(resource) || fault == Fault::HeaderOnly || fault == Fault::Garbage) return 0;
  return resource.body.size() / (fault == Fault::Reset || fault == Fault::ShortBody ? 2 : 1);
}

Request parsed(const std::string& head) {
  Request request;
  std::istringstream lines(head);
  lines >> request.method >> request.path;
  for (std::string line; std::getline(lines, line);) {
    const auto colon = line.find(": ");
    if (colon == std::string::npos) continue;
    if (line.ends_with('\r')) line.pop_back();
    request.headers[lower(line.substr(0, colon))] = line.substr(colon + 2);
  }
  return request;
}

// The next request of a connection; nothing when the client has gone.
std::optional<Request> receive(int socket, std::string& in) {
  const std::string behind = "\r\n\r\n";
  auto end = in.find(behind);
  for (char buffer[16 * 1024]; end == std::string::npos; end = in.find(behind)) {
    const auto count = ::recv(socket, buffer, sizeof buffer, 0);
    if (count <= 0) return std::nullopt;
    in.append(buffer, static_cast<std::size_t>(count));
  }
  Request request = parsed(in.substr(0, end));
  in.erase(0, end + behind.size());
  return request;
}

}  // namespace

struct TestSite::Private {
  Private();
  ~Private();

  void accept();
  void serve(int socket);
  bool answer(int socket, Request request);
  bool send(int socket, std::string_view bytes, bool counted);
  SharedResource find(const Request& request) const;

  mutable std::mutex mutex;
  std::condition_variable stopped;
  bool stop = false;
  std::map<std::string, SharedResource> resources;
  Rule rule;
  std::vector<Request> requests;
  std::atomic<std::uint64_t> bytesSent{0};
  int listener = -1;
  int port = 0;
  std::set<int> sockets;
  std::vector<std::thread> threads;  // the first listens, the others serve a connection each
};

TestSite::Private::Private() {
  // A proxy of the environment must not see the traffic of a test.
  ::setenv("no_proxy", "127.0.0.1,localhost", 1);
  listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* plain = reinterpret_cast<sockaddr*>(&address);
  if (listener < 0 || ::bind(listener, plain, size) != 0 || ::listen(listener, 64) != 0 ||
      ::getsockname(listener, plain, &size) != 0)
    throw std::runtime_error("The test site cannot listen");
  port = ntohs(address.sin_port);
  const std::lock_guard lock(mutex);
  threads.emplace_back([this] { accept(); });
}

TestSite::Private::~Private() {
  {
    const std::lock_guard lock(mutex);
    stop = true;
    ::shutdown(listener, SHUT_RDWR);
    for (const int socket : sockets) ::shutdown(socket, SHUT_RDWR);
  }
  stopped.notify_all();
  threads.front().join();  // no more are added
  for (std::size_t i = 1; i < threads.size(); ++i) threads[i].join();
  ::close(listener);
}

void TestSite::Private::accept() {
  for (;;) {
    const int socket = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    const std::lock_guard lock(mutex);
    if (stop && socket >= 0) ::close(socket);
    if (stop) return;
    if (socket < 0) continue;
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    sockets.insert(socket);
    threads.emplace_back([this, socket] { serve(socket); });
  }
}

void TestSite::Private::serve(int socket) {
  std::string in;
  for (auto request = receive(socket, in); request && answer(socket, std::move(*request));)
    request = receive(socket, in);
  const std::lock_guard lock(mutex);
  sockets.erase(socket);
  ::close(socket);
}

SharedResource TestSite::Private::find(const Request& request) const {
  static const auto missing = std::make_shared<const Resource>(
      Resource{.body = "<html><body>There is no such page.</body></html>", .status = 404});
  if (auto answer = rule ? rule(request) : std::nullopt) return std::make_shared<const Resource>(std::move(*answer));
  const auto found = resources.find(request.path);
  return found == resources.end() ? missing : found->second;
}

// False when the connection is to be closed.
bool TestSite::Private::answer(int socket, Request request) {
  bool keepAlive = lower(request.headers["connection"]) != "close";
  std::unique_lock lock(mutex);
  const SharedResource resource = find(request);
  requests.push_back(std::move(request));
  if (stopped.wait_for(lock, std::chrono::milliseconds(resource->delayMs), [this] { return stop; })) return false;
  lock.unlock();
  const Fault fault = resource->fault;
  if (fault == Fault::Refuse) return false;
  keepAlive = keepAlive && (fault == Fault::None || fault == Fault::HeaderOnly);
  const std::string head =
      fault == Fault::Garbage ? "\x01\x02 this is no answer\r\n\r\n" : headOf(*resource, keepAlive);
  const auto body = std::string_view(resource->body).substr(0, bodyLengthSent(*resource));
  if (!send(socket, head, false) || !send(socket, body, true)) return false;
  if (fault == Fault::Reset) {
    const linger atOnce{1, 0};
    ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
  }
  std::string ignored;
  if (fault == Fault::HeaderOnly) receive(socket, ignored);
  return keepAlive && fault != Fault::HeaderOnly;
}

bool TestSite::Private::send(int socket, std::string_view bytes, bool counted) {
  while (!bytes.empty()) {
    const auto count = ::send(socket, bytes.data(), std::min(bytes.size(), kSendAtOnce), MSG_NOSIGNAL);
    if (count < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
    if (counted) bytesSent += static_cast<std::uint64_t>(count);
  }
  return true;
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
  add(path, {.type = type, .body = body});
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
