// What the desktop system offers beside windows: the default browser, disk space, the clock, the per-user settings
// store.
#pragma once

#include <QDateTime>
#include <QString>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace mv {

// `url` is the whole address of a page: scheme http or https, and a host.
bool isWebAddress(const QString& url);
// Asks the desktop to open `url` with the default browser. False when it reports failure. Does not wait.
bool openWithDefaultBrowser(const QString& url);
// For tests: what openWithDefaultBrowser calls instead. An empty function brings the desktop back.
void setBrowserOpener(std::function<bool(const QString&)> opener);

// Free space, in bytes, that the drive holding `folder` offers this user; 0 when it cannot be told.
std::uint64_t freeDiskSpace(const std::string& folder);
// For tests: what every drive has free; nullopt brings the real drives back.
void setFreeDiskSpace(std::optional<std::uint64_t> bytes);

// The current moment in local time. Tests set another; a null QDateTime brings the system's clock back.
QDateTime now();
void setNow(const QDateTime& moment);
// Date, then time, as the system's locale writes them in general.
std::string dateTimeText(const QDateTime& moment);

// A text value per user, by application, section and key. Kept in the user's configuration folder as an INI file.
QString readUserSetting(const QString& application, const QString& section, const QString& key,
                        const QString& fallback = {});
void saveUserSetting(const QString& application, const QString& section, const QString& key, const QString& value);
// For tests: the folder that holds the INI files; "" brings the user's own back.
void setUserSettingsFolder(const QString& folder);

}  // namespace mv
