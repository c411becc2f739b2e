// The per-user settings store: a text value by application, section and key. Kept in the user's configuration folder as
// an INI file.
#pragma once

#include <QString>

namespace mv {

QString readUserSetting(const QString& application, const QString& section, const QString& key,
                        const QString& fallback = {});
void saveUserSetting(const QString& application, const QString& section, const QString& key, const QString& value);
// For tests: the folder that holds the INI files; "" brings the user's own back.
void setUserSettingsFolder(const QString& folder);

}  // namespace mv
