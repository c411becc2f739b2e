// Logging in to a site: the request made of a page's form, and what a scan makes of it.

#include <QByteArray>

#include "ScanTest.h"
#include "app/ErrorLog.h"
#include "scan/LoginRequest.h"
#include "scan/ScanTexts.h"
#include "scan_windows/frmScan.h"
#include "testkit/Controls.h"

namespace {

using namespace mvtest;
using mv::LoginField;
using mv::LoginRequest;
using Outcome = LoginRequest::Outcome;

std::string lowered(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

TEST(LoginRequest, TakesTheUsersValuesAndThePages) {
  const std::vector<LoginField> fields = {{"address", "<form name=\"in\"", false, "", "host/log in.cgi"},
                                          {"user", "name=\"u\" value=", true, "Us er", "\xC3\xA4&b=c d+~*"},
                                          {"token", "\"t\" value=", false, "t", "unused"},
                                          {"next", "value=", false, "n", ""}};
  const std::string start = "<FORM Name=\"in\"><INPUT Name=\"u\" Value=\"\">";
  const std::string token = "<input name=\"t\" VALUE=\"aB/\xC3\x89=\">";
  const std::string end = "<input value=\"\">";
  const auto outcome = [&](const std::string& form) { return LoginRequest(fields, lowered(form), form).outcome(); };

  const std::string whole = start + token + end;
  const std::string lower = lowered(whole);
  const LoginRequest request(fields, lower, whole);
  EXPECT_EQ(request.address(), "host/log in.cgi?Us+er=%C3%A4%26b%3Dc+d%2B%7E*&t=aB%2F%C3%89%3D&n=");
  EXPECT_EQ(request.shownAddress(), "host/log in.cgi");

  EXPECT_EQ(outcome("<form name=\"search\">" + token), Outcome::OtherForm);
  EXPECT_EQ(outcome(start + end), Outcome::FieldMissing);
  EXPECT_EQ(outcome(start + "<input value=\"\">" + token), Outcome::FieldMissing) << "the fields in another order";
  EXPECT_EQ(outcome(start + token + "<input value=\"never ends"), Outcome::FieldMissing);
  EXPECT_EQ(LoginRequest({}, lower, whole).outcome(), Outcome::NoFields);
  EXPECT_EQ(LoginRequest({fields[0]}, lower, whole).address(), "host/log in.cgi?") << "an address and nothing else";

  const auto ofLength = [&](std::size_t size) {
    return outcome(start + "<input name=\"t\" value=\"" + std::string(size, 'X') + "\">" + end);
  };
  EXPECT_EQ(ofLength(100'000), Outcome::Ready);
  EXPECT_EQ(ofLength(2'000'000), Outcome::FieldMissing);
}

class LoginTest : public ScanTest<WindowTest> {
 protected:
  LoginTest() {
    mv::InternetTransfer::forgetSharedState();
    insert("form (id, name, form_type)", {{"50", "Members", "Authentication"}});
    // Stored in another order than that of their numbers.
    insert(
        "field_info (id, form_id, logical_number, name, search_string, supplied_by_user, field_name, "
        "field_value)",
        {{"61", "50", "10", "last", "name=\"token\" value=", "no", "token", ""},
         {"62", "50", "2", "user", "name=\"user\"", "yes", "user", "nobody"},
         {"63", "50", "3", "password", "name=\"password\"", "yes", "password", ""},
         {"60", "50", "1", "address", "action=\"/in\"", "no", "", site.host() + "/cgi/in"}});
    addSiteField(62, "ann");
    addSiteField(63, "sec/ret ?#&%41");
    page("/", form("T0kEn"));
    window = new mv::frmScan;
    prepare(process());
    process().LoginFormID = 50;
  }

  static std::string form(const std::string& token) {
    return "<FORM ACTION=\"/in\"><input Name=\"user\"><input name=\"password\"><input NAME=\"token\" VALUE=\"" + token +
           "\"></FORM>";
  }
  void page(const std::string& path, const std::string& html) { site.page(path, html); }
  mv::ScanProcess& process() { return window->process(); }
  std::string status() { return text("lblInfoLogin"); }
  std::string text(const char* label) { return textOf(window, label).toStdString(); }
  // Scans until so many pages, answers to a login included, are done.
  void scan(int pages) {
    int done = 0;
    const auto counting = QObject::connect(&process(), &mv::ScanProcess::pageProcessed, [&done] { ++done; });
    const long failed = process().ErrorCount();
    window->initWindow();
    ASSERT_TRUE(waitFor([&] { return done + static_cast<int>(process().ErrorCount() - failed) >= pages; }));
    QObject::disconnect(counting);
    process().tmrOKToDownload.stop();
    EXPECT_TRUE(waitFor([this] { return status() == mv::loginText(process().status().login); }));
  }
  int logins() const {
    const auto requests = site.requests();
    return static_cast<int>(std::count_if(requests.begin(), requests.end(),
                                          [](const Request& request) { return request.path.starts_with("/cgi/in?"); }));
  }
  void expectSecretNotShown() {
    std::string shown = readFile(mv::errorLogPath());
    for (const QLabel* label : window->findChildren<QLabel*>()) shown += label->text().toStdString() + "\n";
    shown += mv::pageAddressText(process().status()) + process().lastError().subject + process().lastError().reason;
    EXPECT_EQ(shown.find("sec"), std::string::npos) << shown;
  }
  static constexpr const char* kLogin = "/cgi/in?user=ann&password=sec%2Fret+%3F%23%26%2541&token=T0kEn";

  QPointer<mv::frmScan> window;
};

TEST_F(LoginTest, AWrongPasswordIsTriedOncePerPageAndThreeTimesInAll) {
  page(kLogin, form("T0kEn") + "<a href=\"/next.htm\">");
  page("/next.htm", form("T0kEn"));
  scan(2);
  EXPECT_EQ(status(), "Login: refused, the login form came again");
  EXPECT_EQ(logins(), 1);
  scan(12);  // the start page again and again
  EXPECT_EQ(status(), "Login: refused, the login form came again; not tried any more");
  EXPECT_EQ(logins(), 1 + 3) << "a scan that is started anew tries again";

  site.add(kLogin, {.status = 401});
  scan(12);
  EXPECT_EQ(status(), "Login: failed (401 Unauthorized); not tried any more");
  EXPECT_EQ(logins(), 1 + 3 + 3);
  expectSecretNotShown();
}

TEST_F(LoginTest, EveryOtherEndIsSaid) {
  const std::string search = "<form action=\"/search\"></form>";
  const std::pair<std::string, const char*> cases[] = {
      {"<p>no form", "Login: no page has shown the login form yet"},
      {"<form action=\"/in\">never ended", "Login: no page has shown the login form yet"},
      {search + form("T0kEn"), "Login: nothing sent, the form is another one"},
      {"<form action=\"/in\"><input name=\"password\"><input name=\"user\"></form>",
       "Login: nothing sent, the form lacks \"password\""},
  };
  for (const auto& [html, text] : cases) {
    page("/", html);
    scan(1);
    EXPECT_EQ(status(), text) << html;
  }
  EXPECT_EQ(logins(), 0);
  page("/", form("T0kEn"));
  site.add(kLogin, {.status = 401});
  scan(2);
  EXPECT_EQ(status(), "Login: failed (401 Unauthorized)");
  EXPECT_EQ(text("lblInfoErrorPage"), site.host() + "/cgi/in");
  expectSecretNotShown();

  mv::gDatabase.execute("delete from field_info where form_id = 50");
  scan(1);
  EXPECT_EQ(status(), "Login: nothing sent, the form has no fields");
  EXPECT_EQ(logins(), 1);
}

TEST_F(LoginTest, AFieldWithoutTheSitesValueSendsItsDefaultAndAHugeOneGoesOut) {
  mv::gDatabase.execute("delete from site_field_xref where field_id = 62");
  const std::string token(100'000, 'T');
  page("/", form(token));
  scan(2);
  ASSERT_EQ(site.requests().size(), 2U);
  EXPECT_TRUE(site.requests()[1].path == "/cgi/in?user=nobody&password=sec%2Fret+%3F%23%26%2541&token=" + token);
}

// The form is looked for in pieces, too.
TEST_F(LoginTest, AFormBehindMegabytesIsFoundWithoutHoldingTheWindows) {
  std::string page;
  while (page.size() < 30'000'000) page += "<p>Some text of a page.</p><font>";
  site.page("/", page.replace(page.rfind("<font>"), std::string::npos, form("T0kEn")));
  // Receiving and decoding the page is the transfer's work.
  std::optional<LoopMeter> turn;
  QObject::connect(&process().Inet2, &mv::InternetTransfer::StateChanged, &process(), [&turn](int, int state) {
    if (state == mv::kResponseCompleted && !turn) turn.emplace();
  });
  window->initWindow();
  ASSERT_TRUE(waitFor([this] { return logins() == 1; }, 60'000));
  ASSERT_TRUE(turn);
  EXPECT_LT(turn->longest, 50);
}

// A foreign host is one of another name or of another port.
TEST_F(LoginTest, TheSitesPasswordGoesToNoForeignHost) {
  TestSite otherPort;
  const std::string otherName = "localhost:" + std::to_string(site.port());
  process().LoginFormID = 20;
  process().DomainHops = 2;
  addSiteField(17, "ann");
  addSiteField(18, "p@ss/w:rd?");
  const std::string basic = "Basic " + QByteArray("ann:p@ss/w:rd?").toBase64().toStdString();
  page("/", "<a href=\"http://" + otherPort.host() + "/foreign.htm\"><a href=\"http://" + otherName +
                "/renamed.htm\"><a href=\"/own.htm\"><a href=\"http://" + otherPort.host() + "/x.jpg\">");
  otherPort.page("/foreign.htm", "x");
  page("/renamed.htm", "x");
  page("/own.htm", "x");
  scan(4);
  for (const Request& request : site.requests())
    EXPECT_EQ(request.headers.count("authorization"), request.headers.at("host") == site.host() ? 1U : 0U)
        << request.path;
  EXPECT_EQ(site.requests()[0].headers.at("authorization"), basic);
  ASSERT_EQ(otherPort.requests().size(), 1U);
  EXPECT_EQ(otherPort.requests()[0].headers.count("authorization"), 0U);

  site.add("/", {.status = 401});
  scan(1);
  EXPECT_EQ(status(), "Login: user name and password refused (401)");
}

// Whoever is not logged in any more is shown the form in place of the page.
TEST_F(LoginTest, ThePageBehindTheFormIsReadAgain) {
  bool loggedIn = false;
  site.setRule([&loggedIn](const Request& request) -> std::optional<Resource> {
    if (request.path.starts_with("/cgi/in?")) {
      loggedIn = true;
      return Resource{.body = "welcome"};
    }
    if (loggedIn && request.path == "/") return Resource{.body = "<a href=\"/inside.htm\">"};
    return std::nullopt;
  });
  page("/inside.htm", "x");
  scan(3);
  EXPECT_EQ(status(), "Login: answered, the login form is gone");
  EXPECT_TRUE(waitForStatus("/inside.htm", "False"));
  EXPECT_EQ(site.requestCount("/"), 2);
  EXPECT_EQ(process().status().pagesProcessed, 1);
}

TEST_F(LoginTest, APageWhoseFormCouldNotBeLookedAtIsReadAgain) {
  page("/", "<a href=\"/members.htm\">");
  page("/members.htm", form("T0kEn"));
  bool loggedIn = false;
  site.setRule([&loggedIn](const Request& request) -> std::optional<Resource> {
    loggedIn = loggedIn || request.path.starts_with("/cgi/in?");
    if (!loggedIn || request.path == "/") return std::nullopt;
    return Resource{.body = "<a href=\"/inside.htm\">"};
  });
  mv::gDatabase.execute("alter table field_info rename to away");
  window->initWindow();
  ASSERT_TRUE(waitFor([this] { return !dialogs.messages().empty(); }));
  mv::gDatabase.execute("alter table away rename to field_info");
  EXPECT_TRUE(waitFor([this] { return count("link", "url like '%/inside.htm'") == 1; }));
}

// The answer to a wrong password is a page without the form.
TEST_F(LoginTest, AFormThatStaysBehindAnAnswerIsARefusal) {
  page(kLogin, "wrong password");
  scan(12);
  EXPECT_EQ(status(), "Login: refused, the login form came again; not tried any more");
  EXPECT_EQ(logins(), 3);
}

}  // namespace
