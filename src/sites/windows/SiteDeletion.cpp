#include "SiteDeletion.h"

#include <utility>

#include "base/TimeBudget.h"
#include "base/Turns.h"
#include "windows/MainFrame.h"
#include "windows/frmPleaseWait.h"

namespace mv {

namespace {
constexpr int kUnseenFor = 300;     // milliseconds
constexpr int kDrawInterval = 100;  // milliseconds; drawing the list takes longer than deleting a site
}  // namespace

SiteDeletion::SiteDeletion(QWidget& list, std::function<bool(Id)> deleteOne)
    : QObject(&list), list_(list), deleteOne_(std::move(deleteOne)) {}

SiteDeletion::~SiteDeletion() { delete wait_; }

void SiteDeletion::begin(const std::deque<Id>& sites) {
  const bool idle = left_.empty();
  if (idle) {
    asked_ = 0;
    lasting_.start();
    drawn_.start();
  }
  asked_ += sites.size();
  left_.insert(left_.end(), sites.begin(), sites.end());
  if (idle) deleteSome();
}

void SiteDeletion::stop() {
  left_.clear();
  list_.setUpdatesEnabled(true);
  delete wait_;
}

void SiteDeletion::deleteSome() {
  list_.setUpdatesEnabled(false);
  const TimeBudget budget;
  while (!left_.empty() && !budget.spent()) {
    const Id id = left_.front();
    left_.pop_front();
    if (!deleteOne_(id)) return stop();
  }
  if (left_.empty()) return stop();
  showProgress();
  if (drawn_.hasExpired(kDrawInterval)) {
    list_.setUpdatesEnabled(true);
    drawn_.restart();
  }
  takeTurn(this, [this] { deleteSome(); });
}

void SiteDeletion::showProgress() {
  if (!wait_ && lasting_.elapsed() < kUnseenFor) return;
  if (!wait_) {
    wait_ = new frmPleaseWait(MainFrame::current()->window());
    wait_->offerStop();
    connect(
        wait_, &frmPleaseWait::stopWanted, this, [this] { stop(); }, Qt::QueuedConnection);
    wait_->show();
  }
  const std::size_t done = asked_ - left_.size();
  wait_->setText(QString("Deleting web sites. Please wait...\n%1 of %2").arg(done).arg(asked_));
  wait_->setPercent(static_cast<int>(100 * done / asked_));
}

}  // namespace mv
