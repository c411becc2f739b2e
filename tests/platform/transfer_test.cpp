// The transfer component against a real server on the loopback interface.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <csignal>
#include <cstdio>
#include <functional>
#include <random>
#include <stdexcept>

#include "platform/BodySpool.h"
#include "platform/InternetTransfer.h"
#include "support/Fixture.h"
#include "support/TestSite.h"

namespace {

using mv::BodyMode;
using mv::ChunkType;
using mv::InternetTransfer;
using mvtest::Fault;
using mvtest::Resource;
using mvtest::TestSite;
using mvtest::waitFor;
using States = std::vector<int>;

constexpr std::size_t kMegabyte = std::size_t{1} << 20;

// libcurl's numbers, as ResponseCode gives them.
constexpr long kUnsupportedProtocol = 1;
constexpr long kBadAddress = 3;
constexpr long kCannotConnect = 7;
constexpr long kPartialFile = 18;
constexpr long kWriteError = 23;
constexpr long kTimeout = 28;
constexpr long kTooManyRedirects = 47;
constexpr long kEmptyReply = 52;
constexpr long kReceiveError = 56;
constexpr long kBadEncoding = 61;
constexpr long kTooLong = 63;

Resource resource(int status, std::map<std::string, std::string> headers = {}, std::string body = "body") {
  Resource result;
  result.status = status;
  result.headers = std::move(headers);
  result.body = std::move(body);
  return result;
}

Resource redirect(const std::string& location) { return resource(302, {{"Location", location}}); }

Resource faulty(Fault fault, std::size_t size = 2000) {
  Resource result = resource(200, {}, std::string(size, 'x'));
  result.fault = fault;
  return result;
}

std::string randomBytes(std::size_t size) {
  std::mt19937 random(7);
  std::string bytes(size, '\0');
  for (auto& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

// A receiver of one transfer.
class Client {
 public:
  Client() {
    QObject::connect(&transfer, &InternetTransfer::StateChanged, &transfer, [this](int, int state) {
      states.push_back(state);
      if (onState) onState(state);
    });
  }

  void begin(const std::string& url, BodyMode mode = BodyMode::Text) {
    states.clear();
    transfer.Execute(url, "Get", mode);
    EXPECT_TRUE(states.empty()) << "a state from inside Execute";
  }
  bool over() const { return !states.empty() && states.back() >= mv::kError; }
  // The last state: 11 or 12; 0 when none came.
  int run(const std::string& url, BodyMode mode = BodyMode::Text) {
    begin(url, mode);
    return waitFor([this] { return over(); }) ? states.back() : 0;
  }
  std::string body(ChunkType type = ChunkType::Text) {
    std::string all;
    for (auto piece = transfer.GetChunk(1024, type); !piece.empty(); piece = transfer.GetChunk(1024, type)) {
      EXPECT_LE(type == ChunkType::Bytes ? piece.size() : 0, 1024U);
      all += piece;
    }
    return all;
  }

  InternetTransfer transfer;
  States states;
  std::function<void(int)> onState;
};

class TransferTest : public ::testing::Test {
 protected:
  TransferTest() { InternetTransfer::forgetSharedState(); }
  ~TransferTest() override { InternetTransfer::limits() = {}; }

  TestSite site;
  Client client;
};

TEST_F(TransferTest, Outcomes) {
  struct Case {
    const char* what;
    Resource resource;
    long code;  // 0: completed
    const char* info;
  };
  auto reasoned = resource(503);
  reasoned.reason = "Out to lunch";
  auto unknown = resource(499);
  unknown.reason = " ";
  const Case cases[] = {
      {"page", resource(200), 0, ""},
      {"no content", resource(204, {}, ""), 0, ""},
      {"not found", resource(404), 404, "Not Found"},
      {"own reason", reasoned, 503, "Out to lunch"},
      {"no reason", unknown, 499, "HTTP status 499"},
      {"long error page", resource(500, {}, std::string(kMegabyte, 'x')), 500, "Internal Server Error"},
      {"no length", faulty(Fault::NoContentLength), 0, ""},
      {"refused", faulty(Fault::Refuse), kEmptyReply, "Empty reply from server"},
      {"reset", faulty(Fault::Reset), kReceiveError, nullptr},
      {"short", faulty(Fault::ShortBody), kPartialFile, nullptr},
      {"wrong length", faulty(Fault::WrongLength), kPartialFile, nullptr},
      {"garbage", faulty(Fault::Garbage), kUnsupportedProtocol, nullptr},
      {"broken compression", resource(200, {{"Content-Encoding", "gzip"}}), kBadEncoding, nullptr},
      {"redirect without a place", resource(302), 0, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    site.add("/", c.resource);
    const int outcome = client.run(site.url("/"));
    EXPECT_EQ(outcome, c.code == 0 ? mv::kResponseCompleted : mv::kError);
    EXPECT_EQ(client.transfer.ResponseCode(), c.code);
    if (c.info != nullptr) {
      EXPECT_EQ(client.transfer.ResponseInfo(), c.info);
    }
    EXPECT_EQ(client.transfer.ResponseInfo().empty(), c.code == 0);
    EXPECT_EQ(client.body(), c.code == 0 ? c.resource.body : "");
  }
  // The same faults end a file, and what ends a header request is its headers.
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    if (c.code == kBadEncoding) continue;
    site.add("/", c.resource);
    EXPECT_EQ(client.run(site.url("/"), BodyMode::File), c.code == 0 ? mv::kResponseCompleted : mv::kError);
    EXPECT_EQ(client.transfer.ResponseCode(), c.code);
  }
}

TEST_F(TransferTest, NothingToConnectTo) {
  std::string gone;
  {
    const TestSite brief;
    gone = brief.url("/");
  }
  const std::pair<std::string, long> cases[] = {
      {gone, kCannotConnect},
      {"", kBadAddress},
      {"http:///x", kBadAddress},
      {"http://u:p@/x", kBadAddress},
      {"http://127.0.0.1:99999/", kBadAddress},
      {"ftp://127.0.0.1/", kUnsupportedProtocol},
      {"file:///etc/passwd", kBadAddress},
  };
  for (const auto& [url, code] : cases) {
    EXPECT_EQ(client.run(url), mv::kError) << url;
    EXPECT_EQ(client.transfer.ResponseCode(), code) << url;
    EXPECT_FALSE(client.transfer.ResponseInfo().empty()) << url;
  }
  EXPECT_THROW(client.transfer.Execute(site.url("/"), "POST", BodyMode::Text), std::invalid_argument);
}

TEST_F(TransferTest, StatesTellWhatTheConnectionDoes) {
  site.page("/", "x");
  site.add("/closing", faulty(Fault::NoContentLength));
  site.add("/moved", redirect("/"));

  EXPECT_EQ(client.run("http://localhost:" + std::to_string(site.port()) + "/"), mv::kResponseCompleted);
  EXPECT_EQ(client.states, (States{1, 2, 3, 4, 5, 6, 7, 8, 12}));
  client.run("http://localhost:" + std::to_string(site.port()) + "/");
  EXPECT_EQ(client.states, (States{5, 6, 7, 8, 12})) << "the connection is used again";
  client.run("http://localhost:" + std::to_string(site.port()) + "/moved");
  EXPECT_EQ(client.states, (States{5, 6, 7, 8, 5, 6, 7, 8, 12}));
  client.run("http://localhost:" + std::to_string(site.port()) + "/closing");
  EXPECT_EQ(client.states, (States{5, 6, 7, 8, 9, 10, 12}));
  client.run("http://localhost:" + std::to_string(site.port()) + "/none");
  EXPECT_EQ(States(client.states.end() - 5, client.states.end()), (States{5, 6, 7, 8, 11}));
}

TEST_F(TransferTest, RequestsAreWhatServersExpect) {
  site.page("/a%20b?q=%C3%A4", "x");
  EXPECT_EQ(client.run(site.host() + "/a b?q=\xC3\xA4#part"), mv::kResponseCompleted);
  EXPECT_EQ(client.transfer.FinalAddress(), site.url("/a%20b?q=%C3%A4"));
  client.run(site.url("/"), BodyMode::File);
  const auto requests = site.requests();
  ASSERT_EQ(requests.size(), 2U);
  EXPECT_EQ(requests[0].method, "GET");
  EXPECT_EQ(requests[0].headers.at("user-agent"), "Morvane2000/1.0");
  EXPECT_NE(requests[0].headers.at("accept-encoding").find("gzip"), std::string::npos);
  EXPECT_EQ(requests[1].headers.at("accept-encoding"), "identity");
}

TEST_F(TransferTest, HeadersOfTheFinalResponse) {
  site.add("/from", redirect("/to"));
  site.add("/to", resource(200, {{"x-thing", " a "}, {"X-Thing", "b"}}));
  ASSERT_EQ(client.run(site.url("/from")), mv::kResponseCompleted);
  EXPECT_EQ(client.transfer.GetHeader("CONTENT-LENGTH"), "4");
  EXPECT_EQ(client.transfer.GetHeader("Content-Type"), "text/html");
  EXPECT_EQ(client.transfer.GetHeader("X-THING"), "a") << "the last one sent";
  EXPECT_EQ(client.transfer.GetHeader("Location"), "");
}

TEST_F(TransferTest, Redirects) {
  TestSite other;
  other.page("/there", "other");
  for (int i = 0; i < 21; ++i) site.add("/" + std::to_string(i), redirect(std::to_string(i + 1)));
  site.page("/21", "end");
  site.add("/loop", redirect("/loop"));
  site.add("/away", redirect(other.url("/there")));
  site.add("/ftp", redirect("ftp://127.0.0.1/"));
  site.add("/missing", redirect("/none"));

  EXPECT_EQ(client.run(site.url("/1")), mv::kResponseCompleted) << "20 redirects";
  EXPECT_EQ(client.body(), "end");
  EXPECT_EQ(client.transfer.FinalAddress(), site.url("/21"));
  EXPECT_EQ(client.run(site.url("/away")), mv::kResponseCompleted);
  EXPECT_EQ(client.body(), "other");

  const std::pair<const char*, long> failing[] = {
      {"/0", kTooManyRedirects}, {"/loop", kTooManyRedirects}, {"/ftp", kUnsupportedProtocol}, {"/missing", 404}};
  for (const auto& [path, code] : failing) {
    EXPECT_EQ(client.run(site.url(path), BodyMode::HeadersOnly), mv::kError) << path;
    EXPECT_EQ(client.transfer.ResponseCode(), code) << path;
    EXPECT_FALSE(client.transfer.ResponseInfo().empty()) << path;
  }
}

TEST_F(TransferTest, CookiesAreSharedUntilForgotten) {
  site.add("/login", resource(200, {{"Set-Cookie", "session=42; Path=/"}}));
  site.page("/", "x");
  const auto cookieOfNewInstance = [this] {
    Client another;
    another.run(site.url("/"));
    return site.requests().back().headers["cookie"];
  };
  client.run(site.url("/login"));
  EXPECT_EQ(cookieOfNewInstance(), "session=42");
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
  const std::string basic = "Basic " + QByteArray("me:p@ss%41").toBase64().toStdString();
  EXPECT_EQ(client.run(user + "/near"), mv::kResponseCompleted);
  for (auto& request : site.requests()) EXPECT_EQ(request.headers["authorization"], basic) << request.path;
  EXPECT_EQ(client.transfer.FinalAddress(), site.url("/page"));
  EXPECT_EQ(client.run(user + "/"), mv::kResponseCompleted);
  ASSERT_EQ(other.requests().size(), 1U);
  EXPECT_EQ(other.requests()[0].headers.count("authorization"), 0U);
  client.run(site.url("/page"));
  EXPECT_EQ(site.requests().back().headers.count("authorization"), 0U) << "nor to a later request";
}

TEST_F(TransferTest, ChallengesAreAnsweredOnce) {
  site.add("/digest", resource(401, {{"WWW-Authenticate", "Digest realm=\"r\", nonce=\"n1\", qop=\"auth\""}}));
  site.add("/basic", resource(401, {{"WWW-Authenticate", "Basic realm=\"r\""}}));
  for (const auto mode : {BodyMode::Text, BodyMode::HeadersOnly}) {
    EXPECT_EQ(client.run("http://me:secret@" + site.host() + "/digest", mode), mv::kError);
    EXPECT_EQ(client.transfer.ResponseCode(), 401);
    EXPECT_EQ(client.transfer.ResponseInfo(), "Unauthorized");
    EXPECT_TRUE(site.requests().back().headers["authorization"].starts_with("Digest username=\"me\""));
  }
  EXPECT_EQ(site.requestCount("/digest"), 4);
  EXPECT_EQ(client.run("http://me:secret@" + site.host() + "/basic"), mv::kError);
  EXPECT_EQ(site.requestCount("/basic"), 1);
}

TEST_F(TransferTest, PagesArriveAsTextInPiecesOfCharacters) {
  std::string euros;
  for (int i = 0; i < 1024; ++i) euros += "\xE2\x82\xAC";
  site.page("/exact", euros);
  ASSERT_EQ(client.run(site.url("/exact")), mv::kResponseCompleted);
  EXPECT_EQ(client.transfer.GetChunk(1024, ChunkType::Text), euros);
  EXPECT_EQ(client.transfer.GetChunk(1024, ChunkType::Text), "");

  // zlib's format behind the four bytes of length that Qt puts in front
  const std::string plain(100'000, 'z');
  const auto packed = qCompress(QByteArray::fromStdString(plain)).mid(4).toStdString();
  site.add("/packed", resource(200, {{"Content-Encoding", "deflate"}}, packed));
  ASSERT_EQ(client.run(site.url("/packed")), mv::kResponseCompleted);
  EXPECT_EQ(client.body(), plain);
  ASSERT_EQ(client.run(site.url("/packed"), BodyMode::File), mv::kResponseCompleted);
  EXPECT_EQ(client.body(ChunkType::Bytes), packed) << "a file is what was sent";

  auto latin = resource(200, {}, "\xE4");
  latin.type = "text/html; charset=iso-8859-1";
  site.add("/latin", latin);
  ASSERT_EQ(client.run(site.url("/latin")), mv::kResponseCompleted);
  EXPECT_EQ(client.body(), "\xC3\xA4");
}

TEST_F(TransferTest, PagesHaveALimit) {
  InternetTransfer::limits().textLimit = 50'000;
  site.page("/most", std::string(50'000, 'x'));
  site.page("/more", std::string(50'001, 'x'));
  const auto bomb = qCompress(QByteArray(10'000'000, 'x')).mid(4).toStdString();
  site.add("/bomb", resource(200, {{"Content-Encoding", "deflate"}}, bomb));
  EXPECT_EQ(client.run(site.url("/most")), mv::kResponseCompleted);
  for (const auto* path : {"/more", "/bomb"}) {
    EXPECT_EQ(client.run(site.url(path)), mv::kError) << path;
    EXPECT_EQ(client.transfer.ResponseCode(), kTooLong) << path;
    EXPECT_EQ(client.transfer.ResponseInfo(), "The page is longer than 50000 bytes");
  }
}

// ---- header requests

TEST_F(TransferTest, HeldResponseGoesOnWithoutASecondRequest) {
  // Small enough to come with the headers; too large for what the system buffers by itself.
  const std::size_t sizes[] = {0, 1, 1025, 16 * kMegabyte};
  std::uint64_t sent = 0;
  for (const auto size : sizes) {
    SCOPED_TRACE(size);
    const auto bytes = randomBytes(size);
    site.file("/f", "image/jpeg", bytes);
    ASSERT_EQ(client.run(site.url("/f"), BodyMode::HeadersOnly), mv::kResponseCompleted);
    EXPECT_FALSE(client.transfer.StillExecuting());
    EXPECT_EQ(client.transfer.GetHeader("Content-Length"), std::to_string(size));
    EXPECT_EQ(client.transfer.GetChunk(1024, ChunkType::Bytes), "");
    ASSERT_EQ(client.run(site.url("/f"), BodyMode::File), mv::kResponseCompleted);
    EXPECT_EQ(client.states, size == 0 ? (States{8, 12}) : (States{7, 8, 12}));
    EXPECT_TRUE(client.body(ChunkType::Bytes) == bytes);
    EXPECT_EQ(client.transfer.GetHeader("Content-Length"), std::to_string(size));
    sent += size;
    EXPECT_EQ(site.bytesSent(), sent);
  }
  EXPECT_EQ(site.requestCount("/f"), static_cast<int>(std::size(sizes)));

  site.page("/p", "page \xE4");
  client.run(site.url("/p"), BodyMode::HeadersOnly);
  ASSERT_EQ(client.run(site.url("/p"), BodyMode::Text), mv::kResponseCompleted);
  EXPECT_EQ(client.body(), "page \xC3\xA4");
  EXPECT_EQ(site.requestCount("/p"), 1);
}

TEST_F(TransferTest, HeldResponseIsNotReadAhead) {
  constexpr std::size_t kSize = 32 * kMegabyte;
  site.file("/f", "image/jpeg", std::string(kSize, 'x'));
  ASSERT_EQ(client.run(site.url("/f"), BodyMode::HeadersOnly), mv::kResponseCompleted);
  site.page("/", "x");
  Client another;
  ASSERT_EQ(another.run(site.url("/")), mv::kResponseCompleted) << "others are not held up";
  EXPECT_LT(site.bytesSent(), kSize);
}

TEST_F(TransferTest, WhatDropsAHeldResponse) {
  site.file("/f", "image/jpeg", "bytes");
  site.file("/other", "image/jpeg", "other");
  const auto holdThen = [this](const std::function<void()>& drop) {
    const int before = site.requestCount("/f");
    EXPECT_EQ(client.run(site.url("/f"), BodyMode::HeadersOnly), mv::kResponseCompleted);
    drop();
    EXPECT_EQ(client.run(site.url("/f"), BodyMode::File), mv::kResponseCompleted);
    EXPECT_EQ(client.body(ChunkType::Bytes), "bytes");
    return site.requestCount("/f") - before;
  };
  EXPECT_EQ(holdThen([] {}), 1);
  EXPECT_EQ(holdThen([this] { client.run(site.url("/other"), BodyMode::File); }), 2);
  EXPECT_EQ(holdThen([this] { client.run(site.url("/f"), BodyMode::HeadersOnly); }), 2);
  EXPECT_EQ(holdThen([this] { client.transfer.cancel(); }), 2);

  // A page that the server compressed unasked is asked for again, since its bytes are of no use.
  const auto packed = qCompress(QByteArray("page")).mid(4).toStdString();
  site.add("/packed", resource(200, {{"Content-Encoding", "deflate"}}, packed));
  client.run(site.url("/packed"), BodyMode::HeadersOnly);
  ASSERT_EQ(client.run(site.url("/packed"), BodyMode::Text), mv::kResponseCompleted);
  EXPECT_EQ(client.body(), "page");
}

TEST_F(TransferTest, HeldResponseExpires) {
  InternetTransfer::limits().holdMs = 50;
  site.file("/f", "image/jpeg", std::string(20 * kMegabyte, 'x'));
  ASSERT_EQ(client.run(site.url("/f"), BodyMode::HeadersOnly), mv::kResponseCompleted);
  QElapsedTimer timer;
  timer.start();
  waitFor([&] { return timer.elapsed() > 150; });
  EXPECT_EQ(client.transfer.GetHeader("Content-Length"), std::to_string(20 * kMegabyte));
  ASSERT_EQ(client.run(site.url("/f"), BodyMode::File), mv::kResponseCompleted);
  EXPECT_EQ(site.requestCount("/f"), 2);
}

TEST_F(TransferTest, HeadersAreEnoughAndFaultsOfTheBodyComeLater) {
  InternetTransfer::limits().stallTimeoutS = 1;
  const std::tuple<Fault, int, long> cases[] = {{Fault::HeaderOnly, mv::kError, kTimeout},
                                                {Fault::Reset, mv::kError, kReceiveError},
                                                {Fault::ShortBody, mv::kError, kPartialFile},
                                                {Fault::NoContentLength, mv::kResponseCompleted, 0}};
  for (const auto& [fault, outcome, code] : cases) {
    SCOPED_TRACE(static_cast<int>(fault));
    site.add("/f", faulty(fault));
    EXPECT_EQ(client.run(site.url("/f"), BodyMode::HeadersOnly), mv::kResponseCompleted);
    EXPECT_EQ(client.run(site.url("/f"), BodyMode::File), outcome);
    EXPECT_EQ(client.transfer.ResponseCode(), code);
  }
  EXPECT_EQ(client.run(site.url("/none"), BodyMode::HeadersOnly), mv::kError);
  EXPECT_EQ(client.transfer.ResponseCode(), 404);
}

TEST_F(TransferTest, WaitingInAHoldIsNoStall) {
  InternetTransfer::limits().stallTimeoutS = 1;
  site.file("/f", "image/jpeg", std::string(20 * kMegabyte, 'x'));
  ASSERT_EQ(client.run(site.url("/f"), BodyMode::HeadersOnly), mv::kResponseCompleted);
  QElapsedTimer timer;
  timer.start();
  waitFor([&] { return timer.elapsed() > 2200; });
  ASSERT_EQ(client.run(site.url("/f"), BodyMode::File), mv::kResponseCompleted);
  EXPECT_EQ(client.body(ChunkType::Bytes).size(), 20 * kMegabyte);
  EXPECT_EQ(site.requestCount("/f"), 1);
}

// ---- large files

long residentKilobytes() {
  long kilobytes = 0;
  const auto status = mvtest::readFile("/proc/self/status");
  const auto line = status.find("VmRSS:");
  if (line != std::string::npos) std::sscanf(status.c_str() + line, "VmRSS: %ld", &kilobytes);
  return kilobytes;
}

QStringList spoolFiles() {
  return QDir(QStringLiteral("/var/tmp")).entryList({QStringLiteral("morvane2000-*")}, QDir::Files);
}

TEST_F(TransferTest, LargeFilesDoNotFillTheMemory) {
  constexpr std::size_t kSize = 96 * kMegabyte + 1;
  const auto bytes = randomBytes(kMegabyte);
  std::string whole;
  whole.reserve(kSize);
  while (whole.size() + bytes.size() < kSize) whole += bytes;
  whole.resize(kSize, 'e');
  site.file("/f", "video/mpeg", whole);
  const auto spoolFilesBefore = spoolFiles();
  const long before = residentKilobytes();
  ASSERT_GT(before, 0);
  ASSERT_EQ(client.run(site.url("/f"), BodyMode::File), mv::kResponseCompleted);
  EXPECT_LT(residentKilobytes() - before, 32 * 1024);
  EXPECT_EQ(spoolFiles(), spoolFilesBefore) << "the spool file has a name";

  std::size_t at = 0;
  bool same = true;
  for (auto piece = client.transfer.GetChunk(1024, ChunkType::Bytes); !piece.empty();
       piece = client.transfer.GetChunk(1024, ChunkType::Bytes)) {
    same = same && whole.compare(at, piece.size(), piece) == 0;
    at += piece.size();
  }
  EXPECT_TRUE(same);
  EXPECT_EQ(at, kSize);
}

TEST(BodySpool, GoesToDiskPastTheThreshold) {
  for (const std::size_t size : {99U, 100U, 101U, 70'000U}) {
    mv::BodySpool spool(100);
    const auto bytes = randomBytes(size);
    for (std::size_t at = 0; at < size; at += 33) ASSERT_TRUE(spool.append(std::string_view(bytes).substr(at, 33)));
    EXPECT_EQ(spool.onDisk(), size > 100);
    ASSERT_TRUE(spool.rewind());
    std::string read;
    for (auto piece = spool.read(1000); !piece.empty(); piece = spool.read(1000)) read += piece;
    EXPECT_TRUE(read == bytes) << size;
    EXPECT_FALSE(spool.onDisk()) << "given back when read";
  }
}

TEST_F(TransferTest, FullDiskEndsTheTransfer) {
  InternetTransfer::limits().spoolThreshold = 1000;
  site.file("/f", "image/jpeg", std::string(kMegabyte, 'x'));
  rlimit usual{};
  ::getrlimit(RLIMIT_FSIZE, &usual);
  const rlimit small{64 * 1024, usual.rlim_max};
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  ::setrlimit(RLIMIT_FSIZE, &small);
  const int outcome = client.run(site.url("/f"), BodyMode::File);
  ::setrlimit(RLIMIT_FSIZE, &usual);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(outcome, mv::kError);
  EXPECT_EQ(client.transfer.ResponseCode(), kWriteError);
  EXPECT_EQ(client.transfer.ResponseInfo(), "File too large");
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
  EXPECT_EQ(client.run(site.url("/to")), mv::kResponseCompleted);
}

TEST_F(TransferTest, MayStartAgainInItsOwnSignal) {
  site.page("/1", "one");
  site.page("/2", "two");
  for (int at = mv::kRequesting; at <= mv::kReceivingResponse; ++at) {
    bool restarted = false;
    client.onState = [&](int state) {
      if (state != at || restarted) return;
      restarted = true;
      client.begin(site.url("/2"));
    };
    ASSERT_EQ(client.run(site.url("/1")), mv::kResponseCompleted);
    EXPECT_TRUE(restarted);
    EXPECT_EQ(client.body(), "two");
  }
  // As a download does it: the file at the end of its header request, then the next.
  int completed = 0;
  client.onState = [&](int state) {
    QCoreApplication::processEvents();
    if (state != mv::kResponseCompleted) return;
    ++completed;
    if (completed == 1) client.transfer.Execute(site.url("/1"), "Get", BodyMode::File);
    if (completed == 2) client.transfer.Execute(site.url("/2"), "GET", BodyMode::HeadersOnly);
  };
  client.begin(site.url("/1"), BodyMode::HeadersOnly);
  EXPECT_TRUE(waitFor([&] { return completed == 3; }));
}

TEST_F(TransferTest, SurvivesAReceiverThatThrows) {
  site.page("/", "x");
  client.onState = [](int) { throw std::runtime_error("a receiver's own trouble"); };
  EXPECT_EQ(client.run(site.url("/")), mv::kResponseCompleted);
  EXPECT_EQ(client.body(), "x");
}

TEST_F(TransferTest, DroppedRequestsAreSilent) {
  auto slow = resource(200, {}, "slow");
  slow.delayMs = 10'000;
  site.add("/slow", slow);
  site.page("/", "quick");
  client.begin(site.url("/slow"));
  ASSERT_TRUE(waitFor([&] { return site.requestCount("/slow") == 1; }));
  EXPECT_TRUE(client.transfer.StillExecuting());
  EXPECT_EQ(client.run(site.url("/")), mv::kResponseCompleted);
  EXPECT_EQ(client.body(), "quick");

  client.begin(site.url("/"));
  client.transfer.cancel();
  Client another;
  EXPECT_EQ(another.run(site.url("/")), mv::kResponseCompleted);
  EXPECT_TRUE(client.states.empty());
  EXPECT_FALSE(client.transfer.StillExecuting());
}

TEST_F(TransferTest, InstancesWorkSideBySide) {
  constexpr int kInstances = 24;
  std::vector<std::unique_ptr<Client>> clients;
  for (int i = 0; i < kInstances; ++i) {
    auto answer = resource(200, {}, std::string(200'000, static_cast<char>('a' + i)));
    answer.delayMs = i % 3;
    site.add("/" + std::to_string(i), answer);
    clients.push_back(std::make_unique<Client>());
    clients.back()->begin(site.url("/" + std::to_string(i)), i % 2 == 0 ? BodyMode::Text : BodyMode::File);
  }
  for (int i = 0; i < kInstances; ++i) {
    auto& each = *clients[static_cast<std::size_t>(i)];
    ASSERT_TRUE(waitFor([&] { return each.over(); }));
    EXPECT_EQ(each.body(ChunkType::Bytes), std::string(200'000, static_cast<char>('a' + i)));
  }
}

}  // namespace
