// What the feeds of the update server have in common: a chain of requests, each started when the one before has been
// dealt with, in the background of whatever the user does. A request that fails ends the chain without a word. Answers
// are worked on in slices of some milliseconds, so that a feed of any size is not felt.
#pragma once

#include <QObject>
#include <QTimer>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "transfer/InternetTransfer.h"

namespace mv {

class FeedChain : public QObject {
  Q_OBJECT
 Q_SIGNALS:
  // What the chain is doing now, of any length.
  void progress(const std::string& line);
  // There is nothing under way any more.
  void ended();

 protected:
  // `source` names the chain in error reports.
  FeedChain(std::string source, QObject* parent);
  ~FeedChain() override;

  // Gives the transfer its name; a completed request of it goes to `completed`, a failed one ends the chain, and so do
  // a body of more than 4 MiB, which is no feed, and an exception, which is reported.
  void handle(InternetTransfer& transfer, const char* name, std::function<void()> completed);
  static void get(InternetTransfer& transfer, const QString& url);

  // Drops the work under way and says so. Requests are left alone.
  void endChain();

  // Calls `step` until it answers false, a slice an event, then `then`; while the database is closed for maintenance it
  // waits. Work begun before is dropped. An exception is reported and ends the chain.
  void inSlices(std::function<bool()> step, std::function<void()> then);
  // Hands the lines of an overview to `take`, in slices, and goes on with `then`. `take` answers false for a line that
  // it cannot read; their number is noted in the error log.
  void readOverview(std::string overview, std::function<bool(std::string_view line)> take, std::function<void()> then);

  // Notes what of a feed is not taken, and why. The first few of a chain are a line of the error log each, the others
  // are counted in one at its end: a feed is fetched at every start, and may be full of them.
  void refuse(const std::string& what, const std::string& why);
  // True, and noted, when a row of these lines, and perhaps a text, is not imported.
  bool isRefused(const std::string& what, std::initializer_list<std::string_view> lines, std::string_view text = {});
  const char* source() const { return source_.c_str(); }

 private:
  struct Work {
    std::function<bool()> step;
    std::function<void()> then;
  };

  void schedule();
  void runSlice();
  void logUnnamedRefusals();

  std::string source_;
  QTimer nextSlice_;
  std::shared_ptr<Work> work_;
  long refusals_ = 0;  // of the chain under way
};

}  // namespace mv
