// The clock: the current moment, and how moments are written for the user.
#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>
#include <string>

namespace mv {

// The current moment in local time. Tests set another; a null QDateTime brings the system's clock back.
QDateTime now();
void setNow(const QDateTime& moment);
// Date, then time, as the system's locale writes them in general, with seconds. UTF-8.
std::string dateTimeText(const QDateTime& moment);
// The short form of a time of day in `locale`; with seconds also where that form has none.
QString timeFormatWithSeconds(const QLocale& locale);

}  // namespace mv
