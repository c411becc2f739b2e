// Cookies taken from a browser.

#include <sys/stat.h>

#include <QFile>

#include "app/ErrorLog.h"
#include "net/CookieFile.h"
#include "testkit/Fixture.h"
#include "testkit/TestSite.h"
#include "transfer/InternetTransfer.h"

namespace {

using namespace mvtest;
using mv::CookieFile;

TEST(CookieLines, AreReadOrNamedWithoutTheirValue) {
  const std::string good = "host\tFALSE\t/\tFALSE\t0\tname\tsecret";
  const std::pair<std::string, std::string> cases[] = {
      {good, ""},
      {"#HttpOnly_.host\ttrue\t/a b\tTRUE\t1999999999.25\tname\tsecret", ""},
      {"host\tFALSE\t/\tFALSE\t0\tempty\t", ""},
      {"host\tFALSE\t/\tFALSE\t0\tempty", ""},
      {"__x\tFALSE\t/\tTRUE\t0\t__Host-a\tsecret", ""},
      {"# a comment", ""},
      {" \t", ""},
      {"name=secret; path=/", "1 field where 7 belong, separated by tabs"},
      {good + "\tmore", "8 fields where 7 belong, separated by tabs"},
      {"http://host\tFALSE\t/\tFALSE\t0\tname\tsecret", "no domain in the first field"},
      {"host\t1\t/\tFALSE\t0\tname\tsecret", "neither TRUE nor FALSE in the second field"},
      {"host\tFALSE\tx\tFALSE\t0\tname\tsecret", "no path in the third field"},
      {"host\tFALSE\t/\t\t0\tname\tsecret", "neither TRUE nor FALSE in the fourth field"},
      {"host\tFALSE\t/\tFALSE\tnever\tname\tsecret", "no time in the fifth field"},
      {"host\tFALSE\t/\tFALSE\t0\t\tsecret", "no name in the sixth field"},
      {"host\tFALSE\t/\tFALSE\t0\tname\tsec\x01ret", "a control character"},
      {"host\tFALSE\t/\tFALSE\t0\t__Secure-a\tsecret", "the flags are not those that its name demands"},
  };
  std::string text = "\xEF\xBB\xBF";
  std::vector<std::string> refused;
  for (const auto& [line, flaw] : cases) {
    text += line + "\r\n";
    if (!flaw.empty()) refused.push_back(flaw);
  }
  const mv::CookieLines lines = mv::parseCookies(text);
  EXPECT_EQ(lines.cookies.size(), 5U);
  EXPECT_EQ(lines.cookies[1], "#HttpOnly_.host\ttrue\t/a b\tTRUE\t1999999999\tname\tsecret");
  EXPECT_EQ(lines.cookies[3], "host\tFALSE\t/\tFALSE\t0\tempty\t");
  ASSERT_EQ(lines.refused.size(), refused.size());
  for (std::size_t i = 0; i < refused.size(); ++i) EXPECT_EQ(lines.refused[i].reason, refused[i]);
  EXPECT_EQ(lines.refused[0].line, 8);
}

class CookieFileTest : public ProgramTest {
 protected:
  CookieFileTest() {
    mv::InternetTransfer::forgetSharedState();
    site.page("/", "x");
    site.page("/deep/", "x");
  }
  void write(const std::string& text) {
    QFile file(QString::fromStdString(path));
    file.open(QIODevice::WriteOnly);
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    file.write(text.c_str());
  }
  std::string line(const std::string& place, const std::string& end, const std::string& nameAndValue) const {
    return "127.0.0.1\tFALSE\t" + place + "\tFALSE\t" + end + "\t" + nameAndValue + "\n";
  }
  // What a request sends.
  std::string cookies(const std::string& url) {
    transfer.Execute(url, "GET", mv::BodyMode::Text);
    waitFor([this] { return !transfer.StillExecuting(); });
    return site.requests().back().headers["cookie"];
  }
  bool sends(const std::string& expected) {
    return waitFor([&] { return cookies(site.url("/")) == expected; });
  }

  const std::string path = folder() + "/cookies.txt";
  TestSite site;
  mv::InternetTransfer transfer;
};

TEST_F(CookieFileTest, IsLoadedAtTheStartAndWhenItChanges) {
  write(line("/", "0", "session\tone") + line("/deep", "1999999999", "deep\ttwo") + line("/", "1000", "old\tthree"));
  const std::string before = readFile(path);
  const CookieFile file(path, 10);
  EXPECT_EQ(cookies(site.url("/")), "session=one");
  EXPECT_EQ(cookies(site.url("/deep/")), "deep=two; session=one");
  EXPECT_EQ(cookies("http://localhost:" + std::to_string(site.port()) + "/"), "") << "another host";
  EXPECT_EQ(readFile(path), before);

  write(line("/", "0", "session\tchanged"));
  EXPECT_TRUE(sends("session=changed"));
  EXPECT_EQ(cookies(site.url("/deep/")), "session=changed") << "a line that has gone";
  QFile::remove(QString::fromStdString(path));
  EXPECT_TRUE(sends(""));
  write(line("/", "0", "a\tnew"));
  EXPECT_TRUE(sends("a=new"));
  EXPECT_EQ(readFile(mv::errorLogPath()), "");
}

TEST_F(CookieFileTest, WhatIsWrongWithItStandsInTheLog) {
  write("no cookie\n" + line("/", "0", "good\tone") + line("/", "x", "bad\tsecret"));
  QFile::setPermissions(QString::fromStdString(path), QFile::ReadOwner | QFile::ReadOther);
  const CookieFile file(path, 10);
  EXPECT_EQ(cookies(site.url("/")), "good=one");
  const std::string log = readFile(mv::errorLogPath());
  EXPECT_NE(log.find("line 1 of " + path + " is not taken: 1 field "), std::string::npos) << log;
  EXPECT_NE(log.find("line 3 of "), std::string::npos) << log;
  EXPECT_NE(log.find("can be read by other users"), std::string::npos) << log;
  EXPECT_EQ(log.find("secret"), std::string::npos) << log;

  QFile::remove(QString::fromStdString(path));
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  EXPECT_TRUE(waitFor([] {
    return readFile(mv::errorLogPath()).find("cookies.txt is not a file") != std::string::npos;
  })) << "a pipe holds nobody";
  EXPECT_TRUE(sends("")) << "the cookies of a file that is gone";
}

}  // namespace
