#include "testkit/TestSite.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdlib>
#include <mutex>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <thread>

#include "testkit/LoopbackServer.h"

namespace mvtest {

namespace {

using SharedResource = std::shared_ptr<const Resource>;

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

AfterReply behind(Fault fault) {
  if (fault == Fault::HeaderOnly) return AfterReply::Hold;
  return fault == Fault::Reset ? AfterReply::Reset : AfterReply::Close;
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

}  // namespace

struct TestSite::Private {
  Private();
  ~Private();

  SharedResource find(const Request& request) const;
  void answer(std::string_view head, Reply& reply);

  mutable std::mutex mutex;
  std::map<std::string, SharedResource> resources;
  Rule rule;
  std::vector<Request> requests;
  LoopbackServer server{[this](std::string_view head, Reply& reply) { answer(head, reply); }};
  std::thread thread;
};

TestSite::Private::Private() {
  // A proxy of the environment must not see the traffic of a test.
  ::setenv("no_proxy", "127.0.0.1,localhost", 1);
  thread = std::thread([this] { server.run(); });
}

TestSite::Private::~Private() {
  server.stop();
  thread.join();
}

SharedResource TestSite::Private::find(const Request& request) const {
  static const auto missing = std::make_shared<const Resource>(
      Resource{.body = "<html><body>There is no such page.</body></html>", .status = 404});
  if (auto answer = rule ? rule(request) : std::nullopt) return std::make_shared<const Resource>(std::move(*answer));
  const auto found = resources.find(request.path);
  return found == resources.end() ? missing : found->second;
}

void TestSite::Private::answer(std::string_view head, Reply& reply) {
  Request request = parsed(std::string(head));
  const std::lock_guard lock(mutex);
  const SharedResource resource = find(request);
  requests.push_back(std::move(request));
  const Fault fault = resource->fault;
  reply.delay = std::chrono::milliseconds(resource->delayMs);
  if (fault != Fault::None) reply.after = behind(fault);
  if (fault == Fault::Refuse) return;
  const bool keepAlive = reply.after == AfterReply::KeepAlive || reply.after == AfterReply::Hold;
  reply.text = fault == Fault::Garbage ? "\x01\x02 this is no answer\r\n\r\n" : headOf(*resource, keepAlive);
  reply.body = std::string_view(resource->body).substr(0, bodyLengthSent(*resource));
  reply.keeper = resource;
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

int TestSite::port() const { return d->server.port(); }

std::string TestSite::host() const { return "127.0.0.1:" + std::to_string(port()); }

std::vector<Request> TestSite::requests() const {
  const std::lock_guard lock(d->mutex);
  return d->requests;
}

int TestSite::requestCount(const std::string& path) const {
  const std::lock_guard lock(d->mutex);
  return static_cast<int>(std::count_if(d->requests.begin(), d->requests.end(),
                                        [&](const Request& request) { return request.path == path; }));
}

std::uint64_t TestSite::bytesSent() const { return d->server.bodyBytesSent(); }

}  // namespace mvtest
