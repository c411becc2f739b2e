// An HTTP server on the loopback interface: sockets and requests, on one thread, for as many connections as come. What
// it answers is given to it.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace mvtest {

// What happens to the connection behind an answer.
enum class AfterReply {
  KeepAlive,
  Close,
  Reset,  // closes it so that the client sees an error
  Hold,   // sends nothing more until the client goes
};

// `text`, then `body`, then a piece of a file.
struct Reply {
  std::string text = {};                    // status line, headers, and a body that was made up
  std::string_view body = {};               // one that is kept elsewhere
  std::shared_ptr<const void> keeper = {};  // keeps `body` until it is sent
  int file = -1;                            // open for reading; behind its end it begins anew
  std::int64_t fileSize = 0;                // bytes
  std::int64_t fileAt = 0;
  std::int64_t fileLeft = 0;  // so many are to be sent
  std::chrono::milliseconds delay{0};
  AfterReply after = AfterReply::KeepAlive;
};

class LoopbackServer {
 public:
  // Fills in the empty reply to a request, which is its first line and its headers. `after` says what the client wants.
  using Answer = std::function<void(std::string_view request, Reply& reply)>;

  // Listens on 127.0.0.1 to 127.0.0.<hosts>; `port` 0 takes a free one. Raises std::system_error when it is taken.
  explicit LoopbackServer(Answer answer, int hosts = 1, std::uint16_t port = 0);
  // Closes every connection. It must have stopped.
  ~LoopbackServer();
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;

  std::uint16_t port() const { return port_; }
  // Serves until stop(). Answers are asked for on this thread.
  void run();
  // From any thread.
  void stop();
  // Bytes of `body` handed to the sockets so far; from any thread.
  std::uint64_t bodyBytesSent() const { return bodyBytesSent_; }

 private:
  using Clock = std::chrono::steady_clock;
  struct Connection;

  void listenOn(int host);
  void watchNew(int socket) const;
  void accept(int listener);
  void happened(int socket, unsigned events);
  int millisecondsToNextDelay() const;
  void endDelays();
  void goOn(int socket, Connection& connection);
  void close(int socket, const Connection& connection);
  bool proceed(int socket, Connection& connection);
  bool beginReply(int socket, Connection& connection);
  bool write(int socket, Connection& connection);
  std::int64_t writePiece(int socket, Connection& connection);
  void watch(int socket, Connection& connection) const;

  Answer answer_;
  std::uint16_t port_;
  int epoll_;
  int stopper_;
  std::set<int> listeners_;
  std::unordered_map<int, std::unique_ptr<Connection>> connections_;
  std::set<std::pair<Clock::time_point, int>> delays_;
  std::atomic<std::uint64_t> bodyBytesSent_ = 0;
};

}  // namespace mvtest
