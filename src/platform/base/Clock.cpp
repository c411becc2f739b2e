#include "base/Clock.h"

#include <QRegularExpression>

#include "base/Text.h"

namespace mv {
namespace {

QDateTime fixedMoment;

}  // namespace

QDateTime now() { return fixedMoment.isNull() ? QDateTime::currentDateTime() : fixedMoment; }

void setNow(const QDateTime& moment) { fixedMoment = moment; }

std::string dateTimeText(const QDateTime& moment) {
  const QLocale locale = QLocale::system();
  return toUtf8(locale.toString(moment.date(), QLocale::ShortFormat) + ' ' +
                locale.toString(moment.time(), timeFormatWithSeconds(locale)));
}

QString timeFormatWithSeconds(const QLocale& locale) {
  QString format = locale.timeFormat(QLocale::ShortFormat);
  if (format.contains(u's')) return format;
  // Behind the minutes, with what stands between them and the hours.
  static const QRegularExpression kMinutes("([^A-Za-z]?)(mm?)");
  const QString separator = kMinutes.match(format).captured(1);
  return format.replace(kMinutes, "\\1\\2" + (separator.trimmed().isEmpty() ? QString(":") : separator) + "ss");
}

}  // namespace mv
