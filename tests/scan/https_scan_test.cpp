// A site whose location was typed with "https://".

#include <QByteArray>
#include <QSignalSpy>

#include "ScanTest.h"
#include "testkit/TlsFront.h"
#include "transfer/HttpsHosts.h"

namespace {

using namespace mvtest;

class HttpsScanTest : public ScanTest<ProgramTest> {
 protected:
  HttpsScanTest() {
    mv::InternetTransfer::forgetSharedState();
    mv::InternetTransfer::limits().certificates = front.certificateFile();
    setSite("name = \"https://" + front.host() + "/start/index.htm\", domain = \"https:\"");
    prepare(process);
    process.Domain = "https:";
  }
  ~HttpsScanTest() override {
    mv::InternetTransfer::forgetSharedState();
    mv::InternetTransfer::limits() = {};
  }
  bool scan(int wanted) {
    process.initWindow();
    const bool done = waitFor([&] { return pages.count() + process.ErrorCount() >= wanted; });
    process.tmrOKToDownload.stop();
    return done;
  }

  TlsFront front{site};
  mv::ScanProcess process;
  QSignalSpy pages{&process, &mv::ScanProcess::pageProcessed};
};

TEST_F(HttpsScanTest, IsHarvestedByHttpsOnly) {
  process.LoginFormID = 20;
  addSiteField(17, "ann");
  addSiteField(18, "secret");
  site.page("/start/index.htm", "<a href=\"next.htm\"><a href=\"/top.htm\"><a href=\"http://" + front.host() +
                                    "/plain.htm\">"
                                    "<a href=\"http://elsewhere.invalid/x.htm\"><img src=\"a.jpg\">");
  site.page("/start/next.htm", "<a href=\"./deep.htm\">");
  for (const char* path : {"/top.htm", "/plain.htm", "/start/deep.htm"}) site.page(path, "x");
  ASSERT_TRUE(scan(5));
  EXPECT_EQ(process.ErrorCount(), 0) << process.lastError().reason;
  std::vector<std::string> stored;
  for (mv::Recordset rows = mv::gDatabase.query("select url from link order by url"); !rows.endOfRows();
       rows.moveNext())
    stored.push_back(rows.text("url").substr(front.host().size()));
  EXPECT_EQ(stored,
            (std::vector<std::string>{"/plain.htm", "/start/a.jpg", "/start/deep.htm", "/start/next.htm", "/top.htm"}));
  EXPECT_EQ(front.plain(), 0);
  const std::string basic = "Basic " + QByteArray("ann:secret").toBase64().toStdString();
  for (const Request& request : site.requests()) EXPECT_EQ(request.headers.at("authorization"), basic) << request.path;
  EXPECT_EQ(mv::listedText(process.lvwLinks.row(0).url), "https://ann:***@" + front.host() + "/start/index.htm");
}

TEST_F(HttpsScanTest, WithoutHttpsThereIsAnErrorWithItsReason) {
  mv::InternetTransfer::limits().certificates.clear();
  ASSERT_TRUE(scan(1));
  EXPECT_TRUE(process.lastError().reason.starts_with("The server's certificate has an unknown issuer"))
      << process.lastError().reason;
  EXPECT_EQ(front.plain(), 0);
}

TEST_F(HttpsScanTest, AnAbsoluteHttpsLinkTellsThatItsHostSpeaksHttps) {
  const TlsFront foreign(site);
  mv::clsLinkParser parser;
  parser.SiteID = siteId;
  parser.Domain = front.host();
  for (const long hops : {0L, 1L}) {
    parser.DomainHops = hops;
    parser.URL = "https://" + foreign.host() + "/x.htm";
    parser.AddLinkToDatabase();
    EXPECT_EQ(parser.Flag, hops == 1);
    EXPECT_EQ(mv::httpsUse(foreign.host()), hops == 0 ? mv::HttpsUse::No : mv::HttpsUse::Tried)
        << "of links that count";
  }
}

}  // namespace
