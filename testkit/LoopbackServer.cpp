#include "testkit/LoopbackServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/sendfile.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

namespace mvtest {

namespace {

constexpr std::size_t kReadAtOnce = 16384;
constexpr int kWaiting = 512;
constexpr std::string_view kHeadEnd = "\r\n\r\n";

// False when the client has gone.
bool read(int socket, std::string& in) {
  std::array<char, kReadAtOnce> bytes{};
  const ssize_t count = ::recv(socket, bytes.data(), bytes.size(), 0);
  if (count > 0) in.append(bytes.data(), static_cast<std::size_t>(count));
  return count > 0 || (count < 0 && errno == EAGAIN);
}

void resetWhenClosed(int socket) {
  const linger atOnce{1, 0};
  ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
}

}  // namespace

struct LoopbackServer::Connection {
  std::string in;
  bool answering = false;
  bool waitsToWrite = false;
  Clock::time_point due;  // of a delayed reply
  std::size_t textAt = 0;
  Reply reply;

  bool hasOutput() const { return textAt < reply.text.size() || !reply.body.empty() || reply.fileLeft > 0; }
};

LoopbackServer::LoopbackServer(Answer answer, int hosts, std::uint16_t port)
    : answer_(std::move(answer)),
      port_(port),
      epoll_(epoll_create1(EPOLL_CLOEXEC)),
      stopper_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  watchNew(stopper_);
  for (int host = 1; host <= hosts; ++host) listenOn(host);
}

LoopbackServer::~LoopbackServer() {
  for (const auto& [socket, connection] : connections_) ::close(socket);
  for (const int listener : listeners_) ::close(listener);
  ::close(stopper_);
  ::close(epoll_);
}

void LoopbackServer::listenOn(int host) {
  const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  listeners_.insert(listener);
  const int on = 1;
  ::setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port_);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK + static_cast<unsigned>(host) - 1);
  socklen_t size = sizeof address;
  auto* plain = reinterpret_cast<sockaddr*>(&address);
  if (::bind(listener, plain, size) != 0 || ::listen(listener, kWaiting) != 0 ||
      ::getsockname(listener, plain, &size) != 0)
    throw std::system_error(errno, std::generic_category(), "The address cannot be served");
  port_ = ntohs(address.sin_port);
  watchNew(listener);
}

void LoopbackServer::watchNew(int socket) const {
  epoll_event event{};
  event.events = EPOLLIN;
  event.data.fd = socket;
  ::epoll_ctl(epoll_, EPOLL_CTL_ADD, socket, &event);
}

void LoopbackServer::stop() { ::eventfd_write(stopper_, 1); }

void LoopbackServer::run() {
  std::array<epoll_event, 64> events{};
  while (true) {
    const int count = ::epoll_wait(epoll_, events.data(), static_cast<int>(events.size()), millisecondsToNextDelay());
    for (int i = 0; i < count; ++i) {
      const epoll_event& event = events[static_cast<std::size_t>(i)];
      if (event.data.fd == stopper_) return;
      happened(event.data.fd, event.events);
    }
    endDelays();
  }
}

void LoopbackServer::happened(int socket, unsigned events) {
  const auto found = connections_.find(socket);
  if (found == connections_.end()) return accept(socket);
  Connection& connection = *found->second;
  if ((events & EPOLLOUT) != 0 || read(socket, connection.in))
    goOn(socket, connection);
  else
    close(socket, connection);
}

void LoopbackServer::accept(int listener) {
  const int socket = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
  if (socket < 0) return;
  const int on = 1;
  ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  watchNew(socket);
  connections_[socket] = std::make_unique<Connection>();
}

void LoopbackServer::goOn(int socket, Connection& connection) {
  if (proceed(socket, connection))
    watch(socket, connection);
  else
    close(socket, connection);
}

void LoopbackServer::close(int socket, const Connection& connection) {
  delays_.erase({connection.due, socket});
  ::close(socket);
  connections_.erase(socket);
}

// As far as it goes at once; false when the connection is to be closed.
bool LoopbackServer::proceed(int socket, Connection& connection) {
  while (true) {
    if (!connection.answering && !beginReply(socket, connection)) return true;
    if (delays_.contains({connection.due, socket})) return true;
    if (!write(socket, connection)) return false;
    if (connection.hasOutput()) return true;
    switch (connection.reply.after) {
      case AfterReply::KeepAlive:
        connection.answering = false;
        break;
      case AfterReply::Close:
        return false;
      case AfterReply::Reset:
        resetWhenClosed(socket);
        return false;
      case AfterReply::Hold:
        return true;
    }
  }
}

// One request at a time: what is asked for meanwhile waits in `in`. False when no request is whole yet.
bool LoopbackServer::beginReply(int socket, Connection& connection) {
  const auto end = connection.in.find(kHeadEnd);
  if (end == std::string::npos) return false;
  connection.answering = true;
  connection.textAt = 0;
  Reply& reply = connection.reply;
  std::string text = std::move(reply.text);  // its memory is used again
  text.clear();
  reply = Reply{.text = std::move(text)};
  const auto request = std::string_view(connection.in).substr(0, end);
  if (request.find("\r\nConnection: close") != std::string_view::npos) reply.after = AfterReply::Close;
  answer_(request, reply);
  connection.in.erase(0, end + kHeadEnd.size());
  if (reply.delay.count() > 0) {
    connection.due = Clock::now() + reply.delay;
    delays_.insert({connection.due, socket});
  }
  return true;
}

int LoopbackServer::millisecondsToNextDelay() const {
  if (delays_.empty()) return -1;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(delays_.begin()->first - Clock::now());
  return static_cast<int>(std::max<std::int64_t>(left.count(), 0));
}

void LoopbackServer::endDelays() {
  while (!delays_.empty() && delays_.begin()->first <= Clock::now()) {
    const int socket = delays_.begin()->second;
    delays_.erase(delays_.begin());
    goOn(socket, *connections_.at(socket));
  }
}

// As much as the socket takes; false when the connection is gone.
bool LoopbackServer::write(int socket, Connection& connection) {
  while (connection.hasOutput())
    if (writePiece(socket, connection) < 0) return errno == EAGAIN;
  return true;
}

std::int64_t LoopbackServer::writePiece(int socket, Connection& connection) {
  Reply& reply = connection.reply;
  std::int64_t sent = 0;
  if (connection.textAt < reply.text.size()) {
    const auto text = std::string_view(reply.text).substr(connection.textAt);
    const bool more = !reply.body.empty() || reply.fileLeft > 0;
    sent = ::send(socket, text.data(), text.size(), MSG_NOSIGNAL | (more ? MSG_MORE : 0));
    if (sent > 0) connection.textAt += static_cast<std::size_t>(sent);
  } else if (!reply.body.empty()) {
    sent = ::send(socket, reply.body.data(), reply.body.size(), MSG_NOSIGNAL);
    if (sent > 0) reply.body.remove_prefix(static_cast<std::size_t>(sent));
    if (sent > 0) bodyBytesSent_ += static_cast<std::uint64_t>(sent);
  } else {
    off_t at = reply.fileAt % reply.fileSize;
    sent = ::sendfile(socket, reply.file, &at, static_cast<std::size_t>(std::min(reply.fileLeft, reply.fileSize - at)));
    if (sent > 0) reply.fileAt += sent;
    if (sent > 0) reply.fileLeft -= sent;
  }
  return sent;
}

void LoopbackServer::watch(int socket, Connection& connection) const {
  const bool waits = connection.hasOutput() && !delays_.contains({connection.due, socket});
  if (connection.waitsToWrite == waits) return;
  connection.waitsToWrite = waits;
  epoll_event event{};
  event.events = waits ? EPOLLOUT : EPOLLIN;
  event.data.fd = socket;
  ::epoll_ctl(epoll_, EPOLL_CTL_MOD, socket, &event);
}

}  // namespace mvtest
