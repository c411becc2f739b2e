// The built program itself, in a fresh program folder, with automatic scanning on: harvests, is killed in the middle,
// is started again and goes on.

#include <QDir>
#include <QDirIterator>
#include <fstream>

#include "app/ErrorLog.h"
#include "app/Settings.h"
#include "base/Text.h"
#include "database/RawStatement.h"
#include "testkit/Fixture.h"
#include "testkit/ProgramRun.h"
#include "testkit/TestSite.h"

namespace {

using namespace mv;
using namespace mvtest;

std::string fileOf(char letter, std::size_t size) { return std::string(size, letter); }

std::int64_t links(const std::string& where) {
  return gDatabase.count("select count(*) as outCount from link where " + rawStatement(where));
}

// What a file of one letter holds, short enough to read in a failure: "50000 s".
std::string summary(const std::string& content) {
  const bool uniform = content.find_first_not_of(content.substr(0, 1)) == std::string::npos;
  return std::to_string(content.size()) + " " + (uniform ? content.substr(0, 1) : "mixed");
}

// Every file in the download folder, hidden ones too: its name and what it holds.
std::map<std::string, std::string> savedFiles() {
  std::map<std::string, std::string> files;
  QDirIterator found(toQString(gDownloadFolder), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
  while (found.hasNext()) {
    const QString path = found.next();
    files[toUtf8(found.fileName())] = summary(readFile(toUtf8(path)));
  }
  return files;
}

TEST(SmokeTest, AKilledHarvestLosesNothingAndTheNextStartGoesOn) {
  TestSite site;
  site.page("/", R"(<a href="a.jpg"> <a href="slow.jpg"> <a href="b.jpg"> <a href="more/index.html">)");
  site.page("/more/index.html", R"(<a href="c.jpg">)");
  site.file("/a.jpg", "image/jpeg", fileOf('a', 20000));
  site.file("/b.jpg", "image/jpeg", fileOf('b', 30000));
  site.file("/more/c.jpg", "image/jpeg", fileOf('c', 40000));
  // Stands still in the middle of the file.
  Resource slow{.type = "image/jpeg", .body = fileOf('s', 50000), .fault = Fault::HeaderOnly};
  site.add("/slow.jpg", slow);

  ProgramRun program(MORVANE_PROGRAM);
  program.addAutoScanSite(site.host(), "10", "1", {"jpg"});
  ASSERT_TRUE(program.start());
  ASSERT_TRUE(waitFor([&] { return site.requestCount("/slow.jpg") > 0; }, 60'000));
  program.kill();

  EXPECT_EQ(links("1=1"), 4) << "no stored row is lost";
  EXPECT_EQ(savedFiles(), (std::map<std::string, std::string>{{"a.jpg", "20000 a"}}));

  slow.fault = Fault::None;
  site.add("/slow.jpg", slow);
  ASSERT_TRUE(program.start());
  EXPECT_TRUE(waitFor([&] { return links("status <> \"Done\"") == 0 && links("1=1") == 5; }, 60'000));
  EXPECT_TRUE(program.terminate());

  const std::map<std::string, std::string> expected = {
      {"a.jpg", "20000 a"}, {"b.jpg", "30000 b"}, {"c.jpg", "40000 c"}, {"slow.jpg", "50000 s"}};
  EXPECT_EQ(savedFiles(), expected);
  const QString log = toQString(readFile(errorLogPath()));
  EXPECT_EQ(log.count("Log opened "), 2);
  EXPECT_EQ(log.count("Log closed "), 1);
}

TEST(SmokeTest, TheCookiesOfABrowserOpenASite) {
  TestSite site;
  site.setRule([](const Request& request) {
    const auto cookie = request.headers.find("cookie");
    if (cookie == request.headers.end() || cookie->second != "session=open") return Resource{.status = 403};
    if (request.path == "/") return Resource{.body = "<a href=\"a.jpg\">"};
    return Resource{.type = "image/jpeg", .body = fileOf('a', 20000)};
  });
  ProgramRun program(MORVANE_PROGRAM);
  program.addAutoScanSite(site.host(), "10", "1", {"jpg"});
  std::ofstream(gProgramFolder + "/cookies.txt")
      << "# Netscape HTTP Cookie File\n127.0.0.1\tFALSE\t/\tFALSE\t0\tsession\topen\n";
  ASSERT_TRUE(program.start());
  EXPECT_TRUE(waitFor([&] { return savedFiles().contains("a.jpg"); }, 60'000));
  EXPECT_TRUE(program.terminate());
}

}  // namespace
