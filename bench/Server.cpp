#include "Server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/sendfile.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>
#include <unordered_map>

namespace mvbench {

namespace {

constexpr std::size_t kReadAtOnce = 16384;
constexpr std::int64_t kStoredBytes = std::int64_t{16} << 20;  // of which every file is a piece, or several
constexpr int kWaiting = 512;
constexpr const char* kPage = "text/html; charset=utf-8";
constexpr const char* kFile = "image/jpeg";

[[noreturn]] void raise(const char* what) { throw std::system_error(errno, std::generic_category(), what); }

void append(std::string& text, std::int64_t number) {
  std::array<char, 24> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  text.append(digits.data(), end);
}

void appendLink(std::string& page, std::string_view folder, std::int64_t number, std::string_view extension) {
  page.append("<p><a href=\"").append(folder);
  append(page, number);
  page.append(extension).append("\">Number ");
  append(page, number);
  page.append("</a> of the collection\n");
}

void beginPage(std::string& page, std::int64_t number) {
  page.append("<html><head><title>Page ");
  append(page, number);
  page.append("</title></head><body>\n");
}

void endPage(std::string& page) { page.append("</body></html>\n"); }

// The bytes that files are cut from, in memory, so that they go out without a copy.
int makeStore() {
  const int store = memfd_create("site", MFD_CLOEXEC);
  if (store < 0) raise("memfd_create");
  std::string bytes(std::size_t{1} << 20, '\0');
  std::uint32_t state = 1;
  for (std::int64_t written = 0; written < kStoredBytes; written += std::ssize(bytes)) {
    for (char& byte : bytes) byte = static_cast<char>((state = state * 1664525 + 1013904223) >> 24U);
    if (::write(store, bytes.data(), bytes.size()) != std::ssize(bytes)) raise("write");
  }
  return store;
}

struct Connection {
  std::string in;
  std::string out;
  std::size_t outAt = 0;
  std::int64_t fileAt = 0;
  std::int64_t fileLeft = 0;
  bool closes = false;
  bool waitsToWrite = false;

  bool hasOutput() const { return outAt < out.size() || fileLeft > 0; }
};

class Site {
 public:
  Site(const SiteShape& shape, int hosts, std::uint16_t port);
  std::uint16_t port() const { return port_; }
  [[noreturn]] void run();

 private:
  void listenOn(int host);
  void accept(int listener);
  void serve(int socket, Connection& connection, unsigned events);
  bool read(int socket, Connection& connection) const;
  void answerAll(Connection& connection);
  void answer(Connection& connection, std::string_view request);
  void answerPath(Connection& connection, std::string_view path);
  static void head(Connection& connection, const char* status, const char* type, std::int64_t length);
  void respondPage(Connection& connection);
  void makePage(std::int64_t number);
  void makeLinks(std::int64_t links);
  void makeBytes(std::int64_t bytes);
  bool write(int socket, Connection& connection) const;
  void watch(int socket, Connection& connection) const;

  SiteShape shape_;
  int epoll_ = epoll_create1(EPOLL_CLOEXEC);
  int store_ = makeStore();
  std::uint16_t port_;
  std::string page_;
  std::unordered_map<int, std::unique_ptr<Connection>> connections_;  // listeners have none
};

Site::Site(const SiteShape& shape, int hosts, std::uint16_t port) : shape_(shape), port_(port) {
  for (int host = 1; host <= hosts; ++host) listenOn(host);
}

void Site::listenOn(int host) {
  const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  const int on = 1;
  setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port_);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK + static_cast<unsigned>(host) - 1);
  socklen_t size = sizeof address;
  auto* plain = reinterpret_cast<sockaddr*>(&address);
  if (bind(listener, plain, size) != 0 || listen(listener, kWaiting) != 0) raise("The address cannot be served");
  getsockname(listener, plain, &size);
  port_ = ntohs(address.sin_port);
  epoll_event event{};
  event.events = EPOLLIN;
  event.data.fd = listener;
  epoll_ctl(epoll_, EPOLL_CTL_ADD, listener, &event);
}

void Site::run() {
  std::array<epoll_event, 64> events{};
  while (true) {
    const int count = epoll_wait(epoll_, events.data(), static_cast<int>(events.size()), -1);
    for (int i = 0; i < count; ++i) {
      const epoll_event& event = events[static_cast<std::size_t>(i)];
      const auto connection = connections_.find(event.data.fd);
      if (connection == connections_.end())
        accept(event.data.fd);
      else
        serve(event.data.fd, *connection->second, event.events);
    }
  }
}

void Site::accept(int listener) {
  const int socket = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
  if (socket < 0) return;
  const int on = 1;
  setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  epoll_event event{};
  event.events = EPOLLIN;
  event.data.fd = socket;
  epoll_ctl(epoll_, EPOLL_CTL_ADD, socket, &event);
  connections_[socket] = std::make_unique<Connection>();
}

void Site::serve(int socket, Connection& connection, unsigned events) {
  bool open = (events & EPOLLOUT) != 0 || read(socket, connection);
  while (open) {
    if (!connection.hasOutput()) answerAll(connection);
    if (!connection.hasOutput()) break;
    open = write(socket, connection);
    if (connection.hasOutput()) break;
    open = open && !connection.closes;
  }
  if (open) {
    watch(socket, connection);
  } else {
    close(socket);
    connections_.erase(socket);
  }
}

bool Site::read(int socket, Connection& connection) const {
  std::array<char, kReadAtOnce> bytes{};
  const ssize_t count = recv(socket, bytes.data(), bytes.size(), 0);
  if (count > 0) connection.in.append(bytes.data(), static_cast<std::size_t>(count));
  return count > 0 || (count < 0 && errno == EAGAIN);
}

// One request at a time: what is asked for meanwhile waits in `in`.
void Site::answerAll(Connection& connection) {
  const auto end = connection.in.find("\r\n\r\n");
  if (end == std::string::npos) return;
  connection.out.clear();
  connection.outAt = 0;
  answer(connection, std::string_view(connection.in).substr(0, end));
  connection.in.erase(0, end + 4);
}

void Site::answer(Connection& connection, std::string_view request) {
  connection.closes = request.find("\r\nConnection: close") != std::string_view::npos;
  const auto start = request.find(' ');
  const auto path = request.substr(0, request.find(' ', start + 1));
  if (start == std::string_view::npos || !request.starts_with("GET ")) {
    connection.closes = true;
    head(connection, "405 Method Not Allowed", "text/plain", 0);
  } else {
    answerPath(connection, path.substr(start + 1));
  }
}

// The number of "<folder><number><extension>".
std::optional<std::int64_t> numberIn(std::string_view path, std::string_view folder, std::string_view extension) {
  if (!path.starts_with(folder) || !path.ends_with(extension)) return std::nullopt;
  const auto digits = path.substr(folder.size(), path.size() - folder.size() - extension.size());
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (digits.empty() || error != std::errc() || end != digits.data() + digits.size() || number < 0) return std::nullopt;
  return number;
}

void Site::answerPath(Connection& connection, std::string_view path) {
  page_.clear();
  if (path == "/") {
    makePage(0);
  } else if (const auto page = numberIn(path, "/p/", ".html"); page && *page < shape_.pages) {
    makePage(*page);
  } else if (const auto links = numberIn(path, "/links/", ".html")) {
    makeLinks(*links);
  } else if (const auto bytes = numberIn(path, "/bytes/", ".html")) {
    makeBytes(*bytes);
  } else if (const auto file = numberIn(path, "/f/", ".jpg"); file && *file < shape_.files) {
    head(connection, "200 OK", kFile, shape_.fileBytes);
    connection.fileAt = *file * 4096 % (kStoredBytes / 2);
    connection.fileLeft = shape_.fileBytes;
  } else if (const auto big = numberIn(path, "/big/", ".jpg")) {
    head(connection, "200 OK", kFile, *big);
    connection.fileAt = 0;
    connection.fileLeft = *big;
  } else {
    head(connection, "404 Not Found", "text/plain", 0);
  }
  if (!page_.empty()) respondPage(connection);
}

void Site::head(Connection& connection, const char* status, const char* type, std::int64_t length) {
  std::string& out = connection.out;
  out.append("HTTP/1.1 ").append(status).append("\r\nContent-Type: ").append(type).append("\r\nContent-Length: ");
  append(out, length);
  out.append("\r\n\r\n");
}

void Site::respondPage(Connection& connection) {
  head(connection, "200 OK", kPage, std::ssize(page_));
  connection.out.append(page_);
}

void Site::makePage(std::int64_t number) {
  const std::int64_t half = shape_.links / 2;
  const std::int64_t firstFile = shape_.pages > 0 ? number * shape_.files / shape_.pages : 0;
  beginPage(page_, number);
  for (std::int64_t i = 0; i < half; ++i) {
    appendLink(page_, "/p/", (number + 1 + i) % shape_.pages, ".html");
    if (shape_.files > 0) appendLink(page_, "/f/", (firstFile + i) % shape_.files, ".jpg");
  }
  endPage(page_);
}

void Site::makeLinks(std::int64_t links) {
  beginPage(page_, links);
  for (std::int64_t i = 0; i < links; ++i) appendLink(page_, "/l/", i, ".html");
  endPage(page_);
}

void Site::makeBytes(std::int64_t bytes) {
  constexpr std::int64_t kParagraph = 1000;
  const std::string filler(kParagraph, 'x');
  beginPage(page_, bytes);
  for (std::int64_t i = 0; std::ssize(page_) + kParagraph + 100 < bytes; ++i) {
    appendLink(page_, "/p/", i % shape_.pages, ".html");
    page_.append(filler);
  }
  endPage(page_);
  page_.resize(static_cast<std::size_t>(std::max(bytes, std::ssize(page_))), '\n');
}

// False when the connection is gone.
bool Site::write(int socket, Connection& connection) const {
  while (connection.hasOutput()) {
    ssize_t sent = 0;
    if (connection.outAt < connection.out.size()) {
      sent = send(socket, connection.out.data() + connection.outAt, connection.out.size() - connection.outAt,
                  MSG_NOSIGNAL | (connection.fileLeft > 0 ? MSG_MORE : 0));
      if (sent > 0) connection.outAt += static_cast<std::size_t>(sent);
    } else {
      off_t at = connection.fileAt % kStoredBytes;
      sent = sendfile(socket, store_, &at, static_cast<std::size_t>(std::min(connection.fileLeft, kStoredBytes - at)));
      if (sent > 0) connection.fileAt += sent;
      if (sent > 0) connection.fileLeft -= sent;
    }
    if (sent < 0) return errno == EAGAIN;
  }
  return true;
}

void Site::watch(int socket, Connection& connection) const {
  if (connection.waitsToWrite == connection.hasOutput()) return;
  connection.waitsToWrite = connection.hasOutput();
  epoll_event event{};
  event.events = connection.waitsToWrite ? EPOLLOUT : EPOLLIN;
  event.data.fd = socket;
  epoll_ctl(epoll_, EPOLL_CTL_MOD, socket, &event);
}

}  // namespace

void serve(const SiteShape& shape, int hosts, std::uint16_t port, void (*ready)(std::uint16_t port, void* data),
           void* data) {
  std::signal(SIGPIPE, SIG_IGN);  // sendfile has no flag for it
  Site site(shape, hosts, port);
  ready(site.port(), data);
  site.run();
}

ServerProcess::ServerProcess(const SiteShape& shape, int hosts) {
  std::array<int, 2> pipe{};
  if (::pipe(pipe.data()) != 0) raise("pipe");
  process_ = fork();
  if (process_ < 0) raise("fork");
  if (process_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    close(pipe[0]);
    try {
      serve(
          shape, hosts, 0,
          [](std::uint16_t port, void* data) {
            if (::write(*static_cast<int*>(data), &port, sizeof port) != sizeof port) _exit(1);
          },
          &pipe[1]);
    } catch (const std::exception&) {
      _exit(1);
    }
  }
  close(pipe[1]);
  const bool told = ::read(pipe[0], &port_, sizeof port_) == sizeof port_;
  close(pipe[0]);
  if (!told) throw std::runtime_error("The site did not start");
}

ServerProcess::~ServerProcess() {
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
}

std::string ServerProcess::host(int number) const {
  return "127.0.0." + std::to_string(number) + ":" + std::to_string(port_);
}

}  // namespace mvbench
