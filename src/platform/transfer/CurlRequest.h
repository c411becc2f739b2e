// One request of the transfer component, from its address to its body. Internal to the transfer component.
#pragma once

#include <curl/curl.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "BodySpool.h"
#include "CurlLoop.h"
#include "transfer/InternetTransfer.h"
#include "transfer/RequestAddress.h"

namespace mv {

// States are told through `raise`, often from inside libcurl: it takes note and returns. The last one is kError or
// kResponseCompleted, after a header request perhaps twice (once for the headers, once for the body that was resumed).
class CurlRequest : private CurlClient {
 public:
  using Raise = std::function<void(TransferState)>;

  CurlRequest(const std::string& address, BodyMode mode, const InternetTransfer::Limits& limits, Raise raise);
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

  // Before the body comes in: a large one is kept on the file system of this folder.
  void keepFileNear(const std::string& folder);
  bool moveBodyTo(AtomicFile& file) { return file_.moveTo(file); }
  std::string takeText();
  std::string takeChunk(std::size_t size, ChunkType type);
  std::string header(std::string_view name) const;
  std::string responseAddress() const;
  long code() const { return code_; }
  const std::string& info() const { return info_; }

 private:
  static int onResolve(void*, void*, void* self);
  static curl_socket_t onOpen(void* self, curlsocktype purpose, curl_sockaddr* address);
  static int onReady(void* self, char*, char*, int, int);
  static int onDebug(CURL*, curl_infotype type, char*, std::size_t, void* self);
  static std::size_t onHeader(char* data, std::size_t size, std::size_t count, void* self);
  static std::size_t onBody(char* data, std::size_t size, std::size_t count, void* self);

  void socketClosed() override { closed_ = true; }
  void finished(CURLcode result) override;

  void setOptions(const std::string& url);
  void setBodyOptions();
  void setCredentials(const Credentials& credentials);
  void redirectCredentials(std::string_view location);
  void setObservers();

  void takeHeaderLine(std::string_view line);
  void beginResponse(std::string_view statusLine);
  void takeHeaderField(std::string_view line);
  void endOfHeaders();
  bool isFinalResponse() const;
  std::size_t takeBody(std::string_view bytes);
  bool written(bool success);

  void beginHop();
  void raise(TransferState state);
  void raiseDisconnected();
  void conclude(CURLcode result);
  void fail(long code, const std::string& info);

  struct SlistDeleter {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
  };
  using Slist = std::unique_ptr<curl_slist, SlistDeleter>;

  std::string address_;
  BodyMode mode_;
  InternetTransfer::Limits limits_;
  Raise raise_;
  std::shared_ptr<CurlLoop> loop_;
  CURL* easy_ = nullptr;
  bool running_ = false;
  Slist plainHeaders_;
  Slist basicHeaders_;
  std::string credentialsHost_;  // of the credentials, "" without any
  char errorBuffer_[CURL_ERROR_SIZE] = {};

  int lastState_ = 0;    // of this hop
  bool closed_ = false;  // this hop's connection
  bool held_ = false;    // the headers have been told, the body not asked for yet
  bool paused_ = false;
  bool released_ = false;
  CURLcode heldResult_ = CURLE_OK;

  long status_ = 0;
  std::string reason_;
  bool inHeaders_ = false;
  std::size_t headerBytes_ = 0;
  std::vector<std::pair<std::string, std::string>> headers_;  // names in lower case

  std::string text_;
  std::size_t textAt_ = 0;
  std::size_t textChecked_ = 0;  // UTF-8 up to here
  BodySpool file_;
  std::size_t errorBodyBytes_ = 0;
  std::string ownError_;  // why this class ended the transfer
  long ownErrorCode_ = 0;

  long code_ = 0;
  std::string info_;
};

}  // namespace mv
