#include "SiteWatch.h"

#include "base/Text.h"
#include "desktop/Notification.h"
#include "download/DownloadTexts.h"
#include "download_windows/frmDownload.h"
#include "scan_windows/frmScan.h"
#include "windows/ListHelpers.h"
#include "windows/MainFrame.h"

namespace mv {

namespace {

constexpr const char* kName = "siteWatch";
constexpr int kInterval = 1000;  // milliseconds
// A page that is just worked through may add links, and the download looks for them a little later.
constexpr int kQuietLooks = 3;

}  // namespace

void SiteWatch::begin(frmScan& scan, frmDownload& download) {
  if (!download.findChild<QObject*>(kName, Qt::FindDirectChildrenOnly)) new SiteWatch(scan, download);
}

SiteWatch::SiteWatch(frmScan& scan, frmDownload& download) : QObject(&download), scan_(&scan), download_(download) {
  setObjectName(kName);
  timer_.setInterval(kInterval);
  connect(&timer_, &QTimer::timeout, this, [this] { look(); });
  timer_.start();
}

void SiteWatch::look() {
  const bool quiet = scan_ && scan_->process().hasNothingLeft() && download_.process().hasNothingLeft();
  quietLooks_ = quiet ? quietLooks_ + 1 : 0;
  if (quietLooks_ < kQuietLooks) return;
  timer_.stop();
  speak();
}

void SiteWatch::speak() {
  const DownloadProcess& process = download_.process();
  const QString folder = toQString(process.folder());
  const QString site = publicAddress(toQString(process.SiteName));
  const QString outcome = toQString(outcomeText(process.status(), process.ErrorCount()));
  sayInFoot("Nothing left of " + site + ": " + outcome);
  notifyDesktop("Nothing left of " + site, outcome, [folder] {
    if (MainFrame* frame = MainFrame::current()) openPath(frame->window(), folder);
  });
}

}  // namespace mv
