// A user defines how to log in to a site, enters it, and finds the files that only members get.

#include <QByteArray>
#include <QFile>
#include <atomic>

#include "WholeUse.h"
#include "base/Text.h"
#include "forms_windows/frmFormManager.h"
#include "frmNewField.h"
#include "frmNewForm.h"
#include "scan_windows/frmScan.h"
#include "sites_windows/frmNew.h"
#include "sites_windows/frmWebSites.h"
#include "testkit/TestSite.h"

namespace {

using namespace mv;
using namespace mvtest;

const std::string kPicture(3000, 'p');

class LoginUse : public WholeUse {
 protected:
  void addField(const std::vector<QString>& values, bool byUser) {
    click(window<frmNewForm>(), "cmdNewField");
    auto* editor = window<frmNewField>();
    const char* boxes[] = {"txtName",   "txtFieldNumber", "txtSearchString",
                           "txtPrompt", "txtFieldName",   "txtFieldValue"};
    for (std::size_t i = 0; i < values.size(); ++i) type(editor, boxes[i], values[i]);
    if (byUser) QTest::keyClick(control<QAbstractButton>(editor, "chkSuppliedByUser"), Qt::Key_Space);
    QTest::keyClick(editor->focusWidget(), Qt::Key_Return);
  }

  // A site with a login, filled in and started.
  void startSite(const std::string& host, const QString& folder, const QString& method,
                 const std::vector<std::pair<QString, QString>>& answers) {
    chooseFromMenu("mnuTools", "mnuToolsWebSiteManager");
    auto* sites = window<frmWebSites>();
    click(sites, "New");
    auto* editor = window<frmNew>();
    type(editor, "txtURL", toQString(host));
    type(editor, "txtLowerLimit", "1");
    dialogs.nextFolders.push_back(folder);
    click(editor, "cmdBrowse");
    chooseEntry(*control<QComboBox>(editor, "cmboAuthenticationService"), method);
    int row = 0;
    for (const auto& [prompt, answer] : answers) {
      const std::string number = std::to_string(++row);
      EXPECT_EQ(control<QLabel>(editor, ("lblFieldName" + number).c_str())->text(), prompt);
      type(editor, ("txtFieldName" + number).c_str(), answer);
    }
    click(editor, "cmdOK");
    choose(control<ListView>(sites, "lvwSites"), toQString(host));
    click(sites, "Start");
  }

  void expectFile(const QString& path) {
    ASSERT_TRUE(waitFor([&] { return QFile::exists(path); }, 60'000)) << path.toStdString();
    EXPECT_EQ(readFile(toUtf8(path)), kPicture);
    EXPECT_TRUE(dialogs.messages().empty());
  }
};

Resource answer(int status, const std::string& body, std::map<std::string, std::string> headers = {}) {
  return {.body = body, .status = status, .headers = std::move(headers)};
}

TEST_F(LoginUse, ASiteWithALoginPageOpensToTheScanAndToTheDownloads) {
  TestSite site;
  site.setRule([](const Request& request) -> std::optional<Resource> {
    const auto cookie = request.headers.find("cookie");
    const bool isMember = cookie != request.headers.end() && cookie->second == "session=open";
    if (request.path == "/")
      return answer(200, R"(<FORM Action="/Login"><INPUT Name="who"><INPUT Name="key" Type="password">
                            <INPUT Name="Token" VALUE="aBcD+/eF=="></FORM>)");
    if (request.path == "/login.cgi?who=Ann+Smith&key=p%2F%3F%23%26%25+x&t=aBcD%2B%2FeF%3D%3D")
      return answer(302, "", {{"Location", "/members/start?welcome=a/b"}, {"Set-Cookie", "session=open; Path=/"}});
    if (!isMember) return answer(403, "members only");
    if (request.path.ends_with(".jpg")) return answer(200, kPicture);
    return answer(200, "<IMG SRC=\"inside.jpg\"><form action=\"/search\"></form>");
  });

  chooseFromMenu("mnuTools", "mnuToolsFormManager");
  click(window<frmFormManager>(), "New");
  auto* form = window<frmNewForm>();
  type(form, "txtName", "Club");
  type(form, "txtDescription", "Ask the club for a key.");
  chooseEntry(*control<QComboBox>(form, "cmboFormType"), "Authentication");
  click(form, "cmdApply");
  addField({"Address", "1", "action=\"/login\"", "", "", toQString(site.host()) + "/login.cgi"}, false);
  addField({"Token", "4", "name=\"token\" value=", "", "t"}, false);
  addField({"User", "2", "name=\"who\"", "Your name", "who"}, true);
  addField({"Key", "3", "name=\"key\"", "Your password", "key"}, true);
  click(form, "cmdOK");

  startSite(site.host(), toQString(folder()) + "/club", "Club",
            {{"Your name", "Ann Smith"}, {"Your password", "p/?#&% x"}});
  expectFile(toQString(folder()) + "/club/inside.jpg");
  auto* scan = window<frmScan>();
  click(scan, "btnDetails");
  EXPECT_EQ(control<QLabel>(scan, "lblInfoLogin")->text(), "Login: answered, the login form is gone");
  click(window<frmWebSites>(), "Stop");
}

// The session ends when the scan has opened it: the picture is answered with the login page, and comes after the next
// login.
TEST_F(LoginUse, AFileWaitsForTheLoginThatItsSessionNeeds) {
  std::atomic<int> logins{0};
  std::atomic<bool> isOpen{false};
  const std::string loginPage = std::string(2000, ' ') + R"(<form action="/login"><input name="who"></form>)";
  TestSite site;
  site.setRule([&](const Request& request) -> std::optional<Resource> {
    if (request.path.starts_with("/login.cgi")) {
      isOpen = ++logins > 1;  // the first session ends at once
      return answer(200, "<img src=\"inside.jpg\">");
    }
    if (!isOpen) return answer(200, loginPage);
    if (request.path.ends_with(".jpg")) return answer(200, kPicture);
    return answer(200, "<p>Welcome</p>");
  });
  insert("form (id, name, form_type)", {{"40", "Club", "Authentication"}});
  insert("field_info (id, form_id, field_name, field_value, logical_number, name, search_string, supplied_by_user)",
         {{"400", "40", "", site.host() + "/login.cgi", "1", "Address", "action=\"/login\"", "no"}});
  startSite(site.host(), toQString(folder()) + "/club", "Club", {});
  expectFile(toQString(folder()) + "/club/inside.jpg");
  EXPECT_EQ(logins, 2);
  click(window<frmWebSites>(), "Stop");
}

// A start page with one picture, for those only who bear these credentials.
void serveMembers(TestSite& site, const std::string& credentials) {
  site.setRule([credentials](const Request& request) {
    const auto given = request.headers.find("authorization");
    if (given == request.headers.end() || given->second != credentials)
      return answer(401, "no", {{"WWW-Authenticate", "Basic realm=\"members\""}});
    return request.path == "/" ? answer(200, "<img src=\"inside.jpg\">") : answer(200, kPicture);
  });
}

TEST_F(LoginUse, TheBuiltInFormsWorkOutOfTheBox) {
  const QString password = "p/a?s#s@w:o%41r d";
  const std::string basic =
      "Basic " + QByteArray::fromStdString("ann@home:" + toUtf8(password)).toBase64().toStdString();
  const std::pair<QString, QString> user{"User name", "ann@home"};
  const std::pair<QString, QString> key{"Password", password};
  for (const bool userFirst : {true, false}) {
    TestSite site;
    serveMembers(site, basic);
    const QString folder = toQString(this->folder()) + (userFirst ? "/one" : "/two");
    startSite(site.host(), folder, userFirst ? "User Name and Password" : "Password and User Name",
              {userFirst ? user : key, userFirst ? key : user});
    expectFile(folder + "/inside.jpg");
    for (const Request& request : site.requests())
      EXPECT_EQ(request.headers.count("authorization"), 1U) << "not even the first request is refused";
    click(window<frmWebSites>(), "Stop");
  }
}

}  // namespace
