// The user's default web browser.
#pragma once

#include <QString>
#include <functional>

namespace mv {

// Asks the desktop to open `url` with the default browser. False when it reports failure. Does not wait.
bool openWithDefaultBrowser(const QString& url);
// For tests: what openWithDefaultBrowser calls instead. An empty function brings the desktop back.
void setBrowserOpener(std::function<bool(const QString&)> opener);

}  // namespace mv
