// The transfer component against a real server on the loopback interface.

#include <curl/curl.h>
#include <dlfcn.h>
#include <netdb.h>
#include <sys/resource.h>

#include <QByteArray>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <functional>
#include <limits>
#include <random>
#include <thread>

#include "TransferClient.h"
#include "base/TimeBudget.h"
#include "testkit/TestSite.h"

namespace {

constexpr const char* kSilentHost = "silent.test";
constexpr std::chrono::seconds kSilence(3);

}  // namespace

// Stands before the system's own: a host whose name server is silent for a while.
extern "C" int getaddrinfo(const char* node, const char* service, const addrinfo* hints, addrinfo** result) {
  static const auto real = reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
  if (node == nullptr || std::string(node) != kSilentHost) return real(node, service, hints, result);
  std::this_thread::sleep_for(kSilence);
  return EAI_AGAIN;
}

namespace {

using namespace mvtest;
using mv::BodyMode;
using mv::ChunkType;
using mv::InternetTransfer;
using States = std::vector<int>;

constexpr std::size_t kMegabyte = std::size_t{1} << 20;

Resource redirect(const std::string& location) { return {.status = 302, .headers = {{"Location", location}}}; }

Resource faulty(Fault fault) { return {.body = std::string(2000, 'x'), .fault = fault}; }

// zlib's format, behind the four bytes of length that Qt puts in front.
std::string deflated(const std::string& text) {
  return qCompress(QByteArray::fromStdString(text)).mid(4).toStdString();
}

std::string randomBytes(std::size_t size) {
  std::mt19937 random(7);
  std::string bytes(size, '\0');
  for (auto& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

// Milliseconds. AddressSanitizer takes longer to reserve the memory of a long text than its move would take.
#ifdef __SANITIZE_ADDRESS__
constexpr double kShortTurn = 100;
#else
constexpr double kShortTurn = 16;
#endif

// In milliseconds, of three tries the best: what other programs do makes turns longer, never shorter.
double longestTurn(const std::function<void()>& work) {
  double best = std::numeric_limits<double>::max();
  for (int i = 0; i < 3; ++i) {
    const LoopMeter turn;
    work();
    best = std::min(best, turn.longest);
  }
  return best;
}

using Client = TransferClient;

class TransferTest : public ::testing::Test {
 protected:
  TransferTest() { InternetTransfer::forgetSharedState(); }
  ~TransferTest() override { InternetTransfer::limits() = {}; }

  // Whether the address, or the path of the site, could be fetched.
  bool get(const std::string& address, BodyMode mode = BodyMode::Text) {
    return client.run(address.starts_with('/') ? site.url(address) : address, mode) == mv::kResponseCompleted;
  }
  std::string authorisation(const TestSite& asked) const { return asked.requests().back().headers["authorization"]; }
  static std::string basic(const char* pair) { return "Basic " + QByteArray(pair).toBase64().toStdString(); }

  TestSite site;
  Client client;
  const std::string otherName = "localhost:" + std::to_string(site.port());  // the same site
};

TEST_F(TransferTest, Outcomes) {
  const struct {
    const char* what;
    Resource resource;
    long code;  // 0: completed
    const char* info;
  } cases[] = {
      {"page", {.body = "body"}, 0, ""},
      {"not found", {.body = "body", .status = 404}, 404, "Not Found"},
      {"own reason", {.body = "body", .status = 503, .reason = "Out to lunch"}, 503, "Out to lunch"},
      {"no reason", {.body = "body", .status = 499, .reason = " "}, 499, "HTTP status 499"},
      {"no length", faulty(Fault::NoContentLength), 0, ""},
      {"refused", faulty(Fault::Refuse), CURLE_GOT_NOTHING, "Empty reply from server"},
      {"reset", faulty(Fault::Reset), CURLE_RECV_ERROR, nullptr},
      {"short", faulty(Fault::ShortBody), CURLE_PARTIAL_FILE, nullptr},
      {"wrong length", faulty(Fault::WrongLength), CURLE_PARTIAL_FILE, nullptr},
      {"garbage", faulty(Fault::Garbage), CURLE_UNSUPPORTED_PROTOCOL, nullptr},
      {"broken compression",
       {.body = "body", .headers = {{"Content-Encoding", "gzip"}}},
       CURLE_BAD_CONTENT_ENCODING,
       nullptr},
  };
  for (const auto& c : cases) {
    for (const auto mode : {BodyMode::Text, BodyMode::File}) {
      if (mode == BodyMode::File && c.code == CURLE_BAD_CONTENT_ENCODING) continue;  // a file is not unpacked
      SCOPED_TRACE(c.what);
      site.add("/", c.resource);
      EXPECT_EQ(client.run(site.url("/"), mode), c.code == 0 ? mv::kResponseCompleted : mv::kError);
      EXPECT_EQ(client.transfer.ResponseCode(), c.code);
      const auto info = client.transfer.ResponseInfo();
      EXPECT_EQ(info, c.info != nullptr ? c.info : info);
      EXPECT_EQ(info.empty(), c.code == 0);
      EXPECT_EQ(client.body(), c.code == 0 ? c.resource.body : "");
    }
  }
}

TEST_F(TransferTest, NothingToConnectTo) {
  const std::string gone = std::make_unique<TestSite>()->url("/");
  const std::pair<std::string, long> cases[] = {{gone, CURLE_COULDNT_CONNECT},
                                                {"http:///x", CURLE_URL_MALFORMAT},
                                                {"ftp://127.0.0.1/", CURLE_UNSUPPORTED_PROTOCOL},
                                                {"file:///etc/passwd", CURLE_URL_MALFORMAT}};
  for (const auto& [url, code] : cases) {
    EXPECT_EQ(client.run(url), mv::kError) << url;
    EXPECT_EQ(client.transfer.ResponseCode(), code) << url;
    EXPECT_FALSE(client.transfer.ResponseInfo().empty()) << url;
  }
}

TEST_F(TransferTest, StatesTellWhatTheConnectionDoes) {
  site.page("/", "x");
  site.add("/closing", faulty(Fault::NoContentLength));
  site.add("/moved", redirect("/"));

  const std::pair<const char*, States> cases[] = {
      {"/", {1, 2, 3, 4, 5, 6, 7, 8, 12}},      {"/", {5, 6, 7, 8, 12}},  // the connection is used again
      {"/moved", {5, 6, 7, 8, 5, 6, 7, 8, 12}}, {"/closing", {5, 6, 7, 8, 9, 10, 12}},
      {"/none", {3, 4, 5, 6, 7, 8, 11}},  // a new connection, the host is known
  };
  for (const auto& [path, states] : cases) {
    client.run(otherName + path);
    EXPECT_EQ(client.states, states) << path;
  }
}

TEST_F(TransferTest, RequestsAreWhatServersExpect) {
  site.page("/a%20b?q=%C3%A4", "x");
  EXPECT_TRUE(get(site.host() + "/a b?q=\xC3\xA4#part"));
  get("/", BodyMode::File);
  const auto requests = site.requests();
  ASSERT_EQ(requests.size(), 2U);
  EXPECT_EQ(requests[0].method, "GET");
  EXPECT_EQ(requests[0].headers.at("user-agent"), "Morvane2000/1.0");
  EXPECT_NE(requests[0].headers.at("accept-encoding").find("gzip"), std::string::npos);
  EXPECT_EQ(requests[1].headers.at("accept-encoding"), "identity");
}

TEST_F(TransferTest, Redirects) {
  TestSite other;
  other.add("/there", {.body = "other", .headers = {{"x-thing", " a "}, {"X-Thing", "b"}}});
  for (int i = 0; i < 21; ++i) site.add("/" + std::to_string(i), redirect(std::to_string(i + 1)));
  site.page("/21", "end");
  site.add("/loop", redirect("/loop"));
  site.add("/away", redirect(other.url("/there")));
  site.add("/ftp", redirect("ftp://127.0.0.1/"));

  EXPECT_TRUE(get("/1")) << "20 redirects";
  EXPECT_EQ(client.body(), "end");
  EXPECT_TRUE(get("/away"));
  EXPECT_EQ(client.body(), "other");
  EXPECT_EQ(client.transfer.GetHeader("X-THING"), "a") << "of the final response the last one sent";
  EXPECT_EQ(client.transfer.GetHeader("Location"), "");

  const std::pair<const char*, long> failing[] = {
      {"/0", CURLE_TOO_MANY_REDIRECTS}, {"/loop", CURLE_TOO_MANY_REDIRECTS}, {"/ftp", CURLE_UNSUPPORTED_PROTOCOL}};
  for (const auto& [path, code] : failing) {
    EXPECT_EQ(client.run(site.url(path), BodyMode::HeadersOnly), mv::kError) << path;
    EXPECT_EQ(client.transfer.ResponseCode(), code) << path;
  }
}

TEST_F(TransferTest, CookiesAreSharedUntilForgotten) {
  site.add("/login", {.headers = {{"Set-Cookie", "session=42; Path=/"}}});
  site.page("/", "x");
  const auto cookieOfNewInstance = [this] {
    Client another;
    another.run(site.url("/"));
    return site.requests().back().headers["cookie"];
  };
  get("/login");
  EXPECT_EQ(cookieOfNewInstance(), "session=42");
  client.run(otherName + "/");
  EXPECT_EQ(site.requests().back().headers["cookie"], "") << "another host";
  InternetTransfer::forgetSharedState();
  EXPECT_EQ(cookieOfNewInstance(), "");
}

TEST_F(TransferTest, CredentialsGoToTheirHostOnly) {
  TestSite other;
  other.page("/", "x");
  site.add("/", redirect(other.url("/")));
  site.add("/near", redirect("/page"));
  site.page("/page", "x");

  const std::string user = "http://me:p@ss%41@" + site.host();
  EXPECT_TRUE(get(user + "/near"));
  for (auto& request : site.requests()) EXPECT_EQ(request.headers["authorization"], basic("me:p@ssA")) << request.path;
  EXPECT_TRUE(get(user + "/"));
  ASSERT_EQ(other.requests().size(), 1U);
  EXPECT_EQ(other.requests()[0].headers.count("authorization"), 0U);
  get("/page");
  EXPECT_EQ(site.requests().back().headers.count("authorization"), 0U) << "nor to a later request";

  // The first one is followed, whatever the second one says.
  site.add("/two", {.status = 302, .headers = {{"Location", other.url("/")}, {"location", "https://" + site.host()}}});
  EXPECT_TRUE(get(user + "/two"));
  ASSERT_EQ(other.requests().size(), 2U);
  EXPECT_EQ(authorisation(other), "");
}

TEST_F(TransferTest, ADigestChallengeIsAnswered) {
  site.setRule([](const Request& request) {
    const auto sent = request.headers.find("authorization");
    if (sent != request.headers.end() && sent->second.starts_with("Digest ")) return Resource{.body = "in"};
    return Resource{.status = 401, .headers = {{"WWW-Authenticate", "digest realm=\"r\", nonce=\"n\""}}};
  });
  EXPECT_TRUE(get("http://me:secret@" + site.host() + "/", BodyMode::File));
  EXPECT_EQ(client.body(ChunkType::Bytes), "in");
  EXPECT_EQ(site.requests()[0].headers["authorization"], basic("me:secret"));
  EXPECT_NE(authorisation(site).find("username=\"me\""), std::string::npos);
  EXPECT_EQ(site.requests().back().headers["accept-encoding"], "identity");

  get("http://me%0d%0aX-Other%3a%20one:secret@" + site.host() + "/");
  EXPECT_EQ(site.requests().back().headers.count("x-other"), 0U) << "a user name is no way to write into the request";
}

TEST_F(TransferTest, ASitesLoginGoesWithItsRequestsToItsHostOnly) {
  TestSite otherPort;
  site.add("/leave", redirect(otherPort.url("/")));
  site.add("/rename", redirect("http://" + otherName + "/page"));
  site.page("/page", "x");
  otherPort.page("/", "x");
  constexpr std::int64_t kSite = 7;
  InternetTransfer::rememberLogin(kSite, site.host() + "/members", "me", "p/:@ %41?#\xC3\xA4");
  InternetTransfer::rememberLogin(kSite + 1, site.host(), "another", "site");
  get("/page");
  EXPECT_EQ(authorisation(site), "") << "no site's request";
  client.transfer.setSite(kSite + 2);
  get("/page");
  EXPECT_EQ(authorisation(site), "") << "of a site without a login";
  client.transfer.setSite(kSite);
  get("/page");
  EXPECT_EQ(authorisation(site), basic("me:p/:@ %41?#\xC3\xA4"));
  client.run("http://you:two@" + site.host() + "/page");
  EXPECT_EQ(authorisation(site), basic("you:two")) << "what the address says goes first";
  for (const auto& [path, away] : {std::pair("/leave", &otherPort), std::pair("/rename", &site)}) {
    ASSERT_TRUE(get(path));
    EXPECT_EQ(authorisation(*away), "") << path;
  }
  EXPECT_EQ(client.transfer.ResponseAddress(), "http://" + otherName + "/page");
  site.add("/named", redirect("http://you:two@" + site.host() + "/page"));
  get("/named");
  EXPECT_EQ(client.transfer.ResponseAddress(), site.url("/page"));
  InternetTransfer::rememberLogin(kSite, site.host(), "", "");
  get("/page");
  EXPECT_EQ(authorisation(site), "");
}

TEST_F(TransferTest, PagesArriveAsTextInPiecesOfCharacters) {
  std::string euros;
  for (int i = 0; i < 1024; ++i) euros += "\xE2\x82\xAC";
  site.page("/exact", euros);
  ASSERT_TRUE(get("/exact"));
  EXPECT_EQ(client.transfer.GetChunk(1024, ChunkType::Text), euros);
  EXPECT_EQ(client.transfer.GetChunk(1024, ChunkType::Text), "");

  const std::string plain(100'000, 'z');
  const auto packed = deflated(plain);
  site.add("/packed", {.body = packed, .headers = {{"Content-Encoding", "deflate"}}});
  ASSERT_TRUE(get("/packed"));
  EXPECT_EQ(client.body(), plain);
  ASSERT_TRUE(get("/packed", BodyMode::File));
  EXPECT_EQ(client.body(ChunkType::Bytes), packed) << "a file is what was sent";

  site.file("/latin", "text/html; charset=iso-8859-1", "\xE4");
  ASSERT_TRUE(get("/latin"));
  EXPECT_EQ(client.body(), "\xC3\xA4");
}

TEST_F(TransferTest, PagesHaveALimit) {
  InternetTransfer::limits().textLimit = 50'000;
  site.page("/most", std::string(50'000, 'x'));
  site.page("/more", std::string(50'001, 'x'));
  site.add("/bomb", {.body = deflated(std::string(8'000'000, 'x')), .headers = {{"Content-Encoding", "deflate"}}});
  EXPECT_TRUE(get("/most"));
  for (const auto* path : {"/more", "/bomb"}) {
    EXPECT_EQ(client.run(site.url(path)), mv::kError) << path;
    EXPECT_EQ(client.transfer.ResponseCode(), CURLE_FILESIZE_EXCEEDED) << path;
    EXPECT_EQ(client.transfer.ResponseInfo(), "The page is longer than 50000 bytes");
  }
}

TEST_F(TransferTest, ALongPageOfUnknownLengthIsNotMovedAtOnce) {
  for (const std::string type : {"text/html", "text/html; charset=iso-8859-5"}) {
    // Each letter of the second one takes two bytes as UTF-8.
    const std::string page(60 * kMegabyte, type == "text/html" ? 'x' : '\xD0');
    site.add("/p", {.type = type, .body = page, .fault = Fault::NoContentLength});
    EXPECT_LT(longestTurn([this] { EXPECT_TRUE(get("/p", BodyMode::Text)); }), kShortTurn) << type;
    EXPECT_EQ(client.transfer.TakeText().size(), page.size() * (type == "text/html" ? 1 : 2));
  }
}

TEST_F(TransferTest, APackedPageIsUnpackedByTurns) {
  const std::string page(60 * kMegabyte, 'x');  // 60 KB as sent
  site.add("/p", {.type = "text/html", .body = deflated(page), .headers = {{"Content-Encoding", "deflate"}}});
  EXPECT_LT(longestTurn([this] { EXPECT_TRUE(get("/p", BodyMode::Text)); }), kShortTurn);
  EXPECT_TRUE(client.transfer.TakeText() == page);
}

// ---- header requests

TEST_F(TransferTest, HeldResponseGoesOnWithoutASecondRequest) {
  InternetTransfer::limits().spoolThreshold = 1025;
  // Small enough to come with the headers; around the edge of the memory; too large for what the system buffers.
  const std::size_t sizes[] = {0, 1, 1025, 1026, 16 * kMegabyte};
  std::uint64_t sent = 0;
  for (const auto size : sizes) {
    SCOPED_TRACE(size);
    const auto bytes = randomBytes(size);
    site.file("/f", "image/jpeg", bytes);
    ASSERT_TRUE(get("/f", BodyMode::HeadersOnly));
    EXPECT_FALSE(client.transfer.StillExecuting());
    EXPECT_EQ(client.transfer.GetHeader("Content-Length"), std::to_string(size));
    EXPECT_EQ(client.transfer.GetChunk(1024, ChunkType::Bytes), "");
    ASSERT_TRUE(get("/f", BodyMode::File));
    EXPECT_EQ(client.states, size == 0 ? (States{8, 12}) : (States{7, 8, 12}));
    EXPECT_TRUE(client.body(ChunkType::Bytes) == bytes);
    EXPECT_EQ(client.transfer.GetHeader("Content-Length"), std::to_string(size));
    sent += size;
    EXPECT_TRUE(waitFor([&] { return site.bytesSent() == sent; })) << site.bytesSent();
  }
  EXPECT_EQ(site.requestCount("/f"), static_cast<int>(std::size(sizes)));
}

TEST_F(TransferTest, WhatDropsAHeldResponse) {
  site.file("/f", "image/jpeg", "bytes");
  site.page("/other", "other");
  const std::pair<std::function<void()>, int> cases[] = {
      {[] {}, 1},
      {[this] { get("/other", BodyMode::File); }, 2},
      {[this] { get("/f", BodyMode::HeadersOnly); }, 2},
      {[this] { get("/f", BodyMode::Text); }, 3},
      {[this] { client.transfer.cancel(); }, 2},
  };
  for (const auto& [drop, requests] : cases) {
    const int before = site.requestCount("/f");
    EXPECT_TRUE(get("/f", BodyMode::HeadersOnly));
    drop();
    EXPECT_TRUE(get("/f", BodyMode::File));
    EXPECT_EQ(client.body(ChunkType::Bytes), "bytes");
    EXPECT_EQ(site.requestCount("/f") - before, requests);
  }
}

TEST_F(TransferTest, HeldResponseIsNotReadAheadAndExpires) {
  constexpr std::size_t kSize = 32 * kMegabyte;
  InternetTransfer::limits().holdMs = 50;
  site.file("/f", "image/jpeg", std::string(kSize, 'x'));
  site.page("/", "x");
  ASSERT_TRUE(get("/f", BodyMode::HeadersOnly));
  Client another;
  ASSERT_EQ(another.run(site.url("/")), mv::kResponseCompleted) << "others are not held up";
  EXPECT_LT(site.bytesSent(), kSize);
  waitFor([] { return false; }, 150);
  EXPECT_EQ(client.transfer.GetHeader("Content-Length"), std::to_string(kSize));
  ASSERT_TRUE(get("/f", BodyMode::File));
  EXPECT_EQ(site.requestCount("/f"), 2);
}

TEST_F(TransferTest, HeadersAreEnoughAndFaultsOfTheBodyComeLater) {
  InternetTransfer::limits().stallTimeoutS = 1;
  const std::tuple<Fault, int, long> cases[] = {{Fault::HeaderOnly, mv::kError, CURLE_OPERATION_TIMEDOUT},
                                                {Fault::Reset, mv::kError, CURLE_RECV_ERROR},
                                                {Fault::ShortBody, mv::kError, CURLE_PARTIAL_FILE},
                                                {Fault::NoContentLength, mv::kResponseCompleted, 0}};
  for (const auto& [fault, outcome, code] : cases) {
    SCOPED_TRACE(static_cast<int>(fault));
    site.add("/f", faulty(fault));
    EXPECT_TRUE(get("/f", BodyMode::HeadersOnly));
    EXPECT_EQ(client.run(site.url("/f"), BodyMode::File), outcome);
    EXPECT_EQ(client.transfer.ResponseCode(), code);
  }
}

TEST_F(TransferTest, WaitingInAHoldIsNoStall) {
  InternetTransfer::limits().stallTimeoutS = 1;
  site.file("/f", "image/jpeg", std::string(20 * kMegabyte, 'x'));
  ASSERT_TRUE(get("/f", BodyMode::HeadersOnly));
  waitFor([] { return false; }, 2200);
  ASSERT_TRUE(get("/f", BodyMode::File));
  EXPECT_EQ(client.body(ChunkType::Bytes).size(), 20 * kMegabyte);
  EXPECT_EQ(site.requestCount("/f"), 1);
}

// ---- large files

long residentKilobytes() {
  long kilobytes = 0;
  const auto status = readFile("/proc/self/status");
  const auto line = status.find("VmRSS:");
  if (line != std::string::npos) std::sscanf(status.c_str() + line, "VmRSS: %ld", &kilobytes);
  return kilobytes;
}

TEST_F(TransferTest, LargeFilesDoNotFillTheMemory) {
  constexpr std::size_t kSize = 96 * kMegabyte + 1;
  const std::string whole = randomBytes(kSize);
  site.file("/f", "video/mpeg", whole);
  const long before = residentKilobytes();
  ASSERT_GT(before, 0);
  ASSERT_TRUE(get("/f", BodyMode::File));
  EXPECT_LT(residentKilobytes() - before, 32 * 1024);

  EXPECT_TRUE(client.body(ChunkType::Bytes) == whole);
}

// libcurl by itself reads a hundred buffers, of every transfer that has something, whenever one socket is ready.
TEST_F(TransferTest, ManyLargeBodiesAtOnceLeaveTheWindowsAlive) {
  const std::string page(40 * kMegabyte, 'x');
  site.page("/page", page);
  site.file("/file", "video/mpeg", page);
  Client clients[8];
  const LoopMeter turn;
  for (auto& one : clients)
    one.begin(site.url(&one < clients + 4 ? "/page" : "/file"), &one < clients + 4 ? BodyMode::Text : BodyMode::File);
  ASSERT_TRUE(
      waitFor([&] { return std::all_of(std::begin(clients), std::end(clients), [](auto& one) { return one.over(); }); },
              60'000));
  EXPECT_LT(turn.longest, 35.0);
  for (auto& one : clients) {
    EXPECT_EQ(one.states.back(), mv::kResponseCompleted);
    EXPECT_TRUE(one.transfer.GetChunk(2 * page.size(), ChunkType::Bytes) == page);
  }
}

TEST_F(TransferTest, FullDiskEndsTheTransfer) {
  InternetTransfer::limits().spoolThreshold = 1000;
  site.file("/f", "image/jpeg", std::string(16 * kMegabyte, 'x'));
  // With other work in every turn, the transfer is put off again and again.
  QTimer otherWork;
  QObject::connect(&otherWork, &QTimer::timeout, &otherWork, [] {
    const mv::TimeBudget budget;
    std::this_thread::sleep_for(std::chrono::milliseconds(6));
  });
  for (const std::size_t room : {65'536U, 4'000'000U, 8'000'000U}) {
    rlimit usual{};
    ::getrlimit(RLIMIT_FSIZE, &usual);
    const rlimit small{room, usual.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &small);
    const int outcome = client.run(site.url("/f"), BodyMode::File);
    ::setrlimit(RLIMIT_FSIZE, &usual);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(outcome, mv::kError);
    EXPECT_EQ(client.transfer.ResponseCode(), CURLE_WRITE_ERROR);
    EXPECT_EQ(client.transfer.ResponseInfo(), "File too large");
    otherWork.start(0);
  }
}

// ---- what receivers do

TEST_F(TransferTest, MayBeDestroyedInItsOwnSignal) {
  site.add("/from", redirect("/to"));
  site.page("/to", "x");
  for (const auto mode : {BodyMode::Text, BodyMode::HeadersOnly, BodyMode::File}) {
    for (int at = mv::kConnecting; at <= mv::kResponseCompleted; ++at) {
      auto doomed = std::make_unique<Client>();
      auto* watched = doomed.get();
      watched->onState = [&](int state) {
        if (state == at) doomed.reset();
      };
      watched->begin(site.url("/from"), mode);
      EXPECT_TRUE(waitFor([&] { return !doomed || doomed->over(); }));
      InternetTransfer::forgetSharedState();
    }
  }
  EXPECT_TRUE(get("/to"));
}

// The window of a site that cannot be found is closed like any other.
TEST_F(TransferTest, ASilentNameServerHoldsNothingUp) {
  for (const bool byTimeout : {false, true}) {
    if (byTimeout) InternetTransfer::limits().connectTimeoutMs = 200;
    client.begin(std::string("http://") + kSilentHost + "/");
    ASSERT_TRUE(waitFor([&] { return byTimeout ? client.over() : !client.states.empty(); }, 1500));
    QElapsedTimer clock;
    clock.start();
    client.transfer.cancel();
    EXPECT_LT(clock.elapsed(), 500);
  }
}

TEST_F(TransferTest, DroppedRequestsAreSilent) {
  site.add("/slow", {.delayMs = 10'000});
  site.page("/", "quick");
  client.begin(site.url("/slow"));
  ASSERT_TRUE(waitFor([&] { return site.requestCount("/slow") == 1; }));
  EXPECT_TRUE(client.transfer.StillExecuting());
  EXPECT_TRUE(get("/"));
  EXPECT_EQ(client.body(), "quick");

  client.begin(site.url("/"));
  client.transfer.cancel();
  Client another;
  EXPECT_EQ(another.run(site.url("/")), mv::kResponseCompleted);
  EXPECT_TRUE(client.states.empty());
  EXPECT_FALSE(client.transfer.StillExecuting());
}

}  // namespace
