#include "StatusFoot.h"

#include <QLocale>

#include "base/Text.h"
#include "ui_StatusFoot.h"

namespace mv {

namespace {

constexpr int kRefreshInterval = 1000;  // milliseconds
constexpr int kNoticeShownFor = 20'000;
constexpr double kNewestShare = 0.3;  // of the last second in the rate shown
constexpr double kLeastRate = 100;    // bytes a second; less is the rest of what has been

QString counted(long number, const char* one, const char* many) {
  return QString("%L1 %2").arg(number).arg(number == 1 ? one : many);
}

QString bytesText(double bytes) {
  return QLocale().formattedDataSize(static_cast<qint64>(bytes), 1, QLocale::DataSizeSIFormat);
}

}  // namespace

QString totalsText(const Totals& totals, double bytesPerSecond) {
  if (totals.sites == 0 && totals.saved == 0 && totals.failed == 0) return "No site is running.";
  QStringList parts{totals.sites == 0 ? "No site runs" : counted(totals.sites, "site runs", "sites run")};
  if (totals.waiting > 0)
    parts << (totals.moreWait ? "at least " : "") + counted(totals.waiting, "file waits", "files wait");
  QString saved = QString("%L1 saved (%2").arg(totals.saved).arg(bytesText(static_cast<double>(totals.bytes)));
  if (bytesPerSecond >= kLeastRate) saved += ", " + bytesText(bytesPerSecond) + "/s";
  parts << saved + ')';
  if (totals.failed > 0) parts << QString("%L1 failed").arg(totals.failed);
  return parts.join(", ") + '.';
}

StatusFoot::StatusFoot(QWidget* parent) : QWidget(parent), ui_(std::make_unique<Ui::StatusFoot>()) {
  ui_->setupUi(this);
  forget_.setSingleShot(true);
  forget_.setInterval(kNoticeShownFor);
  connect(&forget_, &QTimer::timeout, this, [this] { ui_->lblNotice->setLine({}); });
  refresh_.setInterval(kRefreshInterval);
  connect(&refresh_, &QTimer::timeout, this, &StatusFoot::showTotals);
  refresh_.start();
  sinceRefresh_.start();
  bytesBefore_ = allTotals().bytes;
  showTotals();
}

StatusFoot::~StatusFoot() = default;

void StatusFoot::say(const QString& line) {
  ui_->lblNotice->setLine(toUtf8(line));
  forget_.start();
}

double StatusFoot::rate(std::int64_t bytes) {
  const qint64 passed = sinceRefresh_.restart();
  if (passed > 0) {
    const double newest = static_cast<double>(bytes - bytesBefore_) * 1000 / static_cast<double>(passed);
    rate_ += kNewestShare * (newest - rate_);
  }
  bytesBefore_ = bytes;
  return rate_;
}

void StatusFoot::showTotals() {
  const Totals all = allTotals();
  const double bytesPerSecond = rate(all.bytes);
  const QString text = totalsText(all, all.sites > 0 ? bytesPerSecond : 0);
  if (text != ui_->lblTotals->text()) ui_->lblTotals->setText(text);
}

}  // namespace mv
