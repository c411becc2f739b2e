// What a scan and a download have in common: one transfer component, one work list, the work and pause timers, the stop
// flag, and running long work in slices so that the user-interface thread is never held for long.
//
// A process is stopped with requestStop(). Whatever of its procedures is then on the stack (a message box may hold one)
// runs to its next test of the flag; stopped() is emitted when the outermost has returned, and only then may the
// process be deleted.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPersistentModelIndex>
#include <QTimer>
#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include "base/TimeBudget.h"
#include "process/ProcessError.h"
#include "process/WorkList.h"
#include "store/Id.h"
#include "transfer/InternetTransfer.h"

namespace mv {

class Process : public QObject {
  Q_OBJECT
 public:
  Process(const QStringList& listTitles, int workInterval);
  ~Process() override;

  InternetTransfer Inet2;
  WorkList lvwLinks;
  QTimer tmrOKToDownload;   // one work step a tick while active
  QTimer tmrWaitForAWhile;  // 60 s; when it fires it stops itself and starts the work timer

  // Sets the stop flag, stops the timers and drops the request. Emits stopped() at once when nothing is running, else
  // when the running procedure has returned. Further calls do nothing.
  void requestStop();
  bool StopRequested() const { return stopRequested_; }
  // One of its procedures is on the stack.
  bool isBusy() const { return depth_ > 0; }

  const ProcessError& lastError() const { return lastError_; }
  // While the work list is built: rows so far.
  std::optional<long> rowsOpened() const { return rowsOpened_; }
  long progressValue() const { return progressValue_; }
  long progressMaximum() const { return progressMaximum_; }
  long ErrorCount() const { return errorCount_; }
  // The row last taken up, to be selected and scrolled into view; invalid when the list no longer has it.
  const QPersistentModelIndex& takenRow() const { return takenRow_; }

 Q_SIGNALS:
  // The status, the progress or the row taken up has changed. At most 30 times a second, the first change at once:
  // more than a window can show would be drawn for nobody.
  void viewChanged();
  void stopped();
  // Its site is no longer stored: it is stopping by itself, and the error log says so.
  void siteGone();

 protected:
  virtual void tick() = 0;
  virtual void transferEvent(int state) = 0;
  // An exception left a procedure that run() had called. What this one throws is lost.
  virtual void failed(const std::exception& error) = 0;

  // When it starts: the site that it works for, and what it is called in the log. It ends when the site is taken back.
  void belongTo(Id siteId, std::string title);
  // To be called when the site turns out to be no longer stored.
  void endWithSite();
  // Every entry from outside goes through this: does nothing when stop is requested; exceptions go to failed().
  void run(const std::function<void()>& work);
  // Yields to pending events and to the other processes' work, then goes on with `work` through run(). Dropped when
  // stop is requested meanwhile.
  void yieldThen(std::function<void()> work);
  // Switches the work timer on without restarting a running one.
  void enableWorkTimer();
  void disableWorkTimer() { tmrOKToDownload.stop(); }

  void rowTaken(int row) {
    takenRow_ = lvwLinks.index(row, 0);
    touch();
  }

  // Refreshes the window soon.
  void touch();
  // Changes a part of what is shown; refreshes the window when it is another value.
  template <class T>
  void show(T& part, std::type_identity_t<T> value) {
    if (part == value) return;
    part = std::move(value);
    touch();
  }
  void setRowsOpened(std::optional<long> rows) { show(rowsOpened_, rows); }
  void setProgress(long value, long maximum);
  // Fills the error panel and counts nothing.
  void showError(std::string subject, std::string reason, long code);
  // Appends the error panel's record to the error log; failures are ignored.
  void logError(std::int64_t linkId, const std::string& url);

  long errorCount_ = 0;

 private:
  void workDue();
  class Entered;

  std::optional<long> rowsOpened_;
  ProcessError lastError_;
  long progressValue_ = 0;
  long progressMaximum_ = 0;
  int depth_ = 0;
  bool stopRequested_ = false;
  bool stoppedEmitted_ = false;
  std::string title_;
  QMetaObject::Connection takenBack_;
  QPersistentModelIndex takenRow_;
  QTimer viewTimer_;
  QElapsedTimer sinceViewChanged_;
};

}  // namespace mv
