#include "transfer/InternetTransfer.h"

#include <curl/curl.h>

#include <QPointer>
#include <QTimer>
#include <QtGlobal>
#include <algorithm>
#include <deque>
#include <exception>
#include <limits>
#include <stdexcept>

#include "CredentialMemory.h"
#include "CurlLoop.h"
#include "CurlRequest.h"
#include "base/Text.h"
#include "transfer/HttpsHosts.h"

namespace mv {

// Between a request, which tells its states from inside libcurl, and the receivers, which may do anything on hearing of
// one: states are queued and emitted from a later event, with nothing of libcurl on the stack.
class InternetTransfer::Private {
 public:
  Private(InternetTransfer* owner, int instanceIndex) : q(owner), index(instanceIndex) {
    holdTimer.setSingleShot(true);
    QObject::connect(&holdTimer, &QTimer::timeout, q, [this] { request->release(); });
  }

  void start(const std::string& url, BodyMode mode);
  bool resume(const std::string& url);
  void drop();
  void enqueue(TransferState state);

  InternetTransfer* q;
  int index;
  std::size_t textLimit = std::numeric_limits<std::size_t>::max();
  std::int64_t site = 0;
  std::string address;
  std::string targetFolder;
  std::unique_ptr<CurlRequest> request;
  bool executing = false;
  bool completed = false;

 private:
  void postDelivery();
  void deliver();
  void deliverNext();
  void settle(TransferState state);

  std::deque<TransferState> states;
  bool posted = false;
  bool holding = false;
  QTimer holdTimer;
  int holdMs = 0;
};

void InternetTransfer::Private::start(const std::string& url, BodyMode mode) {
  drop();
  address = url;
  Limits its = limits();
  its.textLimit = std::min(its.textLimit, textLimit);
  holdMs = its.holdMs;
  executing = true;
  completed = false;
  request = std::make_unique<CurlRequest>(CurlRequest::Order{url, mode, its, site},
                                          [this](TransferState state) { enqueue(state); });
  holding = mode == BodyMode::HeadersOnly;
  request->body().keepFileNear(targetFolder);
  request->start();
}

bool InternetTransfer::Private::resume(const std::string& url) {
  if (executing || !completed || url != address || !request || !request->canResume()) return false;
  holdTimer.stop();
  holding = false;
  executing = true;
  completed = false;
  request->body().keepFileNear(targetFolder);
  request->resume();
  return true;
}

void InternetTransfer::Private::drop() {
  holdTimer.stop();
  request.reset();
  states.clear();
  executing = false;
  completed = false;
}

void InternetTransfer::Private::enqueue(TransferState state) {
  states.push_back(state);
  postDelivery();
}

void InternetTransfer::Private::postDelivery() {
  if (posted) return;
  posted = true;
  QMetaObject::invokeMethod(
      q, [this] { deliver(); }, Qt::QueuedConnection);
}

void InternetTransfer::Private::deliver() {
  posted = false;
  const QPointer<InternetTransfer> alive(q);
  const CurlRequest* const told = request.get();
  // The object dies with its receiver's slot, or the receiver has started another request: its states come later.
  while (alive && request.get() == told && !states.empty()) deliverNext();
}

void InternetTransfer::Private::deliverNext() {
  const auto state = states.front();
  states.pop_front();
  // Before the signal: a receiver may wait for the next state in an event loop of its own.
  if (!states.empty()) postDelivery();
  settle(state);
  try {
    Q_EMIT q->StateChanged(index, state);
  } catch (const std::exception& error) {
    qWarning("A receiver of StateChanged failed: %s", error.what());
  } catch (...) {
    qWarning("A receiver of StateChanged failed");
  }
}

void InternetTransfer::Private::settle(TransferState state) {
  if (state != kError && state != kResponseCompleted) return;
  executing = false;
  completed = state == kResponseCompleted;
  if (!completed || !holding) return;
  request->hold();
  holdTimer.start(holdMs);
}

InternetTransfer::InternetTransfer(int index, QObject* parent)
    : QObject(parent), d(std::make_unique<Private>(this, index)) {}

InternetTransfer::~InternetTransfer() = default;

void InternetTransfer::Execute(const std::string& url, const std::string& operation, BodyMode mode) {
  if (toQString(operation).compare(QLatin1String("GET"), Qt::CaseInsensitive) != 0) {
    throw std::invalid_argument("The transfer knows no operation \"" + operation + "\"");
  }
  if (mode != BodyMode::File || !d->resume(url)) d->start(url, mode);
}

void InternetTransfer::setTextLimit(std::size_t bytes) { d->textLimit = bytes; }

void InternetTransfer::setSite(std::int64_t site) { d->site = site; }

void InternetTransfer::cancel() { d->drop(); }

bool InternetTransfer::StillExecuting() const { return d->executing; }

void InternetTransfer::setTargetFolder(const std::string& folder) { d->targetFolder = folder; }

bool InternetTransfer::MoveBodyTo(AtomicFile& file) { return d->completed && d->request->body().moveTo(file); }

std::string InternetTransfer::GetChunk(std::size_t size, ChunkType type) {
  return d->completed ? d->request->body().takeChunk(size, type) : std::string();
}

std::string InternetTransfer::TakeText() { return d->completed ? d->request->body().takeText() : std::string(); }

std::string InternetTransfer::GetHeader(const std::string& name) const {
  return d->request ? d->request->header(name) : std::string();
}

long InternetTransfer::ResponseCode() const { return d->request ? d->request->code() : 0; }

std::string InternetTransfer::ResponseInfo() const { return d->request ? d->request->info() : std::string(); }

std::string InternetTransfer::ResponseAddress() const {
  return d->request ? d->request->responseAddress() : std::string();
}

std::string InternetTransfer::TextEncoding() const {
  return d->completed ? std::string(d->request->body().textEncoding()) : std::string();
}

void InternetTransfer::rememberLogin(std::int64_t site, const std::string& address, const std::string& user,
                                     const std::string& password) {
  rememberSiteLogin(site, hostOf(address), {user, password});
}

void InternetTransfer::addCookie(const std::string& line) { CurlLoop::current()->addCookie(line); }

InternetTransfer::Limits& InternetTransfer::limits() {
  static Limits limits;
  return limits;
}

void InternetTransfer::forgetSharedState() {
  forgetSiteLogins();
  forgetHttpsHosts();
  CurlLoop::forgetCurrent();
}

std::string InternetTransfer::libraryVersion() {
  return std::string("libcurl ") + curl_version_info(CURLVERSION_NOW)->version;
}

}  // namespace mv
