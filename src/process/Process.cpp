#include "process/Process.h"

#include <algorithm>
#include <utility>

#include "app/ErrorLog.h"
#include "app/Events.h"
#include "base/Clock.h"
#include "base/Turns.h"
#include "base/WebAddress.h"
#include "process/ProcessTexts.h"

namespace mv {

namespace {

constexpr int kPauseInterval = 60'000;  // milliseconds
constexpr int kViewInterval = 33;       // milliseconds

}  // namespace

// One procedure on the stack. The last one to leave a stopped process says so, and touches nothing afterwards.
class Process::Entered {
 public:
  explicit Entered(Process& process) : process_(process) { ++process_.depth_; }
  Entered(const Entered&) = delete;
  Entered& operator=(const Entered&) = delete;
  ~Entered() {
    if (--process_.depth_ > 0 || !process_.stopRequested_ || process_.stoppedEmitted_) return;
    process_.stoppedEmitted_ = true;
    Q_EMIT process_.stopped();
  }

 private:
  Process& process_;
};

Process::Process(const QStringList& listTitles, int workInterval) : lvwLinks(listTitles) {
  tmrOKToDownload.setInterval(workInterval);
  tmrWaitForAWhile.setInterval(kPauseInterval);
  connect(&tmrOKToDownload, &QTimer::timeout, this, &Process::workDue);
  connect(&tmrWaitForAWhile, &QTimer::timeout, this, [this] {
    tmrWaitForAWhile.stop();
    enableWorkTimer();
  });
  viewTimer_.setSingleShot(true);
  connect(&viewTimer_, &QTimer::timeout, this, [this] {
    sinceViewChanged_.start();
    Q_EMIT viewChanged();
  });
  connect(&Inet2, &InternetTransfer::StateChanged, this,
          [this](int, int state) { run([this, state] { transferEvent(state); }); });
}

Process::~Process() = default;

void Process::requestStop() {
  if (stopRequested_) return;
  const Entered entered(*this);
  stopRequested_ = true;
  tmrOKToDownload.stop();
  tmrWaitForAWhile.stop();
  Inet2.cancel();
}

void Process::run(const std::function<void()>& work) {
  if (stopRequested_) return;
  const Entered entered(*this);
  try {
    work();
  } catch (const std::exception& error) {
    try {
      failed(error);
    } catch (const std::exception&) {
      // Reporting an error has failed as well: there is no one left to tell.
    }
  }
}

void Process::belongTo(Id siteId, std::string title) {
  title_ = std::move(title);
  disconnect(takenBack_);
  takenBack_ = connect(&events(), &Events::siteTakenBack, this, [this, siteId](Id id) {
    if (id == siteId) endWithSite();
  });
}

void Process::endWithSite() {
  if (stopRequested_) return;
  const Entered entered(*this);
  tryAppendToErrorLog(
      {asOneLine(title_) + ": its site is no longer stored, the process has ended by itself.", dateTimeText(now())});
  requestStop();
  Q_EMIT siteGone();
}

void Process::workDue() {
  // A message box of the last tick may still stand: one work step at a time.
  if (isBusy() || !tmrOKToDownload.isActive()) return;
  if (TimeBudget::iterationIsSpent()) {
    // Sites that were started together have their ticks together.
    takeTurn(this, [this] { workDue(); });
    return;
  }
  const TimeBudget budget;
  run([this] { tick(); });
}

void Process::yieldThen(std::function<void()> work) {
  takeTurn(this, [this, work = std::move(work)] { run(work); });
}

void Process::enableWorkTimer() {
  if (!stopRequested_ && !tmrOKToDownload.isActive()) tmrOKToDownload.start();
}

void Process::touch() {
  if (viewTimer_.isActive()) return;
  const qint64 since = sinceViewChanged_.isValid() ? sinceViewChanged_.elapsed() : kViewInterval;
  viewTimer_.start(static_cast<int>(std::clamp<qint64>(kViewInterval - since, 0, kViewInterval)));
}

void Process::setProgress(long value, long maximum) {
  show(progressValue_, value);
  show(progressMaximum_, maximum);
}

void Process::showError(std::string subject, std::string reason, long code) {
  lastError_ = {std::move(subject), std::move(reason), code, now(), errorCount_};
  touch();
}

void Process::logError(std::int64_t linkId, const std::string& url) {
  tryAppendToErrorLog({std::to_string(linkId), asOneLine(maskPassword(url)), asOneLine(lastError_.subject),
                       asOneLine(errorReasonText(lastError_)), errorTimeText(lastError_), ""});
}

}  // namespace mv
