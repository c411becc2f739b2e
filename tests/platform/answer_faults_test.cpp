// Answers that are not what they seem, by servers that are broken or mean ill.

#include <curl/curl.h>

#include <QByteArray>
#include <cstdlib>
#include <limits>
#include <mutex>
#include <new>
#include <thread>

#include "RefusedMemory.h"
#include "TransferClient.h"
#include "testkit/LoopbackServer.h"
#include "testkit/TestSite.h"

std::atomic<std::size_t> mvtest::refusedFrom = mvtest::kNothingRefused;

using mvtest::refusedFrom;

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return size < refusedFrom ? std::malloc(size) : nullptr;
}
void* operator new(std::size_t size) {
  void* block = ::operator new(size, std::nothrow);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace {

using namespace mvtest;
using mv::BodyMode;
using mv::InternetTransfer;

constexpr std::size_t kMegabyte = std::size_t{1} << 20;

// Answers every request with the same bytes and closes the connection.
class RawSite {
 public:
  RawSite() : thread_([this] { server_.run(); }) { ::setenv("no_proxy", "127.0.0.1,localhost", 1); }
  ~RawSite() {
    server_.stop();
    thread_.join();
  }
  RawSite(const RawSite&) = delete;
  RawSite& operator=(const RawSite&) = delete;

  std::string answering(std::string bytes) {
    const std::lock_guard lock(mutex_);
    bytes_ = std::move(bytes);
    return "http://127.0.0.1:" + std::to_string(server_.port()) + "/";
  }

 private:
  std::mutex mutex_;
  std::string bytes_;
  LoopbackServer server_{[this](std::string_view, Reply& reply) {
    const std::lock_guard lock(mutex_);
    reply.text = bytes_;
    reply.after = AfterReply::Close;
  }};
  std::thread thread_;
};

class AnswerFaults : public ::testing::Test {
 protected:
  AnswerFaults() { InternetTransfer::forgetSharedState(); }
  ~AnswerFaults() override {
    refusedFrom = mvtest::kNothingRefused;
    InternetTransfer::limits() = {};
  }

  // "" when the body came, else what was said.
  std::string outcome(const std::string& answer, BodyMode mode) {
    client.transfer.cancel();  // a response that is held
    const bool came = client.run(raw.answering(answer), mode) == mv::kResponseCompleted;
    return came ? "" : client.transfer.ResponseInfo();
  }

  RawSite raw;
  TransferClient client;
};

TEST_F(AnswerFaults, WhatIsNotTheFileAndWhatIsNotThePage) {
  const std::string ok = "HTTP/1.1 200 OK\r\n";
  const std::string four = "Content-Length: 4\r\n";
  const std::string cut = "The answer ends within its header";
  const struct {
    const char* what;
    std::string answer;
    std::string file;  // what is said, "" when it is taken
    std::string page;
  } cases[] = {
      {"whole", ok + four + "\r\nbody", "", ""},
      {"cut behind the status line", ok, cut, cut},
      {"cut within a field", ok + four + "Content-Ty", cut, cut},
      {"cut before the empty line", ok + four, cut, cut},
      {"interim answer only", "HTTP/1.1 100 Continue\r\n\r\n", "Empty reply from server", "Empty reply from server"},
      {"two lengths", ok + four + "Content-Length: 5\r\n\r\nbodys", "The server announces two different lengths",
       "The server announces two different lengths"},
      {"the same length twice", ok + four + four + "\r\nbody", "", ""},
      {"a part", "HTTP/1.1 206 Partial Content\r\n" + four + "\r\nbody",
       "The server sends a part only, which was not asked for",
       "The server sends a part only, which was not asked for"},
      {"300", "HTTP/1.1 300 Choices\r\n" + four + "\r\nbody", "The server redirects (300) without saying where to", ""},
      {"301", "HTTP/1.1 301 Moved\r\n" + four + "\r\nbody", "The server redirects (301) without saying where to", ""},
      {"more than announced", ok + four + "Transfer-Encoding: chunked\r\n\r\n8\r\nbodybody\r\n0\r\n\r\n",
       "The server sends more than the 4 bytes that it announced", ""},
      {"a long line", ok + "X: " + std::string(10 * kMegabyte, 'x') + "\r\n\r\n",
       "The header of the answer is too long", "The header of the answer is too long"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(outcome(c.answer, BodyMode::File), c.file);
    EXPECT_EQ(outcome(c.answer, BodyMode::Text), c.page);
    if (std::string(c.what) != "more than announced") {
      EXPECT_EQ(outcome(c.answer, BodyMode::HeadersOnly), c.file);
    }
  }
  std::string fields = ok;
  for (std::size_t i = 0; fields.size() < 2 * kMegabyte; ++i) fields += "X-" + std::to_string(i) + ": y\r\n";
  EXPECT_EQ(outcome(fields + "\r\n", BodyMode::Text), "The header of the answer is too long");
}

TEST_F(AnswerFaults, ThousandsOfFieldsHoldNobodyUp) {
  for (const std::string field : {"Content-Length: 4\r\n", "Location: /\r\n", "WWW-Authenticate: x\r\n"}) {
    std::string answer = field.starts_with("C") ? "HTTP/1.1 200 OK\r\n" : "HTTP/1.1 401 Who\r\n";
    while (answer.size() < 250'000) answer += field;
    const LoopMeter turn;
    outcome(answer + "\r\nbody", BodyMode::File);
    EXPECT_LT(turn.longest, 100) << field;
  }
}

TEST_F(AnswerFaults, ABodyEndsAtTheFirstByteTooMuch) {
  std::string answer = "HTTP/1.1 200 OK\r\nContent-Length: 10\r\nTransfer-Encoding: chunked\r\n\r\n";
  for (int i = 0; i < 64; ++i) answer += "100000\r\n" + std::string(kMegabyte, 'x') + "\r\n";
  InternetTransfer::limits().spoolThreshold = 1000;
  ASSERT_EQ(client.run(raw.answering(answer), BodyMode::HeadersOnly), mv::kResponseCompleted);
  EXPECT_EQ(client.run(raw.answering(answer), BodyMode::File), mv::kError);
  EXPECT_EQ(client.transfer.ResponseInfo(), "The server sends more than the 10 bytes that it announced");
  EXPECT_EQ(client.transfer.GetChunk(1, mv::ChunkType::Bytes), "");
}

TEST_F(AnswerFaults, WhatAServerSaysIsOnePlainLine) {
  const auto said = [this](const std::string& reason) {
    return outcome("HTTP/1.1 404 " + reason + "\r\nContent-Length: 0\r\n\r\n", BodyMode::Text);
  };
  EXPECT_EQ(said("No\x1B[2J\x07t \xE2\x80\xAE here\xC2\x9B"), "No [2J t  here");
  EXPECT_EQ(said("\x01\xE2\x80\xA8"), "Not Found") << "nothing is left of it";
  EXPECT_EQ(said("\xE4"), "\xC3\xA4");
  EXPECT_LE(said(std::string(5000, 'x')).size(), 300U);
}

TEST_F(AnswerFaults, ACutCompressedPageIsNoPage) {
  const std::string plain(100'000, 'z');
  const std::string zlib = qCompress(QByteArray::fromStdString(plain)).mid(4).toStdString();
  const std::string raw64 = zlib.substr(2, zlib.size() - 6);  // without zlib's head and checksum
  // gzip's head around the same.
  const std::string gzipHead("\x1F\x8B\x08\0\0\0\0\0\0\x03", 10);
  const auto answer = [](const std::string& encoding, const std::string& body) {
    return "HTTP/1.1 200 OK\r\nContent-Encoding: " + encoding + "\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\n\r\n" + body;
  };
  const std::string cut = "The page ends within its compressed data";
  const std::tuple<std::string, std::string, std::string> cases[] = {
      {"deflate", zlib, ""},
      {"deflate", raw64, ""},
      {"identity", plain, ""},
      {"deflate", zlib.substr(0, zlib.size() / 2), cut},
      {"deflate", zlib.substr(0, zlib.size() - 1), cut},
      {"gzip", gzipHead + raw64.substr(0, raw64.size() / 2), cut},
      {"gzip", gzipHead + raw64, cut},
      {"br", "x", "The page is compressed in a way that was not asked for"},
  };
  for (const auto& [encoding, body, said] : cases) {
    EXPECT_EQ(outcome(answer(encoding, body), BodyMode::Text), said) << encoding << body.size();
    if (said.empty()) {
      EXPECT_EQ(client.transfer.TakeText(), plain);
    }
  }
  EXPECT_EQ(outcome(answer("gzip", ""), BodyMode::Text), "") << "an empty page";

  // What stands behind the end means nothing, and might go on for ever.
  InternetTransfer::limits().textLimit = 150'000;
  EXPECT_EQ(outcome(answer("deflate", zlib + std::string(10'000, '\0')), BodyMode::Text), "");
  EXPECT_EQ(outcome(answer("deflate", zlib + std::string(200'000, '\0')), BodyMode::Text),
            "The page is longer than 150000 bytes");
}

TEST_F(AnswerFaults, ServersThatTrickleAreGivenUp) {
  TestSite site;
  auto& limits = InternetTransfer::limits();
  limits.slowSpanMs = 1000;
  site.add("/silent", {.body = std::string(2000, 'x'), .fault = Fault::HeaderOnly});
  site.add("/late", {.body = "x", .delayMs = 5000});
  for (const char* path : {"/silent", "/late"}) {
    EXPECT_EQ(client.run(site.url(path)), mv::kError) << path;
    EXPECT_EQ(client.transfer.ResponseInfo(), "The server has sent less than 100 bytes a second over 1 seconds");
    EXPECT_EQ(client.transfer.ResponseCode(), CURLE_OPERATION_TIMEDOUT);
  }
  // A response that is held does not count.
  limits.slowSpanMs = 300;
  site.file("/f", "image/jpeg", std::string(20 * kMegabyte, 'x'));
  ASSERT_EQ(client.run(site.url("/f"), BodyMode::HeadersOnly), mv::kResponseCompleted);
  waitFor([] { return false; }, 700);
  EXPECT_EQ(client.run(site.url("/f"), BodyMode::File), mv::kResponseCompleted);
}

TEST_F(AnswerFaults, ARequestWithoutMemoryEndsAlone) {
  TestSite site;
  site.page("/long", std::string(40 * kMegabyte, 'x'));
  site.page("/short", "short");
  // A page whose length is announced needs little more than that.
  refusedFrom = 45 * kMegabyte;
  EXPECT_EQ(client.run(site.url("/long")), mv::kResponseCompleted);
  EXPECT_EQ(client.transfer.TakeText().size(), 40 * kMegabyte);
  refusedFrom = 10 * kMegabyte;
  EXPECT_EQ(client.run(site.url("/long")), mv::kError);
  EXPECT_EQ(client.transfer.ResponseInfo(), "Out of memory");
  EXPECT_EQ(client.run(site.url("/short")), mv::kResponseCompleted);
}

}  // namespace
