// What becomes of a file between its last byte and its name: while the disk takes its time, when the site is stopped
// meanwhile, and when somebody else has the name.

#include <QAbstractItemModel>

#include "app/Events.h"
#include "catalog/clsPath.h"
#include "download/DownloadTest.h"
#include "download/SaveFolders.h"
#include "files/OpenFile.h"
#include "process/ProcessTexts.h"
#include "testkit/FlushGate.h"
#include "testkit/WallMeter.h"

namespace {

using namespace mvtest;
using mv::DownloadProcess;
using Names = std::vector<std::string>;

class SavingTest : public DownloadTest<ProgramTest> {
 protected:
  SavingTest() { renew(); }

  std::unique_ptr<DownloadProcess> newProcess() {
    auto made = std::make_unique<DownloadProcess>();
    prepare(*made);
    return made;
  }
  void renew() { process = newProcess(); }
  void downloadAll() {
    process->initWindow();
    ASSERT_TRUE(waitFor([this] { return allDone(); }));
  }
  long waitingLinks() { return count("link", "status = \"False\""); }
  std::string state(const std::string& name) { return outcomes[name].state; }
  void number(const std::string& next) {
    process->UniqueNames = "yes";
    mv::gDatabase.execute("update valid_sid set next_value = " + mv::quoted(next) + " where sid_name = 'filename_id'");
  }

  std::unique_ptr<DownloadProcess> process;
};

TEST_F(SavingTest, TheNextFileIsFetchedWhileOneWaitsForTheDisk) {
  FlushGate gate;
  addFile("/one.jpg", "1");
  addFile("/two.jpg", "2");
  addFile("/other/one.jpg", "another");
  process->initWindow();
  ASSERT_TRUE(waitFor([this] { return state("one.jpg") == "Exists" && site.requestCount("/two.jpg") == 1; }));
  EXPECT_EQ(savedFiles(), Names{}) << "no name before the bytes are on the disk";
  EXPECT_EQ(waitingLinks(), 2) << "and no mark";
  EXPECT_EQ(site.requestCount("/other/one.jpg"), 0) << "a file that waits counts as existing";
  // Two lists later they are still not taken up again.
  addFile("/three.jpg", "3");
  ASSERT_TRUE(waitFor([this] { return site.requestCount("/three.jpg") == 1; }));
  EXPECT_EQ(state("two.jpg"), "Working");

  gate.open();
  ASSERT_TRUE(waitFor([this] { return allDone(); }));
  EXPECT_EQ(savedFiles(), (Names{"one.jpg", "three.jpg", "two.jpg"}));
  for (const char* name : {"two.jpg", "three.jpg"}) EXPECT_TRUE(waitFor([&] { return state(name) == "Done"; })) << name;
  EXPECT_EQ(site.requests().size(), 3U);
  EXPECT_TRUE(waitFor([this] { return process->lvwLinks.count() == 0; })) << "the list forgets them then";
}

TEST_F(SavingTest, AFileThatTheDiskRefusesIsAnErrorAndLeavesNothing) {
  FlushGate gate;
  gate.failWith(EIO, 1);
  gate.open();
  addFile("/bad.jpg", "bad");
  downloadAll();
  ASSERT_TRUE(waitFor([this] { return state("bad.jpg") == "Error"; }));
  addFile("/good.jpg", "good");
  ASSERT_TRUE(waitFor([this] { return allDone(); }));
  EXPECT_EQ(savedFiles(), Names{"good.jpg"});
  EXPECT_EQ(process->ErrorCount(), 1);
  EXPECT_EQ(process->lastError().subject, "File: bad.jpg");
  EXPECT_EQ(mv::errorReasonText(process->lastError()),
            "Code: 5  -  Reason: The file " + path("bad.jpg") + " cannot be written: Input/output error.");
}

TEST_F(SavingTest, AStopAtAnyMomentAsksForNothingTwice) {
  number("1");
  site.add("/gone.jpg", {.status = 404});
  site.add("/unknown.jpg", {.body = "x", .fault = Fault::NoContentLength});
  for (const char* path : {"/gone.jpg", "/unknown.jpg", "/good.jpg"}) addLink(site.host() + path, "jpg");
  site.file("/good.jpg", "image/jpeg", "good");
  // The ticks that write the outcome never come.
  int ends = 0;
  for (; waitingLinks() > 0 && ends < 20; ++ends) {
    process->tmrOKToDownload.setInterval(1'000'000);
    process->initWindow();
    FlushGate gate;
    const std::size_t before = site.requests().size();
    process->downloadNext();
    ASSERT_TRUE(waitFor([&] { return site.requests().size() > before && process->tmrOKToDownload.isActive(); }));
    process->requestStop();
    gate.open();
    if (ends % 2 == 0) process.reset();  // its window may be gone, too
    ASSERT_TRUE(waitFor([&] { return waitingLinks() == 2 - ends; }));
    renew();
    process->UniqueNames = "yes";
  }
  EXPECT_EQ(ends, 3);
  EXPECT_EQ(site.requests().size(), 3U);
  EXPECT_EQ(savedFiles().size(), 1U);
}

TEST_F(SavingTest, AnEndOfTheProgramFinishesWhatWaits) {
  FlushGate gate;
  addFile("/one.jpg", "1");
  addFile("/two.jpg", "2");
  process->initWindow();
  ASSERT_TRUE(waitFor([&] { return site.requestCount("/two.jpg") == 1 && gate.waiting() > 0; }));
  ASSERT_TRUE(waitFor([this] { return process->lvwLinks.nextWaiting() < 0 && process->tmrOKToDownload.isActive(); }));
  process->requestStop();
  gate.open();
  Q_EMIT mv::events().programEnding();
  EXPECT_EQ(savedFiles(), (Names{"one.jpg", "two.jpg"}));
  EXPECT_TRUE(allDone());
}

TEST_F(SavingTest, WhatTheDatabaseRefusesToMarkIsMarkedLater) {
  addFile("/one.jpg", "1");
  mv::Database other;
  other.open(mv::gDatabasePath);
  auto lock = std::make_unique<mv::Transaction>(other);
  other.execute("update pref set auto_scan = 'no'");
  process->initWindow();
  ASSERT_TRUE(waitFor([this] { return savedFiles().size() == 1; }));
  process->requestStop();
  process.reset();
  renew();
  process->initWindow();
  EXPECT_EQ(process->lvwLinks.count(), 0) << "handled, though the row does not say so yet";
  lock.reset();
  EXPECT_TRUE(waitFor([this] { return allDone(); }));
  EXPECT_EQ(site.requests().size(), 1U);
}

// Of a file that is there, of files that are not to be had, and of one that is saved.
TEST_F(SavingTest, AForeignLockHoldsNeitherTheThreadNorTheFilesThatFollow) {
  write("there.jpg", "old");
  addFile("/there.jpg", "new");
  for (int i = 0; i < 12; ++i) addLink(site.host() + "/gone" + std::to_string(i) + ".jpg", "jpg");
  addFile("/small.jpg", "");
  addFile("/good.jpg", "good");
  mv::Database other;
  other.open(mv::gDatabasePath);
  other.execute("begin immediate");
  QTimer::singleShot(3000, process.get(), [&other] { other.execute("rollback"); });
  const WallMeter turn;
  process->initWindow();
  ASSERT_TRUE(waitFor([this] { return savedFiles().size() == 2; }, 2500)) << "all are through before it ends";
  EXPECT_EQ(state("there.jpg"), "Exists");
  EXPECT_EQ(state("gone0.jpg"), "Error");
  EXPECT_EQ(waitingLinks(), 15);
  EXPECT_TRUE(process->tmrOKToDownload.isActive());
  ASSERT_TRUE(waitFor([this] { return allDone(); }));
  EXPECT_EQ(site.requests().size(), 14U) << "each once";
  EXPECT_LT(turn.longest, 300);
  ASSERT_EQ(dialogs.messages().size(), 1U);
  EXPECT_TRUE(dialogs.messages()[0].text.contains("Handled files cannot be marked now"));
  EXPECT_EQ(process->ErrorCount(), 12) << "a lock is no failure of a file";
  EXPECT_TRUE(waitFor([&] { return state("good.jpg") == "Done"; }));
}

TEST_F(SavingTest, WithoutOverwritingNothingIsEverReplaced) {
  for (const bool unnamed : {true, false}) {
    mv::OpenFile::refuseUnnamed(!unnamed);
    FlushGate gate;
    const std::string name = unnamed ? "one.jpg" : "two.jpg";
    addFile("/" + name, "the site's");
    process->initWindow();
    ASSERT_TRUE(waitFor([&] { return gate.waiting() == 1; }));
    write(name, "came meanwhile");
    gate.open();
    ASSERT_TRUE(waitFor([this] { return allDone(); }));
    EXPECT_TRUE(waitFor([&] { return state(name) == "Exists"; }));
    EXPECT_EQ(readFile(path(name)), "came meanwhile");
  }
  mv::OpenFile::refuseUnnamed(false);
  EXPECT_EQ(savedFiles(), (Names{"one.jpg", "two.jpg"}));
  EXPECT_EQ(process->ErrorCount(), 0);
}

// Of an earlier installation, whose numbers began anew; and one that appears at the last moment.
TEST_F(SavingTest, ANumberedNameDrawsOnUntilItIsFree) {
  number("17");
  for (const char* there : {"NewFile17.jpg", "NewFile18.jpg"}) write(there, "old");
  FlushGate gate;
  addFile("/a.jpg", "new");
  process->initWindow();
  ASSERT_TRUE(waitFor([&] { return gate.waiting() == 1; }));
  write("NewFile19.jpg", "came meanwhile");
  gate.open();
  ASSERT_TRUE(waitFor([this] { return allDone(); }));
  EXPECT_EQ(savedFiles(), (Names{"NewFile17.jpg", "NewFile18.jpg", "NewFile19.jpg", "NewFile20.jpg"}));
  EXPECT_EQ(readFile(path("NewFile17.jpg")), "old");
  EXPECT_EQ(readFile(path("NewFile19.jpg")), "came meanwhile");
  EXPECT_EQ(readFile(path("NewFile20.jpg")), "new");
}

TEST_F(SavingTest, ANumberThatTheDatabaseRefusesIsDrawnLater) {
  number("17");
  addFile("/a.jpg", "a");
  mv::Database other;
  other.open(mv::gDatabasePath);
  auto lock = std::make_unique<mv::Transaction>(other);
  process->initWindow();
  ASSERT_TRUE(waitFor([this] { return process->lastError().code == mv::DatabaseError::kLocked; }));
  EXPECT_EQ(state("a.jpg"), "Working");
  lock.reset();
  ASSERT_TRUE(waitFor([this] { return allDone(); }));
  EXPECT_EQ(savedFiles(), Names{"NewFile17.jpg"});

  // The same when the name is taken at the last moment.
  FlushGate gate;
  addFile("/b.jpg", "b");
  ASSERT_TRUE(waitFor([&] { return gate.waiting() == 1; }));
  write("NewFile18.jpg", "came meanwhile");
  lock = std::make_unique<mv::Transaction>(other);
  gate.open();
  waitFor([] { return false; }, 100);
  lock.reset();
  ASSERT_TRUE(waitFor([this] { return allDone(); }));
  EXPECT_EQ(savedFiles(), (Names{"NewFile17.jpg", "NewFile18.jpg", "NewFile19.jpg"}));
  EXPECT_EQ(readFile(path("NewFile19.jpg")), "b");
  EXPECT_EQ(site.requests().size(), 2U);
  EXPECT_EQ(process->ErrorCount(), 0);
}

TEST_F(SavingTest, ThousandsOfTakenNumbersDoNotHoldTheThread) {
  number("1");
  for (int i = 1; i < 3000; ++i) write("NewFile" + std::to_string(i) + ".jpg", "old");
  addFile("/a.jpg", "new");
  const LoopMeter turn;
  downloadAll();
  EXPECT_LT(turn.longest, 50);
  EXPECT_EQ(readFile(path("NewFile3000.jpg")), "new");
}

TEST_F(SavingTest, TheStartRemovesWhatAKilledRunLeftInAnyFolderOfTheSites) {
  mv::clsPath paths;
  paths.SiteID = siteId;
  ASSERT_TRUE(paths.AddSitePath(path("pictures"), std::stol(value("select max(id) from valid_filetypes"))));
  std::filesystem::create_directories(path("pictures"));
  for (const char* name : {".mv1-1.part", "pictures/.mv1-2.part", "kept.jpg"}) write(name, "x");
  mv::clearSaveFolders();
  EXPECT_TRUE(waitFor([this] { return savedFiles() == Names{"kept.jpg"}; }));
}

class LoginWaitTest : public SavingTest {
 protected:
  LoginWaitTest() {
    setSite("lower_limit = 1");
    insert("form (id, name, form_type)", {{"40", "Club", "Authentication"}});
    insert(
        "field_info (id, form_id, field_name, field_value, logical_number, name, prompt, search_string, "
        "supplied_by_user)",
        {{"400", "40", "", site.host() + "/login", "1", "Address", "", "action=\"/login\"", "no"}});
    insert("site_form_xref (site_id, form_id)", {{std::to_string(siteId), "40"}});
  }

  // A picture that is answered with that page for the first so many times. All before the first request.
  void addPicture(const std::string& path, int refusals, Resource page) {
    addLink(site.host() + path, "jpg");
    answers_[path] = {refusals, std::move(page)};
    site.setRule([this](const Request& request) -> std::optional<Resource> {
      Answer& answer = answers_[request.path];
      if (answer.refusals-- > 0) return answer.page;
      return Resource{.type = "image/jpeg", .body = kPicture};
    });
  }

  const std::string kForm = std::string(3000, ' ') + "<FORM Action=\"/Login\"></FORM>";
  const std::string kPicture = std::string(2000, 'p');

 private:
  struct Answer {
    int refusals = 0;
    Resource page;
  };
  std::map<std::string, Answer> answers_;
};

TEST_F(LoginWaitTest, AFileThatIsAnsweredWithTheLoginPageWaitsForTheLogin) {
  // As pages come that are made on demand: of any length, which is told or not.
  addPicture("/whole.jpg", 1, {.body = kForm});
  addPicture("/xhtml.jpg", 1, {.type = "Application/XHTML+xml; charset=utf-8", .body = kForm});
  addPicture("/unknown.jpg", 2, {.body = kForm, .fault = Fault::NoContentLength});
  addPicture("/small.jpg", 2, {.body = kForm.substr(2900)});
  // No login pages: one is saved, as ever, the others are refused by their size.
  addPicture("/page.jpg", 1, {.body = std::string(3000, 'h')});
  addPicture("/text.jpg", 1, {.type = "text/plain", .body = kForm});
  addPicture("/little.jpg", 2, {.body = "<form action=\"/search\">"});
  process->initWindow();
  ASSERT_TRUE(waitFor([this] { return waitingLinks() == 4; }));
  EXPECT_TRUE(process->lastError().reason.starts_with("The login page came instead"));
  const std::size_t requests = site.requests().size();
  for (int i = 0; i < 20; ++i) process->downloadNext();  // they wait, whatever comes
  Q_EMIT mv::events().siteLoggedIn(siteId + 1);          // which says nothing of this site
  EXPECT_EQ(site.requests().size(), requests);
  EXPECT_EQ(savedFiles(), (Names{"page.jpg", "text.jpg"}));

  Q_EMIT mv::events().siteLoggedIn(siteId);
  ASSERT_TRUE(waitFor([this] { return allDone(); }));
  for (const char* name : {"whole.jpg", "xhtml.jpg", "unknown.jpg", "small.jpg"})
    EXPECT_EQ(readFile(path(name)), kPicture) << name;
  EXPECT_EQ(savedFiles().size(), 6U);
  EXPECT_EQ(site.requestCount("/whole.jpg"), 2);
  EXPECT_EQ(process->ErrorCount(), 0);
}

TEST_F(LoginWaitTest, AStartThatTheDatabaseRefusesKnowsTheLoginFormLater) {
  addPicture("/whole.jpg", 1, {.body = kForm});
  mv::gDatabase.execute("alter table field_info rename to away");
  process->initWindow();
  ASSERT_TRUE(waitFor([this] { return process->tmrWaitForAWhile.isActive(); }));
  mv::gDatabase.execute("alter table away rename to field_info");
  process->tmrWaitForAWhile.start(1);
  ASSERT_TRUE(waitFor([this] { return site.requestCount("/whole.jpg") == 1 && process->lvwLinks.count() == 0; }));
  EXPECT_EQ(waitingLinks(), 1);
  Q_EMIT mv::events().siteLoggedIn(siteId);
  ASSERT_TRUE(waitFor([this] { return allDone(); }));
  EXPECT_EQ(readFile(path("whole.jpg")), kPicture);
}

TEST_F(LoginWaitTest, ItWaitsThreeTimesAtMost) {
  addPicture("/never.jpg", 100, {.body = kForm});
  process->initWindow();
  for (int times = 1; times <= 3; ++times) {
    ASSERT_TRUE(waitFor([&] { return site.requestCount("/never.jpg") == times; }));
    ASSERT_TRUE(waitFor([&] { return process->lvwLinks.count() == 0; }));
    EXPECT_EQ(waitingLinks(), 1);
    Q_EMIT mv::events().siteLoggedIn(siteId);
  }
  ASSERT_TRUE(waitFor([this] { return allDone(); }));
  EXPECT_EQ(site.requestCount("/never.jpg"), 4);
  EXPECT_TRUE(waitFor([this] { return state("never.jpg") == "Error"; }));
  EXPECT_EQ(process->ErrorCount(), 1);
  EXPECT_EQ(savedFiles(), Names{});
}

// The scan was quicker than the answer: nobody will log in once more for this file.
TEST_F(LoginWaitTest, ALoginThatCameDuringTheRequestCounts) {
  addPicture("/late.jpg", 1, {.body = kForm, .delayMs = 300});
  process->initWindow();
  ASSERT_TRUE(waitFor([this] { return site.requestCount("/late.jpg") == 1; }));
  Q_EMIT mv::events().siteLoggedIn(siteId);
  ASSERT_TRUE(waitFor([this] { return allDone(); }));
  EXPECT_EQ(readFile(path("late.jpg")), kPicture);
}

}  // namespace
