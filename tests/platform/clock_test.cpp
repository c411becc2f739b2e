#include "base/Clock.h"

#include <gtest/gtest.h>

namespace {

TEST(Clock, ATimeHasSecondsInEveryLocale) {
  const std::pair<const char*, const char*> cases[] = {
      {"C", "04:05:06"}, {"de_DE", "04:05:06"}, {"en_US", "4:05:06 AM"}, {"da_DK", "04.05.06"}, {"fi_FI", "4.05.06"}};
  for (const auto& [name, expected] : cases) {
    const QLocale locale{QString(name)};
    const QString shown = locale.toString(QTime(4, 5, 6), mv::timeFormatWithSeconds(locale));
    // Some locales write a narrow blank.
    EXPECT_EQ(QString(shown).replace(QChar(0x202F), ' ').toStdString(), expected) << name;
  }
  for (const QLocale& locale :
       QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory)) {
    const QString format = mv::timeFormatWithSeconds(locale);
    EXPECT_EQ(format.count("ss") + format.count(u's'), 3) << locale.name().toStdString() << ' ' << format.toStdString();
  }
}

}  // namespace
