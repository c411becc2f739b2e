#include "SiteMenu.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>

#include "app/ReportError.h"
#include "base/Text.h"
#include "store/SiteStore.h"
#include "windows/ListHelpers.h"

namespace mv {

namespace {

// A site that has not saved anything yet has no folder.
void openFolder(QWidget* owner, Id siteId) {
  guarded("SiteMenu", [&] {
    const auto site = loadSite(siteId);
    if (!site) return;
    const QString folder = toQString(site->downloadPath);
    QDir().mkpath(folder);
    openPath(owner, folder);
  });
}

}  // namespace

Commands siteCommands(QWidget* owner, Id siteId, const QString& name) {
  const QString address = publicAddress(name);
  return {{"mnuSiteFolder", "Open &Folder", [=] { openFolder(owner, siteId); }},
          {"mnuSiteBrowser", "Open in &Browser", [=] { openInBrowser(owner, address); }},
          {"mnuSiteCopy", "&Copy Address", [=] { QApplication::clipboard()->setText(address); }}};
}

}  // namespace mv
