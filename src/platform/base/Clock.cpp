#include "base/Clock.h"

#include <QLocale>

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
                locale.toString(moment.time(), QLocale::ShortFormat));
}

}  // namespace mv
