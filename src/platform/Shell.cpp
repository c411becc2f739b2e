#include "platform/Shell.h"

#include <QDesktopServices>
#include <QLocale>
#include <QSettings>
#include <QStandardPaths>
#include <QUrl>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/Text.h"

namespace mv {
namespace {

std::function<bool(const QString&)> browserOpener;
QDateTime fixedMoment;
std::optional<std::uint64_t> fixedSpace;
QString settingsFolder;

QString settingsFile(const QString& application) {
  const QString folder = settingsFolder.isEmpty()
                             ? QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
                             : settingsFolder;
  return folder + '/' + application + ".ini";
}

}  // namespace

bool isWebAddress(const QString& url) {
  const QUrl address(url.trimmed());
  return (address.scheme() == "http" || address.scheme() == "https") && !address.host().isEmpty();
}

bool openWithDefaultBrowser(const QString& url) {
  if (browserOpener) return browserOpener(url);
  return QDesktopServices::openUrl(QUrl(url.trimmed()));
}

void setBrowserOpener(std::function<bool(const QString&)> opener) { browserOpener = std::move(opener); }

std::uint64_t freeDiskSpace(const std::string& folder) {
  if (fixedSpace) return *fixedSpace;
  // A folder that is still to be made lies on the drive of its nearest parent.
  std::error_code error;
  for (std::filesystem::path existing = std::filesystem::absolute(folder, error);; existing = existing.parent_path()) {
    const std::filesystem::space_info drive = std::filesystem::space(existing, error);
    if (!error) return drive.available;
    if (existing == existing.parent_path()) return 0;
  }
}

void setFreeDiskSpace(std::optional<std::uint64_t> bytes) { fixedSpace = bytes; }

QDateTime now() { return fixedMoment.isNull() ? QDateTime::currentDateTime() : fixedMoment; }

void setNow(const QDateTime& moment) { fixedMoment = moment; }

std::string dateTimeText(const QDateTime& moment) {
  const QLocale locale = QLocale::system();
  return toUtf8(locale.toString(moment.date(), QLocale::ShortFormat) + ' ' +
                locale.toString(moment.time(), QLocale::ShortFormat));
}

QString readUserSetting(const QString& application, const QString& section, const QString& key,
                        const QString& fallback) {
  const QSettings settings(settingsFile(application), QSettings::IniFormat);
  return settings.value(section + '/' + key, fallback).toString();
}

void saveUserSetting(const QString& application, const QString& section, const QString& key, const QString& value) {
  QSettings settings(settingsFile(application), QSettings::IniFormat);
  settings.setValue(section + '/' + key, value);
}

void setUserSettingsFolder(const QString& folder) { settingsFolder = folder; }

}  // namespace mv
