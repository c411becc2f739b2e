// A web site on 127.0.0.1 for tests: a table of pages and files, served over real sockets by a thread of its own, with
// the faults that real servers have.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace mvtest {

enum class Fault {
  None,
  Refuse,           // closes the connection without an answer
  Reset,            // resets it after half of the body
  ShortBody,        // announces the whole length, sends half, closes
  NoContentLength,  // sends the body until the connection closes
  WrongLength,      // announces more than it has, then closes
  HeaderOnly,       // sends the headers, then nothing until the client goes
  Garbage,          // no HTTP at all
};

struct Resource {
  std::string type = "text/html";
  std::string body = {};
  int status = 200;
  std::string reason = {};                          // default: the status's usual phrase
  std::map<std::string, std::string> headers = {};  // beside Content-Type, Content-Length, Connection
  int delayMs = 0;                                  // before the answer
  Fault fault = Fault::None;
};

struct Request {
  std::string method;
  std::string path;                            // with query
  std::map<std::string, std::string> headers;  // names in lower case
};

class TestSite {
 public:
  // Listens on a free port of 127.0.0.1.
  TestSite();
  ~TestSite();
  TestSite(const TestSite&) = delete;
  TestSite& operator=(const TestSite&) = delete;

  // Before or during the run; `path` begins with "/". Unknown paths answer 404.
  void add(const std::string& path, Resource resource);
  void page(const std::string& path, const std::string& html);
  void file(const std::string& path, const std::string& type, const std::string& body);

  // For answers that depend on the request: asked before the table, which answers when it gives nothing. Set before the
  // first request; runs on the site's thread.
  using Rule = std::function<std::optional<Resource>(const Request&)>;
  void setRule(Rule rule);

  int port() const;
  // "127.0.0.1:port", as a site's location and domain.
  std::string host() const;
  std::string url(const std::string& path) const { return "http://" + host() + path; }

  // What has been asked for so far, in order.
  std::vector<Request> requests() const;
  int requestCount(const std::string& path) const;
  // Body bytes handed to the sockets so far, for "no byte twice".
  std::uint64_t bytesSent() const;

 private:
  struct Private;
  std::unique_ptr<Private> d;
};

}  // namespace mvtest
