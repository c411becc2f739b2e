// One request of the transfer component, from its address to its body.
#pragma once

#include <curl/curl.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "Authorization.h"
#include "CurlLoop.h"
#include "ResponseBody.h"
#include "ResponseHead.h"
#include "SlowWatch.h"
#include "StateReporter.h"
#include "transfer/RequestAddress.h"
#include "transfer/TransferTypes.h"

namespace mv {

// What it sends goes to hosts that are known for https by https, on a redirect too; with a host that is only said to
// speak it, the request begins again by http when it does not.
//
// States are told through `raise`, often from inside libcurl: it takes note and returns. The last one is kError or
// kResponseCompleted, after a header request perhaps twice (once for the headers, once for the body that was resumed).
class CurlRequest : private CurlClient {
 public:
  struct Order {
    std::string address;
    BodyMode mode;
    TransferLimits limits;
    std::int64_t site;  // whose login it carries; 0: none's
  };
  CurlRequest(const Order& order, StateReporter::Raise raise);
  ~CurlRequest() override;
  CurlRequest(const CurlRequest&) = delete;
  CurlRequest& operator=(const CurlRequest&) = delete;

  void start();

  // A completed header request whose body can still be had.
  bool canResume() const { return held_ && !released_; }
  // Stops reading from the connection until resume(); only after a completed header request.
  void hold();
  // Goes on with the body, as a file.
  void resume();
  // Gives the connection of a held response up; what has been received stays readable.
  void release();

  // See ResponseBody.
  ResponseBody& body() { return body_; }
  // The last value of the final response's header field, name without regard to case; "" when there is none.
  std::string header(const std::string& name) const { return head_.field(name.c_str()); }
  // Where the last answer came from, without user information; "" before an answer.
  std::string responseAddress() const;
  // After kError, see InternetTransfer.
  long code() const { return code_; }
  const std::string& info() const { return info_; }

 private:
  template <class Answer, class Work>
  static Answer guarded(void* self, Answer failure, const Work& work);
  static int onResolve(void*, void*, void* self);
  static curl_socket_t onOpen(void* self, curlsocktype purpose, curl_sockaddr* address);
  static int onReady(void* self, char*, char*, int, int);
  static int onDebug(CURL*, curl_infotype type, char*, std::size_t, void* self);
  static std::size_t onHeader(char* data, std::size_t size, std::size_t count, void* self);
  static std::size_t onBody(char* data, std::size_t size, std::size_t count, void* self);

  void socketClosed() override { states_.noteClosed(); }
  void finished(CURLcode result) override;
  void begin();
  bool beginAgain(CURLcode result);
  void giveUp();

  void setOptions();
  void setLimits();
  void setBodyOptions();
  void setObservers();

  std::string hopAddress() const;
  bool takeHeader(std::string_view line);
  bool endOfHead();
  bool follow(const std::string& hop);
  std::size_t takeBody(std::string_view bytes);
  std::size_t takePieces(std::string_view bytes);
  void callbackFailed(const char* why) noexcept;
  void conclude(CURLcode result);
  void failByTransport(CURLcode result);
  void fail(long code, const std::string& info);

  struct EasyDeleter {
    void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
  };

  std::string address_;
  BodyMode mode_;
  TransferLimits limits_;
  std::int64_t site_;
  StateReporter states_;
  SlowWatch slow_;
  std::shared_ptr<CurlLoop> loop_;
  std::unique_ptr<CURL, EasyDeleter> easy_;
  Authorization authorization_;
  char errorBuffer_[CURL_ERROR_SIZE] = {};

  RequestAddress target_;   // where the request has begun
  RequestAddress next_;     // where it is to begin again, "" for nowhere
  bool httpMayDo_ = false;  // the target says http, and https is a try
  int redirects_ = 0;

  bool running_ = false;
  bool held_ = false;  // the headers have been told, the body not asked for yet
  bool paused_ = false;
  std::size_t taken_ = 0;  // bytes of what libcurl is going to hand over once more
  bool released_ = false;
  CURLcode heldResult_ = CURLE_OK;

  ResponseHead head_;
  std::size_t headBytes_ = 0;  // of all responses
  ResponseBody body_;
  std::size_t errorBodyBytes_ = 0;
  std::string flaw_;                      // of the answer's head
  std::array<char, 200> exception_ = {};  // which a callback has ended with

  long code_ = 0;
  std::string info_;
};

}  // namespace mv
