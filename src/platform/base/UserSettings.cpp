#include "base/UserSettings.h"

#include <QSettings>
#include <QStandardPaths>

namespace mv {
namespace {

QString settingsFolder;

QString settingsFile(const QString& application) {
  const QString folder = settingsFolder.isEmpty()
                             ? QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
                             : settingsFolder;
  return folder + '/' + application + ".ini";
}

}  // namespace

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
