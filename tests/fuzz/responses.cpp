// What servers answer: up to four answers, byte for byte, one for each request of one transfer. All hosts are the
// loopback server, as a proxy: whatever a redirect names, no name is looked up and nothing leaves this machine.
#include <QByteArrayView>
#include <QCoreApplication>
#include <algorithm>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "Fuzz.h"
#include "testkit/EventLoop.h"
#include "testkit/LoopbackServer.h"
#include "transfer/InternetTransfer.h"

namespace {

constexpr int kSucceeded = 12;
constexpr int kFailed = 11;
constexpr std::string_view kOwnRequest = "GET http://own.example/";  // host names know no letter case
constexpr std::string_view kPassword = "hunter2";
constexpr std::string_view kAuthorization = "uthorization: Basic";

// Answers with what the input says.
class Servers {
 public:
  Servers() : server_([this](std::string_view request, mvtest::Reply& reply) { answer(request, reply); }) {
    const std::string proxy = "http://127.0.0.1:" + std::to_string(server_.port());
    ::setenv("http_proxy", proxy.c_str(), 1);
    ::setenv("https_proxy", proxy.c_str(), 1);
    thread_ = std::thread([this] { server_.run(); });
  }
  ~Servers() {
    server_.stop();
    thread_.join();
  }
  Servers(const Servers&) = delete;
  Servers& operator=(const Servers&) = delete;

  // Before a transfer begins.
  void setAnswers(std::vector<std::string> answers) {
    answers_ = std::move(answers);
    next_ = 0;
    leaked_ = false;
  }
  bool leaked() const { return leaked_; }

 private:
  void answer(std::string_view request, mvtest::Reply& reply) {
    const QByteArrayView begin(request.data(), static_cast<qsizetype>(std::min(request.size(), kOwnRequest.size())));
    const bool isToOwnHost = begin.compare(kOwnRequest, Qt::CaseInsensitive) == 0;
    if (request.find(kAuthorization) != std::string_view::npos && !isToOwnHost) leaked_ = true;
    if (next_ < answers_.size()) reply.text = answers_[next_++];
    reply.after = mvtest::AfterReply::Close;
  }

  mvtest::LoopbackServer server_;
  std::vector<std::string> answers_;
  std::size_t next_ = 0;
  bool leaked_ = false;
  std::thread thread_;
};

mv::BodyMode modeOf(char first) {
  switch (first) {
    case 'f':
      return mv::BodyMode::File;
    case 'h':
      return mv::BodyMode::HeadersOnly;
    default:
      return mv::BodyMode::Text;
  }
}

// What may hold a user name: a path that a server leads to may spell any word.
std::string authorityOf(const std::string& address) {
  const std::size_t begin = address.find("://") + 3;
  return address.empty() ? "" : address.substr(begin, address.find('/', begin) - begin);
}

void checkOutcome(mv::InternetTransfer& transfer, int state, mv::BodyMode mode) {
  using mvfuzz::require;
  require(state == kSucceeded || state == kFailed, "a transfer ends");
  require((state == kFailed) == (transfer.ResponseCode() != 0), "a failure has its number");
  require(transfer.ResponseInfo().find(kPassword) == std::string::npos, "no password in an error");
  require(authorityOf(transfer.ResponseAddress()).find('@') == std::string::npos,
          "no password in the address that answered");
  if (mode == mv::BodyMode::Text) require(mvfuzz::isUtf8(transfer.TakeText()), "a text is UTF-8");
}

}  // namespace

void mvfuzz::fuzzOne(std::string_view input) {
  if (input.find(kPassword) != std::string_view::npos) return;  // a server that spells it by itself tells no secret
  static int argc = 1;
  static char name[] = "responses";
  static char* argv[] = {name, nullptr};
  static const QCoreApplication application(argc, argv);
  static Servers servers;

  const mv::BodyMode mode = modeOf(input.empty() ? 't' : input.front());
  if (!input.empty()) input.remove_prefix(1);
  std::vector<std::string> answers(4);
  for (std::string& answer : answers) answer = takePart(input);
  servers.setAnswers(std::move(answers));

  int state = 0;
  mv::InternetTransfer transfer;
  QObject::connect(&transfer, &mv::InternetTransfer::StateChanged, [&state](int, int now) { state = now; });
  transfer.Execute("http://user:" + std::string(kPassword) + "@own.example/start", "GET", mode);
  mvtest::waitFor([&state] { return state == kSucceeded || state == kFailed; });
  checkOutcome(transfer, state, mode);
  require(!servers.leaked(), "credentials go to their own host only");
  transfer.cancel();
  mv::InternetTransfer::forgetSharedState();
}
