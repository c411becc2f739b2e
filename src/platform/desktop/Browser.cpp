#include "desktop/Browser.h"

#include <QDesktopServices>
#include <QUrl>
#include <utility>

namespace mv {
namespace {

std::function<bool(const QString&)> browserOpener;

}  // namespace

bool openWithDefaultBrowser(const QString& url) {
  if (browserOpener) return browserOpener(url);
  return QDesktopServices::openUrl(QUrl(url.trimmed()));
}

void setBrowserOpener(std::function<bool(const QString&)> opener) { browserOpener = std::move(opener); }

}  // namespace mv
