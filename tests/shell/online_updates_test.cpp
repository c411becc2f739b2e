// The update server's feeds from the start of the program, or the Start button, to rows and windows.

#include <QPlainTextEdit>

#include "app/ErrorLog.h"
#include "base/Text.h"
#include "base/UserSettings.h"
#include "desktop/Browser.h"
#include "help_windows/frmMessage.h"
#include "program/StartUp.h"
#include "shell/frmDownloadManager.h"
#include "sites_windows/frmWebSites.h"
#include "testkit/Controls.h"
#include "testkit/Fixture.h"
#include "testkit/TestSite.h"
#include "transfer/InternetTransfer.h"

namespace {

using namespace mv;
using namespace mvtest;

constexpr const char* kFormOverview = "/morvane2000/formupdates/overview.txt";
constexpr const char* kHelpOverview = "/morvane2000/help/helpoverview.txt";
constexpr const char* kMessage = "/morvane2000/message.txt";
constexpr double kLongestStall = 50;    // milliseconds
constexpr double kLongestLayout = 250;  // milliseconds
constexpr int kMany = 10'000;

std::string form(const std::string& name) {
  return "---START FORM---\r\n" + name + "\r\nAbout " + name + "\r\nAuthentication\r\n---END FORM---\r\n";
}

std::string field(const std::string& name) {
  return "---START FIELD---\r\n" + name + "\r\n1\r\nname='u'\r\nyes\r\nNO PROMPT\r\nuser\r\n---END FIELD---\r\n";
}

class OnlineUpdatesTest : public ProgramTest {
 protected:
  OnlineUpdatesTest() {
    setUpdateHost(site.host());
    gDatabase.execute("delete from help_info");
  }
  ~OnlineUpdatesTest() override {
    if (startUp_) startUp_->mainWindow()->close();
    startUp_.reset();
  }

  static void setUpdateHost(const std::string& host) {
    saveUserSetting("Morvane2000", "Servers", "UpdateHost", toQString(host));
  }
  void serve(const std::string& path, const std::string& text, int delayMs = 0) {
    site.add(path, {.type = "text/plain", .body = text, .delayMs = delayMs});
  }
  std::string definitionLine(const std::string& name, const std::string& path) {
    return name + ",2001-02-03," + site.url(path) + "\r\n";
  }
  std::string topicLine(int id, const std::string& path) {
    return std::to_string(id) + ", " + site.url(path) + "--Some topic\n";
  }
  void start() {
    gDatabase.close();
    startUp_ = std::make_unique<StartUp>();
    ASSERT_TRUE(startUp_->run(folder()));
  }
  void startWithChecks(const char* autoUpdate, const char* helpServer) {
    gDatabase.execute("update pref set auto_update = " + quoted(autoUpdate) + ", help_server = " + quoted(helpServer));
    start();
  }
  frmDownloadManager* main() { return startUp_->mainWindow(); }
  bool isShown(const char* panel) { return control<QWidget>(main(), panel).isVisible(); }
  QString label(const char* name) { return textOf(main(), name); }
  bool waitForEnd() {
    return waitFor([this] { return !isShown("pictUpdates") && !isShown("pictHelpUpdates"); }, 120'000);
  }
  std::string log() { return readFile(errorLogPath()); }
  // What the log says behind the stamp of the start.
  QStringList refusals() { return toQString(log()).split("\r\n", Qt::SkipEmptyParts).mid(2); }

  TestSite site;
  std::unique_ptr<StartUp> startUp_;
};

TEST_F(OnlineUpdatesTest, NewDefinitionsAndTopicsComeInAtTheStart) {
  insert("form_def_update (name, release_date, retrieved, url)", {{"Known", "1", "yes", ""}});
  insert("help_info (id, subject)", {{"12", "Mine"}});
  serve(kFormOverview, definitionLine("Forum", "/forum.txt") + definitionLine("known", "/known.txt") + "\r\n" +
                           definitionLine("Shop", "/shop.txt") + "---END---\r\n" + definitionLine("Not", "/not.txt"));
  serve("/forum.txt", form("Forum") + field("User") + field("Address") + form("Second"));
  serve("/shop.txt", form("Shop") + field("Customer"));
  serve(kHelpOverview,
        topicLine(11, "/t11.txt") + topicLine(12, "/t12.txt") + topicLine(13, "/t13.txt") + "---END---\n");
  serve("/t11.txt", "11\nSites\nStarting\nPress Start.\nThat is all.\n");
  serve("/t13.txt", "13\nSites\nStopping\nPress Stop.\n", 300);
  startWithChecks("yes", "yes");
  EXPECT_TRUE(isShown("pictUpdates"));
  EXPECT_EQ(label("lblUpdates"), "Checking for new Form Definitions");
  EXPECT_TRUE(isShown("pictHelpUpdates"));
  EXPECT_EQ(label("lblHelpUpdates"), "Checking the Help Server");
  ASSERT_TRUE(waitFor([this] { return site.requestCount("/t13.txt") == 1; }));
  EXPECT_EQ(label("lblHelpUpdates"), "Adding help for Sites: Starting");
  ASSERT_TRUE(waitForEnd());

  EXPECT_EQ(value("select group_concat(name || release_date || retrieved, ' ') from form_def_update"),
            "Known1yes Forum2001-02-03yes Shop2001-02-03yes");
  EXPECT_EQ(value("select group_concat(id || name || description || form_type, ' ') from form where id >= 100"),
            "100ForumAbout ForumAuthentication 101SecondAbout SecondAuthentication 102ShopAbout ShopAuthentication");
  EXPECT_EQ(value("select group_concat(id || ':' || form_id || name || prompt || field_name || field_value, ' ') from "
                  "field_info where id >= 100"),
            "100:100Useruser 101:100Addressuser 102:102Customeruser");
  EXPECT_EQ(value("select group_concat(id || subject || the_topic || hide, ' ') from help_info where id <> 12"),
            "11SitesStartingno 13SitesStoppingno");
  EXPECT_EQ(value("select the_text from help_info where id = 11"), "Press Start.\r\nThat is all.\r\n");
  EXPECT_EQ(site.requestCount("/t12.txt"), 0) << "a topic of that number is there";
  EXPECT_EQ(site.requestCount("/known.txt") + site.requestCount("/not.txt"), 0);
  EXPECT_EQ(control<ListView>(main(), "lvwOverview").rowCount(), 0);
  EXPECT_EQ(columnTexts(control<ListView>(main(), "lvwHelpOverview"), 2), std::vector<QString>({"no", "no", "no"}));
  EXPECT_TRUE(dialogs.messages().empty());
  EXPECT_EQ(refusals(), QStringList());

  main()->getFormUpdates();
  main()->getHelp();
  ASSERT_TRUE(waitForEnd());
  EXPECT_EQ(site.requestCount("/forum.txt") + site.requestCount("/t11.txt"), 2) << "nothing is fetched twice";
}

TEST_F(OnlineUpdatesTest, AServerThatFailsIsPassedOverInSilence) {
  const std::string overview = definitionLine("Forum", "/forum.txt");
  const Resource answers[] = {{.body = overview},
                              {.status = 500},
                              {.fault = Fault::Refuse},
                              {.fault = Fault::Garbage},
                              {.body = overview + "---END---\r\n", .fault = Fault::ShortBody},
                              {.body = overview + "---END---\r\n" + std::string(4 << 20, ' ')}};
  startWithChecks("no", "no");
  EXPECT_FALSE(isShown("pictUpdates") || isShown("pictHelpUpdates")) << "the preferences ask for nothing";
  const auto check = [this] {
    main()->getFormUpdates();
    main()->getHelp();
    main()->getMessage();
    EXPECT_TRUE(isShown("pictUpdates") && isShown("pictHelpUpdates"));
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(dialogs.messages().empty());
    EXPECT_EQ(count("form_def_update") + count("help_info"), 0);
    EXPECT_EQ(refusals(), QStringList());
  };
  for (const Resource& answer : answers) {
    for (const char* path : {kFormOverview, kHelpOverview, kMessage}) site.add(path, answer);
    check();
  }
  setUpdateHost("127.0.0.1:1");
  check();
}

TEST_F(OnlineUpdatesTest, AFailureInTheMiddleKeepsWhatWasImported) {
  serve(kFormOverview, definitionLine("First", "/first.txt") + definitionLine("Broken", "/broken.txt") +
                           definitionLine("Third", "/third.txt") + definitionLine("Fourth", "/fourth.txt") +
                           "---END---");
  serve("/first.txt", form("First"));
  serve("/broken.txt", form("Broken") + field("Whole") + field("Half").substr(0, 40));
  serve("/fourth.txt", form("Fourth"));
  startWithChecks("yes", "no");
  ASSERT_TRUE(waitForEnd());
  EXPECT_EQ(value("select group_concat(name || retrieved, ' ') from form_def_update"),
            "Firstyes Brokenyes Thirdno Fourthno")
      << "the third is not there: nothing is tried again before the next check";
  EXPECT_EQ(count("field_info", "name = \"Whole\""), 1);
  EXPECT_EQ(refusals(), QStringList("Online update: the rest of Broken not taken: it cannot be read"));
  EXPECT_EQ(columnTexts(control<ListView>(main(), "lvwOverview")), std::vector<QString>({"Third", "Fourth"}));

  serve("/third.txt", form("Third"));
  main()->fetchNextFormUpdate();
  ASSERT_TRUE(waitFor([this] { return count("form", "name = \"Fourth\"") == 1; }));
  ASSERT_TRUE(waitForEnd());
  EXPECT_EQ(count("form_def_update", "retrieved = \"no\""), 0);
  EXPECT_EQ(site.requestCount("/first.txt"), 1);
}

TEST_F(OnlineUpdatesTest, AnImportThatTheDatabaseRefusesIsReportedAndTheNextOneComes) {
  gDatabase.execute("insert into form (id, name) values (101, \"In the way of the second\")");
  serve(kFormOverview, definitionLine("One", "/one.txt") + definitionLine("Two", "/two.txt") + "---END---");
  serve("/one.txt", form("First") + form("Second") + form("Third"));
  serve("/two.txt", form("Fourth"));
  startWithChecks("yes", "no");
  ASSERT_TRUE(waitFor([this] { return count("form", "name = \"Fourth\"") == 1; }));
  ASSERT_TRUE(waitForEnd());
  EXPECT_EQ(count("form", "name = \"First\""), 1);
  EXPECT_EQ(count("form", "name = \"Third\""), 0);
  EXPECT_EQ(count("form_def_update", "retrieved = \"yes\""), 2);
  EXPECT_EQ(dialogs.messages().size(), 1u);
}

TEST_F(OnlineUpdatesTest, ADatabaseClosedForMaintenanceIsWaitedFor) {
  serve(kFormOverview, definitionLine("One", "/one.txt") + "---END---");
  serve("/one.txt", form("First"));
  start();
  gDatabase.close();
  main()->getFormUpdates();
  ASSERT_TRUE(waitFor([this] { return label("lblUpdates") == "Processing overview information"; }));
  int turns = 0;  // of the event loop, in any of which the import could go on
  waitFor([&] { return ++turns > 5; });
  gDatabase.open(gDatabasePath);
  ASSERT_TRUE(waitForEnd());
  EXPECT_EQ(count("form", "name = \"First\""), 1);
}

TEST_F(OnlineUpdatesTest, MaintenanceInTheMiddleOfTheListIsNotNoticed) {
  start();
  insertNumbered("form_def_update (name, retrieved, url)", 1, 50'000, "i, 'no', 'no address'");
  const auto& list = control<ListView>(main(), "lvwOverview");
  main()->fetchNextFormUpdate();
  ASSERT_TRUE(waitFor([&] { return list.rowCount() > 0; }));
  ASSERT_LT(list.rowCount(), 50'000);
  gDatabase.close();
  gDatabase.open(gDatabasePath);
  EXPECT_TRUE(waitFor([&] { return list.rowCount() == 50'000; }));
}

TEST_F(OnlineUpdatesTest, HostileTextsChangeNothingButTheErrorLog) {
  const long forms = count("form");
  const std::string quote = "\"); delete from form; --";
  site.add("/away.txt", {.status = 302, .headers = {{"Location", "file:///etc/hostname"}}});
  serve(kFormOverview, quote + ",1," + site.url("/quote.txt") +
                           "\r\nFiles,1,file:///etc/hostname\r\nFtp,1,ftp://127.0.0.1/\r\n" + "no commas\r\n" +
                           definitionLine("Good", "/good.txt") + definitionLine("Away", "/away.txt") + "---END---");
  serve("/good.txt", form("A " + quote) + field("Orphan") + form("***NONE***") + form("Nul" + std::string(1, '\0')) +
                         form("It's '; drop table form") + field("Bad\"") + field("Fine"));
  serve(kHelpOverview, topicLine(11, "/t11.txt") + topicLine(12, "/t12.txt") + topicLine(13, "/t13.txt") +
                           "14, file:///etc/hostname--\n15, " + site.url("/t15.txt") + "--\n" +
                           topicLine(16, "/t16.txt") + "1 or 1=1, http://h/--\n---END---\n");
  serve("/t11.txt", "11\nSites\n" + quote + "\ntext\n");
  serve("/t12.txt", "0); delete from form\nSites\nTopic\ntext\n");
  serve("/t13.txt", "15\nSites <b>'\nTopic\ntext of 15\n");
  serve("/t15.txt", "15\nSites\nAgain\ntext\n");
  serve("/t16.txt", "16\n" + std::string(10'001, 's') + "\nTopic\ntext\n");
  startWithChecks("yes", "yes");
  ASSERT_TRUE(waitForEnd());
  EXPECT_EQ(count("form"), forms + 1);
  EXPECT_EQ(count("form", "name = \"It's '; drop table form\""), 1);
  EXPECT_EQ(value("select group_concat(name) from field_info where id >= 100"), "Fine");
  EXPECT_EQ(value("select group_concat(name || retrieved) from form_def_update"), "Goodyes,Awayno");
  EXPECT_EQ(value("select group_concat(id || subject || the_text) from help_info"), "15Sites <b>'text of 15\r\n");
  QStringList lines = refusals();
  lines.sort();
  const QString cannot = "1 lines of an overview not taken: they cannot be read";
  const QStringList expected = {cannot,
                                cannot,
                                "field Bad\" not taken: it holds a double quote",
                                "field Orphan not taken: its form has not been taken",
                                "form ***NONE*** not taken: its name stands for no login",
                                "form A \"); delete from form; -- not taken: it holds a double quote",
                                "form Nul  not taken: it holds a NUL character",
                                "form definition \"); delete from form; -- not taken: it holds a double quote",
                                "form definition Files not taken: its address is not http or https",
                                "form definition Ftp not taken: its address is not http or https",
                                "help topic 11 not taken: it holds a double quote",
                                "help topic 12 not taken: its file cannot be read",
                                "help topic 14 not taken: its address is not http or https",
                                "help topic 15 not taken: there is one of that number",
                                "help topic 16 not taken: it holds too long a line"};
  EXPECT_EQ(lines.join("\n").toStdString(), ("Online update: " + expected.join("\nOnline update: ")).toStdString());
}

TEST_F(OnlineUpdatesTest, AFeedFullOfRefusalsFillsNoLog) {
  std::string overview;
  for (int i = 0; i < 5'000; ++i) overview += "Files" + std::to_string(i) + ",1,file:///etc/hostname\r\n";
  serve(kFormOverview, overview + "---END---");
  startWithChecks("yes", "no");
  ASSERT_TRUE(waitForEnd());
  ASSERT_EQ(refusals().size(), 11);
  EXPECT_EQ(refusals()[0], "Online update: form definition Files0 not taken: its address is not http or https");
  EXPECT_EQ(refusals()[10], "Online update: 4990 more rows not taken");
}

class MessageTest : public OnlineUpdatesTest {
 protected:
  void SetUp() override { start(); }
  static QString lastId() { return readUserSetting("Morvane2000", "TheSection", "LastMessageID"); }
  static void setLastId(const QString& id) { saveUserSetting("Morvane2000", "TheSection", "LastMessageID", id); }
  static frmMessage* shown() { return find<frmMessage>(); }
  // Presses Start with no site selected, and waits until the message has been looked at.
  void pressStart() {
    const int before = site.requestCount(kMessage);
    bool answered = false;
    QObject context;
    QObject::connect(main()->findChild<InternetTransfer*>("Inet4"), &InternetTransfer::StateChanged, &context,
                     [&](int, int state) { answered = answered || state >= kError; });
    click(find<frmWebSites>(), "Start");
    ASSERT_TRUE(waitFor([&] { return answered; }));
    EXPECT_EQ(site.requestCount(kMessage), before + 1);
  }
};

TEST_F(MessageTest, ANewerMessageIsShownOnce) {
  serve(kMessage, "7\n" + site.url("/news.html") + "\nNews: <b>7</b>\nLine two\n");
  setLastId("5");
  pressStart();
  ASSERT_NE(shown(), nullptr);
  EXPECT_TRUE(shown()->isChildVisible());
  EXPECT_EQ(shown()->caption(), "Message");
  EXPECT_EQ(shown()->place(), (TwipRect{15, 15, 2805, 5430})) << "20 twips are one pixel and a bit";
  EXPECT_EQ(control<QPlainTextEdit>(shown(), "tbMsg").toPlainText(), "News: <b>7</b>\nLine two\n");
  EXPECT_EQ(lastId(), "7");
  QStringList opened;
  setBrowserOpener([&](const QString& url) {
    opened << url;
    return true;
  });
  click(shown(), "cbGo");
  EXPECT_EQ(opened, QStringList(toQString(site.url("/news.html"))));
  EXPECT_EQ(textOf(shown(), "cmdClose"), "Close");
  click(shown(), "cmdClose");
  EXPECT_EQ(shown(), nullptr);

  pressStart();
  EXPECT_EQ(shown(), nullptr) << "the same message again";
  serve(kMessage, "8\nfile:///etc/passwd\nNo page\n");
  pressStart();
  ASSERT_NE(shown(), nullptr);
  EXPECT_FALSE(enabled(shown(), "cbGo")) << "not a web page";
  EXPECT_EQ(lastId(), "8");
}

TEST_F(MessageTest, AVeryLongMessageDoesNotHoldTheProgram) {
  setLastId("5");
  int id = 6;
  for (const std::string& text : {std::string(2'000'000, 'm') + "\n", std::string(999'999, '\n')}) {
    serve(kMessage, std::to_string(id++) + "\nu\n" + text);
    LoopMeter turn;
    pressStart();
    ASSERT_NE(shown(), nullptr);
    const auto* box = control<QPlainTextEdit>(shown(), "tbMsg").document();
    EXPECT_TRUE(waitFor([&] { return box->characterCount() >= 1'000'000; }, 120'000));
    EXPECT_LT(turn.longest, kLongestLayout) << "at one go, a minute as one word, a second as lines";
    const QTextCursor reader = control<QPlainTextEdit>(shown(), "tbMsg").textCursor();
    EXPECT_TRUE(reader.atStart() && !reader.hasSelection());
  }
}

TEST_F(MessageTest, WhatIsNotNewerOrNoMessageIsNotShown) {
  const struct {
    const char *file, *stored, *expected;
  } cases[] = {
      {"7\nu\ntext\n", "", "7"},  {"7\nu\ntext\n", "0", "7"}, {"7\nu\ntext\n", "7", "7"},   {"7\nu\ntext\n", "9", "9"},
      {"7\nu\nno end", "5", "5"}, {"7\nu\nno end", "0", "0"}, {"<html>\na\nb\n", "5", "5"}, {"", "5", "5"}};
  for (const auto& one : cases) {
    SCOPED_TRACE(std::string(one.file) + " after " + one.stored);
    serve(kMessage, one.file);
    setLastId(one.stored);
    pressStart();
    EXPECT_EQ(lastId(), one.expected);
    EXPECT_EQ(shown(), nullptr);
  }
}

TEST_F(OnlineUpdatesTest, TenThousandDefinitionsAndTopicsAreNotFelt) {
  std::string definitions;
  std::string topics;
  for (int i = 0; i < kMany; ++i) {
    definitions += definitionLine("Definition " + std::to_string(i), "/form.txt");
    topics += topicLine(10 + i % 90, "/topic.txt");
  }
  serve(kFormOverview, definitions + "---END---\r\n");
  serve("/form.txt", form("Form") + field("One") + field("Two"));
  serve(kHelpOverview, topics + "---END---\n");
  start();
  LoopMeter turn;
  main()->getFormUpdates();
  ASSERT_TRUE(waitFor([this] { return count("form_def_update", "retrieved = \"yes\"") >= 200; }, 120'000));
  main()->getHelp();
  ASSERT_TRUE(waitFor([this] { return !isShown("pictHelpUpdates"); }, 120'000));
  EXPECT_EQ(count("form_def_update"), kMany);
  EXPECT_EQ(control<ListView>(main(), "lvwHelpOverview").rowCount(), kMany);
  EXPECT_LT(turn.longest, kLongestStall);
}

}  // namespace
