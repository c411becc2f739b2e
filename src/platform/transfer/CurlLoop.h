// Runs libcurl on the thread's Qt event loop.
#pragma once

#include <curl/curl.h>

#include <QTimer>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>

#include "base/TimeBudget.h"

namespace mv {

// What the loop tells a running request. Called while libcurl is or has just been at work: an implementation takes note
// and returns; it neither starts nor ends a request here.
class CurlClient {
 public:
  virtual ~CurlClient() = default;
  // The socket that the request used has been closed.
  virtual void socketClosed() = 0;
  // The request is over and its handle is off the loop.
  virtual void finished(CURLcode result) = 0;
};

// One multi handle, with the connections, host names, cookies and TLS sessions that its requests share.
class CurlLoop {
 public:
  // The loop that new requests join; made when first asked for.
  static std::shared_ptr<CurlLoop> current();
  // The next request finds a new loop that remembers nothing; this one ends with its last request.
  static void forgetCurrent();

  ~CurlLoop();
  CurlLoop(const CurlLoop&) = delete;
  CurlLoop& operator=(const CurlLoop&) = delete;

  // Settings of an easy handle that belong to the loop: the shared state and how its sockets are closed.
  void prepare(CURL* easy);
  // See InternetTransfer.
  void addCookie(const std::string& line);
  // Starts the request. `client` lives until finished() or remove().
  void add(CURL* easy, CurlClient* client);
  // The request has got its connection, fresh or used before: the end of that one is told to `client` from now on. The
  // connection is known by its local end, "address port": libcurl does not show the socket of one that is used again.
  void connected(const std::string& localEnd, CurlClient* client);
  // From a request's write callback: what has come in has used up the time budget of this loop iteration.
  bool budgetIsSpent() const { return budget_ != nullptr && budget_->spent(); }
  // From a request's write callback: it reads on in the next iteration of the event loop. Left to itself libcurl reads
  // on while anything is there, of a large body and a near server a hundred buffers, each time that any socket is
  // ready.
  void readOnLater(CURL* easy);
  // Ends it without a word; harmless when it is over.
  void remove(CURL* easy, CurlClient* client);

 private:
  struct Notifiers;

  CurlLoop();
  static int onSocket(CURL*, curl_socket_t socket, int what, void* self, void*);
  static int onTimer(CURLM* multi, long milliseconds, void* self);
  static int onClose(void* self, curl_socket_t socket);
  void watch(curl_socket_t socket, int what);
  void rest(curl_socket_t socket);
  void unwatch(curl_socket_t socket);
  void act(curl_socket_t socket, int events);
  void readOn();
  void reportFinished();
  void finish(CURL* easy, CURLcode result);
  void forgetSocketsOf(const CurlClient* client);

  CURLM* multi_;
  CURLSH* share_;
  QTimer timer_;
  QTimer nextIteration_;
  const TimeBudget* budget_ = nullptr;  // while libcurl is at work
  std::deque<CURL*> waiting_;           // for a later iteration
  std::unordered_map<curl_socket_t, std::unique_ptr<Notifiers>> notifiers_;
  std::unordered_map<std::string, CurlClient*> users_;  // by local end
};

}  // namespace mv
