// One request of the transfer component, from its address to its body.
#pragma once

#include <curl/curl.h>

#include <memory>
#include <string>
#include <string_view>

#include "Authorization.h"
#include "CurlLoop.h"
#include "ResponseBody.h"
#include "ResponseHead.h"
#include "StateReporter.h"
#include "transfer/TransferTypes.h"

namespace mv {

// States are told through `raise`, often from inside libcurl: it takes note and returns. The last one is kError or
// kResponseCompleted, after a header request perhaps twice (once for the headers, once for the body that was resumed).
class CurlRequest : private CurlClient {
 public:
  CurlRequest(const std::string& address, BodyMode mode, const TransferLimits& limits, StateReporter::Raise raise);
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
  static int onResolve(void*, void*, void* self);
  static curl_socket_t onOpen(void* self, curlsocktype purpose, curl_sockaddr* address);
  static int onReady(void* self, char*, char*, int, int);
  static int onDebug(CURL*, curl_infotype type, char*, std::size_t, void* self);
  static std::size_t onHeader(char* data, std::size_t size, std::size_t count, void* self);
  static std::size_t onBody(char* data, std::size_t size, std::size_t count, void* self);

  void socketClosed() override { states_.noteClosed(); }
  void finished(CURLcode result) override;

  void setOptions(const std::string& url);
  void setLimits();
  void setBodyOptions();
  void setObservers();

  void endOfHead();
  std::size_t takeBody(std::string_view bytes);
  void conclude(CURLcode result);
  void fail(long code, const std::string& info);

  struct EasyDeleter {
    void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
  };

  std::string address_;
  BodyMode mode_;
  TransferLimits limits_;
  StateReporter states_;
  std::shared_ptr<CurlLoop> loop_;
  std::unique_ptr<CURL, EasyDeleter> easy_;
  Authorization authorization_;
  char errorBuffer_[CURL_ERROR_SIZE] = {};

  bool running_ = false;
  bool held_ = false;  // the headers have been told, the body not asked for yet
  bool paused_ = false;
  bool released_ = false;
  CURLcode heldResult_ = CURLE_OK;

  ResponseHead head_;
  std::size_t headBytes_ = 0;  // of all responses
  ResponseBody body_;
  std::size_t errorBodyBytes_ = 0;

  long code_ = 0;
  std::string info_;
};

}  // namespace mv
