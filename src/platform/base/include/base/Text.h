// Texts below the windows are UTF-8 in std::string; widgets speak QString. These two go between.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace mv {

inline QString toQString(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

inline std::string toUtf8(const QString& text) { return text.toStdString(); }

}  // namespace mv
