// From the bytes of a page to the addresses that are stored and asked for.

#include <QSignalSpy>

#include "ScanTest.h"

namespace {

using namespace mvtest;
using namespace std::string_literals;

using PageTextTest = ScanTest<ProgramTest>;

std::string inUtf16(const std::string& ascii) {
  std::string bytes;
  for (const char c : ascii) (bytes += c) += '\0';
  return bytes;
}

TEST_F(PageTextTest, AddressesOutsideAsciiAreAskedForAsBrowsersDo) {
  site.file(
      "/", "text/html",
      "<meta charset=iso-8859-1><a href=\"/p\xE4th.htm?q=\xE4&r=%E4\"><a href=\"/nu\0l.htm\"><a href=\"/16.htm\">"s);
  site.file("/16.htm", "text/html", inUtf16("<html><a href=\"/end.htm\">"));
  site.page("/end.htm", "x");
  mv::ScanProcess process;
  prepare(process);
  QSignalSpy pages(&process, &mv::ScanProcess::pageProcessed);
  process.initWindow();
  ASSERT_TRUE(waitForStatus("/end.htm", "Done"));
  ASSERT_TRUE(waitForStatus("/p\xC3\xA4th.htm?q=%E4&r=%E4", "Done"));
  EXPECT_EQ(links(), (std::vector<std::string>{"/16.htm Document Done", "/end.htm Document Done",
                                               "/nu\xEF\xBF\xBDl.htm Document Done",
                                               "/p\xC3\xA4th.htm?q=%E4&r=%E4 Document Done"}));
  EXPECT_EQ(site.requestCount("/p%C3%A4th.htm?q=%E4&r=%E4"), 1);
}

}  // namespace
