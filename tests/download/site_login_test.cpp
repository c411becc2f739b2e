// Whose login goes along with the files of a site, and where to.

#include <QByteArray>

#include "download/DownloadTest.h"
#include "testkit/TlsFront.h"

namespace {

using namespace mvtest;
using mv::InternetTransfer;

class SiteLoginTest : public DownloadTest<ProgramTest> {
 protected:
  SiteLoginTest() { InternetTransfer::forgetSharedState(); }
  ~SiteLoginTest() override {
    InternetTransfer::forgetSharedState();
    InternetTransfer::limits() = {};
  }
  // Another site, with a file of each of these addresses.
  void addSiteWith(const std::string& name, const std::vector<std::string>& addresses) {
    siteId = addSite(name, saveFolder);
    for (const std::string& address : addresses) addLink(address, "jpg");
    auto& process = *processes.emplace_back(std::make_unique<mv::DownloadProcess>());
    prepare(process);
    process.SiteName = name;
  }
  void downloadAll() {
    for (const auto& process : processes) process->initWindow();
    EXPECT_TRUE(waitFor([this] { return allDone(); }));
  }
  static std::string basic(const std::string& pair) {
    return "Basic " + QByteArray::fromStdString(pair).toBase64().toStdString();
  }
  // Paths asked for with what was sent as authorization.
  static std::map<std::string, std::string> sent(const TestSite& asked) {
    std::map<std::string, std::string> result;
    for (Request request : asked.requests()) result[request.path] = request.headers["authorization"];
    return result;
  }

  std::vector<std::unique_ptr<mv::DownloadProcess>> processes;
};

TEST_F(SiteLoginTest, SitesOfOneHostKeepTheirLoginsApart) {
  TestSite foreign;
  const std::string picture(3000, 'p');
  for (const char* name : {"/ann.jpg", "/bob.jpg", "/none.jpg"}) site.file(name, "image/jpeg", picture);
  foreign.file("/far.jpg", "image/jpeg", picture);
  addSiteWith(site.host() + "/ann", {site.host() + "/ann.jpg", foreign.host() + "/far.jpg"});
  InternetTransfer::rememberLogin(siteId, site.host(), "ann", "one");
  addSiteWith(site.host() + "/bob", {site.host() + "/bob.jpg"});
  InternetTransfer::rememberLogin(siteId, site.host(), "bob", "two");
  addSiteWith(site.host() + "/none", {site.host() + "/none.jpg"});
  downloadAll();
  using Sent = std::map<std::string, std::string>;
  EXPECT_EQ(sent(site), (Sent{{"/ann.jpg", basic("ann:one")}, {"/bob.jpg", basic("bob:two")}, {"/none.jpg", ""}}));
  EXPECT_EQ(sent(foreign), (Sent{{"/far.jpg", ""}}));
}

TEST_F(SiteLoginTest, TheFilesOfASiteTypedWithHttpsGoByHttps) {
  const TlsFront front(site);
  InternetTransfer::limits().certificates = front.certificateFile();
  site.file("/a.jpg", "image/jpeg", "picture");
  addSiteWith("https://" + front.host() + "/x", {front.host() + "/a.jpg"});
  downloadAll();
  EXPECT_EQ(site.requestCount("/a.jpg"), 1);
  EXPECT_EQ(front.plain(), 0);
  EXPECT_EQ(savedFiles().size(), 1U);
}

}  // namespace
