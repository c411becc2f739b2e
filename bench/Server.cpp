#include "Server.h"

#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <optional>
#include <string_view>
#include <system_error>

#include "testkit/LoopbackServer.h"

namespace mvbench {

namespace {

using mvtest::Reply;

constexpr std::int64_t kStoredBytes = std::int64_t{16} << 20;  // of which every file is a piece, or several
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

class Site {
 public:
  explicit Site(const SiteShape& shape) : shape_(shape) {}
  void answer(std::string_view request, Reply& reply);

 private:
  void answerPath(Reply& reply, std::string_view path);
  void file(Reply& reply, std::int64_t at, std::int64_t bytes) const;
  void makePage(std::int64_t number);
  void makeLinks(std::int64_t links);
  void makeBytes(std::int64_t bytes);

  SiteShape shape_;
  int store_ = makeStore();
  std::string page_;
};

void head(Reply& reply, const char* status, const char* type, std::int64_t length) {
  std::string& text = reply.text;
  text.append("HTTP/1.1 ").append(status).append("\r\nContent-Type: ").append(type).append("\r\nContent-Length: ");
  append(text, length);
  text.append("\r\n\r\n");
}

void Site::answer(std::string_view request, Reply& reply) {
  const auto start = request.find(' ');
  const auto path = request.substr(0, request.find(' ', start + 1));
  if (start == std::string_view::npos || !request.starts_with("GET ")) {
    reply.after = mvtest::AfterReply::Close;
    head(reply, "405 Method Not Allowed", "text/plain", 0);
  } else {
    answerPath(reply, path.substr(start + 1));
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

void Site::answerPath(Reply& reply, std::string_view path) {
  page_.clear();
  if (path == "/") {
    makePage(0);
  } else if (const auto page = numberIn(path, "/p/", ".html"); page && *page < shape_.pages) {
    makePage(*page);
  } else if (const auto links = numberIn(path, "/links/", ".html")) {
    makeLinks(*links);
  } else if (const auto bytes = numberIn(path, "/bytes/", ".html")) {
    makeBytes(*bytes);
  } else if (const auto number = numberIn(path, "/f/", ".jpg"); number && *number < shape_.files) {
    file(reply, *number * 4096 % (kStoredBytes / 2), shape_.fileBytes);
  } else if (const auto big = numberIn(path, "/big/", ".jpg")) {
    file(reply, 0, *big);
  } else {
    head(reply, "404 Not Found", "text/plain", 0);
  }
  if (page_.empty()) return;
  head(reply, "200 OK", kPage, std::ssize(page_));
  reply.text.append(page_);
}

void Site::file(Reply& reply, std::int64_t at, std::int64_t bytes) const {
  head(reply, "200 OK", kFile, bytes);
  reply.file = store_;
  reply.fileSize = kStoredBytes;
  reply.fileAt = at;
  reply.fileLeft = bytes;
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

}  // namespace

void serve(const SiteShape& shape, int hosts, std::uint16_t port, void (*ready)(std::uint16_t port, void* data),
           void* data) {
  std::signal(SIGPIPE, SIG_IGN);  // sendfile has no flag for it
  Site site(shape);
  mvtest::LoopbackServer server([&](std::string_view request, Reply& reply) { site.answer(request, reply); }, hosts,
                                port);
  ready(server.port(), data);
  server.run();
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
