#include "help/FeedChain.h"

#include <utility>

#include "app/ErrorLog.h"
#include "app/ReportError.h"
#include "app/Settings.h"
#include "base/Text.h"
#include "base/TimeBudget.h"
#include "help/FeedParsers.h"
#include "net/Address.h"

namespace mv {

namespace {

constexpr int kMaintenanceWaitMs = 200;
constexpr long kMostNamed = 10;
const std::string kLogPrefix = "Online update: ";
constexpr std::size_t kLongestFeed = std::size_t{4} << 20;  // bytes

}  // namespace

FeedChain::FeedChain(std::string source, QObject* parent) : QObject(parent), source_(std::move(source)) {
  nextSlice_.setSingleShot(true);
  connect(&nextSlice_, &QTimer::timeout, this, [this] { runSlice(); });
}

FeedChain::~FeedChain() = default;

void FeedChain::handle(InternetTransfer& transfer, const char* name, std::function<void()> completed) {
  transfer.setObjectName(QString::fromLatin1(name));
  transfer.setTextLimit(kLongestFeed);
  connect(&transfer, &InternetTransfer::StateChanged, this, [this, completed = std::move(completed)](int, int state) {
    if (state == kError || (state == kResponseCompleted && !guarded(source(), completed))) endChain();
  });
}

void FeedChain::get(InternetTransfer& transfer, const QString& url) {
  transfer.Execute(toUtf8(url), "GET", BodyMode::Text);
}

void FeedChain::endChain() {
  work_.reset();
  nextSlice_.stop();
  logUnnamedRefusals();
  Q_EMIT ended();
}

void FeedChain::inSlices(std::function<bool()> step, std::function<void()> then) {
  work_ = std::make_shared<Work>(Work{std::move(step), std::move(then)});
  schedule();
}

void FeedChain::schedule() {
  if (work_) nextSlice_.start(gDatabase.isOpen() ? 0 : kMaintenanceWaitMs);
}

void FeedChain::runSlice() {
  // Kept: a step may show a message box, under which another check may begin.
  const auto work = work_;
  const bool fine = !gDatabase.isOpen() || guarded(source(), [&] {
    const TimeBudget budget;
    while (work == work_ && !budget.spent()) {
      if (work->step()) continue;
      if (work != work_) return;
      work_.reset();
      work->then();
      return;
    }
  });
  if (fine)
    schedule();
  else
    endChain();
}

void FeedChain::readOverview(std::string overview, std::function<bool(std::string_view line)> take,
                             std::function<void()> then) {
  struct Reading {
    std::string text;
    std::string_view rest;
    long unreadable = 0;
  };
  const auto reading = std::make_shared<Reading>();
  reading->text = withCrLf(std::move(overview));
  reading->rest = reading->text;
  inSlices(
      [reading, take = std::move(take)] {
        const auto line = takeOverviewLine(reading->rest);
        if (line && !line->empty() && !take(*line)) ++reading->unreadable;
        return line.has_value();
      },
      [this, reading, then = std::move(then)] {
        if (reading->unreadable > 0)
          refuse(std::to_string(reading->unreadable) + " lines of an overview", "they cannot be read");
        then();
      });
}

void FeedChain::refuse(const std::string& what, const std::string& why) {
  if (++refusals_ <= kMostNamed) tryAppendToErrorLog({asOneLine(kLogPrefix + shortened(what) + " not taken: " + why)});
}

void FeedChain::logUnnamedRefusals() {
  const long unnamed = std::exchange(refusals_, 0) - kMostNamed;
  if (unnamed > 0) tryAppendToErrorLog({kLogPrefix + std::to_string(unnamed) + " more rows not taken"});
}

bool FeedChain::isRefused(const std::string& what, std::initializer_list<std::string_view> lines,
                          std::string_view text) {
  const std::string why = whyRefused(lines, text);
  if (!why.empty()) refuse(what, why);
  return !why.empty();
}

}  // namespace mv
