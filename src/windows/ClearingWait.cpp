#include "windows/ClearingWait.h"

#include <QLocale>
#include <QTimer>

#include "store/LinkCleaner.h"
#include "windows/MainFrame.h"
#include "windows/frmPleaseWait.h"

namespace mv {

namespace {

constexpr int kProgressInterval = 100;  // milliseconds

void showProgress(frmPleaseWait& wait) {
  const LinkCleaner& cleaner = LinkCleaner::instance();
  wait.setText("Clearing the link cache. Please wait...\n" + QLocale().toString(cleaner.deleted()) + " links so far");
  wait.setPercent(cleaner.percent());
}

}  // namespace

void whenLinksAreCleared(QObject* owner, const std::function<void()>& then) {
  if (LinkCleaner::instance().isIdle()) {
    then();
    return;
  }
  auto* wait = new frmPleaseWait(MainFrame::current()->window());
  showProgress(*wait);
  wait->show();
  auto* progress = new QTimer(wait);
  QObject::connect(progress, &QTimer::timeout, wait, [wait, progress] {
    if (!LinkCleaner::instance().isIdle()) return showProgress(*wait);
    progress->stop();
    wait->accept();
  });
  QObject::connect(wait, &QDialog::accepted, owner, [then] {
    if (!LinkCleaner::instance().hasFailed()) then();
  });
  QObject::connect(wait, &QDialog::accepted, wait, &QObject::deleteLater);
  progress->start(kProgressInterval);
}

}  // namespace mv
