#include "SiteProcesses.h"

#include <QPointer>
#include <string>

#include "SiteWatch.h"
#include "app/Events.h"
#include "app/Settings.h"
#include "download_windows/frmDownload.h"
#include "scan_windows/frmScan.h"
#include "windows/WindowRegistry.h"

namespace mv {

namespace {

// The first loaded process window of a class whose process is one that `is` tells.
template <class Window, class Is>
Window* findProcess(Is is) {
  for (ChildWindow* window : WindowRegistry::instance().windows())
    if (auto* match = dynamic_cast<Window*>(window); match && is(match->process())) return match;
  return nullptr;
}

frmScan* scanOf(Id siteId) {
  return findProcess<frmScan>([&](const ScanProcess& process) { return process.SiteID == siteId; });
}

frmDownload* downloadOf(Id siteId) {
  return findProcess<frmDownload>([&](const DownloadProcess& process) { return process.SiteId == siteId; });
}

// By name first: two sites of the same name share their titles, and the first window of that title is the one that
// goes. A site that was renamed while it runs is found by its identifier.
template <class Window>
void endProcess(const std::string& siteName, Window* own) {
  auto* named = findProcess<Window>([&](const auto& process) { return process.SiteName == siteName; });
  if (named || own) closeProcess(named ? *named : *own);
}

void openScan(const SiteListRow& site) {
  const Id loginForm = siteLoginForm(site.id);
  const QPointer<frmScan> scan = new frmScan;
  scan->process().SiteID = site.id;
  scan->process().SiteName = site.name;
  scan->process().Domain = site.domain;
  scan->process().LoginFormID = loginForm;
  scan->process().DomainHops = site.hops;
  scan->setCaption(scan->settledCaption());
  scan->showChild();
  if (scan) scan->initWindow();
}

void openDownload(const SiteListRow& site) {
  const QPointer<frmDownload> download = new frmDownload;
  download->process().SiteId = site.id;
  download->process().SiteName = site.name;
  download->process().UniqueNames = yesNo(site.uniqueNames);
  download->process().BaseName = site.baseName;
  download->process().OverwriteExisting = gOverwriteExisting;
  download->setCaption(download->settledCaption());
  download->showChild();
  if (download) download->initWindow();
}

void watchAndHide(frmScan* scan, frmDownload* download) {
  if (scan && download) SiteWatch::begin(*scan, *download);
  if (!isYes(gHideProcesses)) return;
  if (scan) scan->hideChild();
  if (download) download->hideChild();
}

}  // namespace

bool SiteProcesses::mayStart(Id siteId, long most) const {
  return scanOf(siteId) || downloadOf(siteId) || std::ssize(running_) < most;
}

void SiteProcesses::startScan(const SiteListRow& site) {
  if (frmScan* scan = scanOf(site.id))
    scan->showChild();
  else
    openScan(site);
}

void SiteProcesses::startDownload(const SiteListRow& site) {
  if (frmDownload* download = downloadOf(site.id))
    download->showChild();
  else
    openDownload(site);
  watchAndHide(scanOf(site.id), downloadOf(site.id));
  Q_EMIT events().processesChanged();
  running_.insert(site.id);
}

void SiteProcesses::end(const SiteListRow& site) {
  endProcess(site.name, downloadOf(site.id));
  endProcess(site.name, scanOf(site.id));
  forget(site.id);
}

void SiteProcesses::endOwn(Id siteId) {
  if (auto* download = downloadOf(siteId)) closeProcess(*download);
  if (auto* scan = scanOf(siteId)) closeProcess(*scan);
  forget(siteId);
}

}  // namespace mv
