#include "CurlLoop.h"

#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <algorithm>
#include <limits>
#include <new>

namespace mv {

namespace {

constexpr long kIdleConnections = 32;

std::shared_ptr<CurlLoop>& currentLoop() {
  static std::shared_ptr<CurlLoop> loop;
  return loop;
}

// Sockets and timers must be gone before the application object is.
void endWithApplication() { CurlLoop::forgetCurrent(); }

// "address port" of this side of a connection; "" when there is none.
std::string localEndOf(curl_socket_t socket) {
  sockaddr_storage end{};
  socklen_t size = sizeof end;
  auto* plain = reinterpret_cast<sockaddr*>(&end);
  char address[NI_MAXHOST];
  char port[NI_MAXSERV];
  if (::getsockname(socket, plain, &size) != 0 ||
      ::getnameinfo(plain, size, address, sizeof address, port, sizeof port, NI_NUMERICHOST | NI_NUMERICSERV) != 0) {
    return {};
  }
  return std::string(address) + " " + port;
}

}  // namespace

struct CurlLoop::Notifiers {
  std::unique_ptr<QSocketNotifier> read;
  std::unique_ptr<QSocketNotifier> write;

  // A notifier may be on the stack of its own signal.
  ~Notifiers() {
    for (auto* notifier : {read.release(), write.release()}) {
      if (notifier == nullptr) continue;
      notifier->setEnabled(false);
      notifier->deleteLater();
    }
  }
};

std::shared_ptr<CurlLoop> CurlLoop::current() {
  auto& loop = currentLoop();
  if (!loop) {
    loop.reset(new CurlLoop);
    qRemovePostRoutine(endWithApplication);
    qAddPostRoutine(endWithApplication);
  }
  return loop;
}

void CurlLoop::forgetCurrent() { currentLoop().reset(); }

CurlLoop::CurlLoop() {
  static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
  multi_ = curl_multi_init();
  share_ = curl_share_init();
  if (initialised != CURLE_OK || multi_ == nullptr || share_ == nullptr) throw std::bad_alloc();
  // Connections and host names belong to the multi handle anyway. All runs on one thread: no locks.
  for (const auto data : {CURL_LOCK_DATA_COOKIE, CURL_LOCK_DATA_SSL_SESSION, CURL_LOCK_DATA_PSL})
    curl_share_setopt(share_, CURLSHOPT_SHARE, data);
  curl_multi_setopt(multi_, CURLMOPT_SOCKETFUNCTION, &CurlLoop::onSocket);
  curl_multi_setopt(multi_, CURLMOPT_SOCKETDATA, this);
  curl_multi_setopt(multi_, CURLMOPT_TIMERFUNCTION, &CurlLoop::onTimer);
  curl_multi_setopt(multi_, CURLMOPT_TIMERDATA, this);
  curl_multi_setopt(multi_, CURLMOPT_MAXCONNECTS, kIdleConnections);
  // A held response must not stand in the way of another request: each has a connection to itself.
  curl_multi_setopt(multi_, CURLMOPT_PIPELINING, static_cast<long>(CURLPIPE_NOTHING));
  timer_.setSingleShot(true);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { act(CURL_SOCKET_TIMEOUT, 0); });
  nextIteration_.setSingleShot(true);
  QObject::connect(&nextIteration_, &QTimer::timeout, &nextIteration_, [this] { readOn(); });
}

CurlLoop::~CurlLoop() {
  curl_multi_cleanup(multi_);
  curl_share_cleanup(share_);
}

void CurlLoop::prepare(CURL* easy) {
  curl_easy_setopt(easy, CURLOPT_SHARE, share_);
  // Idle connections outlive the request that opened them, so their end is told to the loop, not to the request.
  curl_easy_setopt(easy, CURLOPT_CLOSESOCKETFUNCTION, &CurlLoop::onClose);
  curl_easy_setopt(easy, CURLOPT_CLOSESOCKETDATA, this);
}

void CurlLoop::addCookie(const std::string& line) {
  const std::unique_ptr<CURL, void (*)(CURL*)> easy(curl_easy_init(), &curl_easy_cleanup);
  if (!easy) throw std::bad_alloc();
  curl_easy_setopt(easy.get(), CURLOPT_SHARE, share_);
  curl_easy_setopt(easy.get(), CURLOPT_COOKIELIST, line.c_str());
}

void CurlLoop::add(CURL* easy, CurlClient* client) {
  curl_easy_setopt(easy, CURLOPT_PRIVATE, client);
  curl_multi_add_handle(multi_, easy);
}

void CurlLoop::connected(const std::string& localEnd, CurlClient* client) { users_[localEnd] = client; }

void CurlLoop::readOnLater(CURL* easy) {
  curl_easy_pause(easy, CURLPAUSE_RECV);
  // What libcurl had read already it hands over in pieces, in spite of the pause.
  if (std::find(waiting_.begin(), waiting_.end(), easy) == waiting_.end()) waiting_.push_back(easy);
  nextIteration_.start(0);
}

void CurlLoop::remove(CURL* easy, CurlClient* client) {
  std::erase(waiting_, easy);
  forgetSocketsOf(client);
  curl_multi_remove_handle(multi_, easy);
}

int CurlLoop::onSocket(CURL*, curl_socket_t socket, int what, void* self, void*) {
  auto* loop = static_cast<CurlLoop*>(self);
  try {
    if (what == CURL_POLL_REMOVE) {
      loop->rest(socket);
    } else {
      loop->watch(socket, what);
    }
  } catch (const std::exception&) {
    // No memory for a notifier: a socket that nobody listens to ends its request by the time-outs. An error told here
    // would end all requests.
  }
  return 0;
}

int CurlLoop::onTimer(CURLM*, long milliseconds, void* self) {
  auto& timer = static_cast<CurlLoop*>(self)->timer_;
  if (milliseconds < 0) {
    timer.stop();
  } else {
    timer.start(static_cast<int>(std::min<long>(milliseconds, std::numeric_limits<int>::max())));
  }
  return 0;
}

int CurlLoop::onClose(void* self, curl_socket_t socket) {
  auto* loop = static_cast<CurlLoop*>(self);
  loop->unwatch(socket);
  try {
    if (const auto user = loop->users_.extract(localEndOf(socket))) user.mapped()->socketClosed();
  } catch (const std::exception&) {
    // No memory: nobody is told, and the states of a request lack the one that says so.
  }
  return ::close(socket);
}

void CurlLoop::watch(curl_socket_t socket, int what) {
  auto& notifiers = notifiers_[socket];
  if (!notifiers) {
    auto fresh = std::make_unique<Notifiers>();
    fresh->read = std::make_unique<QSocketNotifier>(socket, QSocketNotifier::Read);
    fresh->write = std::make_unique<QSocketNotifier>(socket, QSocketNotifier::Write);
    QObject::connect(fresh->read.get(), &QSocketNotifier::activated, &timer_,
                     [this, socket] { act(socket, CURL_CSELECT_IN); });
    QObject::connect(fresh->write.get(), &QSocketNotifier::activated, &timer_,
                     [this, socket] { act(socket, CURL_CSELECT_OUT); });
    notifiers = std::move(fresh);
  }
  notifiers->read->setEnabled((what & CURL_POLL_IN) != 0);
  notifiers->write->setEnabled((what & CURL_POLL_OUT) != 0);
}

// Until the connection's next request, or its end.
void CurlLoop::rest(curl_socket_t socket) {
  const auto found = notifiers_.find(socket);
  if (found == notifiers_.end()) return;
  found->second->read->setEnabled(false);
  found->second->write->setEnabled(false);
}

void CurlLoop::unwatch(curl_socket_t socket) { notifiers_.erase(socket); }

void CurlLoop::act(curl_socket_t socket, int events) {
  const TimeBudget budget;
  budget_ = &budget;
  int running = 0;
  curl_multi_socket_action(multi_, socket, events, &running);
  budget_ = nullptr;
  reportFinished();
}

// One after the other while there is time, so that each gets a whole slice now and then.
void CurlLoop::readOn() {
  const TimeBudget budget;
  budget_ = &budget;
  while (!waiting_.empty() && !budget.spent()) {
    CURL* easy = waiting_.front();
    waiting_.pop_front();
    int running = 0;
    // What libcurl had read already comes first; the rest of what is there at its next timeout, which is now.
    const CURLcode result = curl_easy_pause(easy, CURLPAUSE_CONT);
    if (result != CURLE_OK) finish(easy, result);
    curl_multi_socket_action(multi_, CURL_SOCKET_TIMEOUT, 0, &running);
    reportFinished();
  }
  budget_ = nullptr;
  if (!waiting_.empty()) nextIteration_.start(0);
}

void CurlLoop::reportFinished() {
  int left = 0;
  while (const CURLMsg* message = curl_multi_info_read(multi_, &left)) {
    if (message->msg == CURLMSG_DONE) finish(message->easy_handle, message->data.result);
  }
}

void CurlLoop::finish(CURL* easy, CURLcode result) {
  char* client = nullptr;
  curl_easy_getinfo(easy, CURLINFO_PRIVATE, &client);
  auto* told = reinterpret_cast<CurlClient*>(client);
  remove(easy, told);
  told->finished(result);
}

void CurlLoop::forgetSocketsOf(const CurlClient* client) {
  std::erase_if(users_, [client](const auto& user) { return user.second == client; });
}

}  // namespace mv
