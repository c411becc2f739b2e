// Whole downloads: from the stored link to the file on disk, with the faults that sites and disks have.

#include <QAbstractItemModel>
#include <QSignalSpy>
#include <algorithm>

#include "FileName.h"
#include "catalog/clsPath.h"
#include "download/DownloadProcess.h"
#include "download/DownloadTest.h"
#include "files/AtomicFile.h"
#include "process/ProcessTexts.h"

namespace {

using namespace mvtest;
using mv::AtomicFile;
using mv::DownloadProcess;
using Names = std::vector<std::string>;

class DownloadProcessTest : public DownloadTest<ProgramTest> {
 protected:
  DownloadProcessTest() { renew(); }
  ~DownloadProcessTest() override { AtomicFile::failAfterBytes(0); }

  void renew() {
    process = std::make_unique<DownloadProcess>();
    prepare(*process);
  }
  void waitForAll() {
    ASSERT_TRUE(waitFor([this] { return allDone(); }));
  }
  // Starts, and waits until every link is done.
  void downloadAll() {
    process->initWindow();
    waitForAll();
  }
  std::string state(const std::string& name) { return outcomes[name].state; }
  std::vector<std::string> logLines() const {
    std::ifstream log(folder() + "/MV2Errors.txt");
    std::vector<std::string> lines;
    for (std::string line; std::getline(log, line);) lines.push_back(line.substr(0, line.find('\r')));
    return lines;
  }

  std::unique_ptr<DownloadProcess> process;
};

TEST_F(DownloadProcessTest, FetchesFilesWithinTheLimitsBothEndsIncluded) {
  setSite("lower_limit = 1, upper_limit = 1");
  const std::string sized = "Size (In Kilobytes) : ";
  const struct {
    const char* name;
    std::size_t bytes;
    bool saved;
    std::string label, size;
  } cases[] = {
      {"small.jpg", 1023, false, " Too Small", "File Size:  1023 Below threshold of 1024"},
      {"lower.jpg", 1024, true, "", sized + "1"},
      {"half.jpg", 1536, true, "", sized + "1.5"},
      {"upper.jpg", 1048576, true, "", sized + "1024"},
      {"big.jpg", 1048577, false, " Too Big", "File Size:  1048577 Above threshold of 1048576"},
      {"empty.jpg", 0, false, "", "File Size:  0 Zero Conetnt-Length - File Size Unknown"},
  };
  Names expected;
  process->initWindow();
  // One after the other: the next one would be under way when a file that is saved shows its outcome.
  for (const auto& c : cases) {
    std::string body(c.bytes, 'x');
    if (c.bytes > 0) body.back() = 'z';
    addFile(std::string("/") + c.name, body);
    ASSERT_TRUE(waitFor([&] { return state(c.name) == "Done"; })) << c.name;
    EXPECT_EQ(outcomes[c.name].size, c.size);
    EXPECT_EQ(site.requestCount(std::string("/") + c.name), 1) << c.name;
    if (c.saved) {
      expected.push_back(c.name);
      EXPECT_EQ(readFile(path(c.name)), std::string(c.bytes - 1, 'x') + "z");
    } else {
      EXPECT_EQ(outcomes[c.name].label, std::string("File: ") + c.name + c.label);
    }
  }
  site.add("/endless.jpg", {.body = std::string(2000, 'x'), .fault = Fault::NoContentLength});
  addLink(site.host() + "/endless.jpg", "jpg");
  ASSERT_TRUE(waitFor([this] { return state("endless.jpg") == "Done"; }));
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(savedFiles(), expected);
  EXPECT_EQ(outcomes["endless.jpg"].size, "File Size:   Zero Conetnt-Length - File Size Unknown");
  EXPECT_EQ(process->ErrorCount(), 0);
}

TEST_F(DownloadProcessTest, EveryTypeGoesToItsOwnFolderOrTheDefaultOne) {
  mv::clsPath paths;
  paths.SiteID = siteId;
  paths.AddSitePath(path("pictures/jpg"), std::stol(value("select id from valid_filetypes where name = \"jpg\"")));
  setSite("upper_limit = 9223372036854775807");  // more bytes than any number holds
  addFile("/a/one.jpg", "1");
  addFile("/a/two.gif", "2", "gif");
  downloadAll();
  EXPECT_EQ(readFile(path("pictures/jpg/one.jpg")), "1");
  EXPECT_EQ(readFile(path("two.gif")), "2");
}

TEST_F(DownloadProcessTest, SkipsAnExistingFileUnlessOverwritingIsOn) {
  std::filesystem::create_directories(saveFolder + "/folder.jpg");
  write("a.jpg", "a longer old content");
  addFile("/a.jpg", "new");
  downloadAll();
  EXPECT_EQ(state("a.jpg"), "Exists");
  EXPECT_EQ(outcomes["a.jpg"].label, "File: a.jpg Exists");
  EXPECT_EQ(site.requestCount("/a.jpg"), 0);
  EXPECT_EQ(readFile(path("a.jpg")), "a longer old content");

  // The process looks at the setting of the moment. A folder of that name is no file, so it is tried, and refused.
  mv::gOverwriteExisting = "yes";
  addLink(site.host() + "/a.jpg", "jpg");
  addFile("/folder.jpg", "x");
  waitForAll();
  EXPECT_EQ(readFile(path("a.jpg")), "new");
  EXPECT_TRUE(waitFor([this] { return state("folder.jpg") == "Error"; }));
}

TEST_F(DownloadProcessTest, NumberedNamesComeFromTheSequence) {
  mv::gDatabase.execute("update valid_sid set next_value = 17 where sid_name = 'filename_id'");
  process->UniqueNames = "yes";
  addFile("/one.jpg", "1");
  addLink(site.host() + "/one.jpg", "jpg");
  addFile("/there.jpg", "2");
  write("there.jpg", "old");  // the address's own name decides
  downloadAll();
  EXPECT_EQ(savedFiles(), (Names{"NewFile17.jpg", "NewFile18.jpg", "there.jpg"}));
  EXPECT_EQ(site.requestCount("/there.jpg"), 0);

  mv::gDatabase.execute("delete from valid_sid where sid_name = 'filename_id'");
  addFile("/two.jpg", "2");
  waitForAll();
  EXPECT_TRUE(waitFor([this] { return state("two.jpg") == "Error"; })) << "no number, no file";
  EXPECT_EQ(dialogs.messages().size(), 1u);
}

TEST_F(DownloadProcessTest, NamesComeFromTheAddress) {
  const std::string longName(300, 'n');
  addFile("/a/show.php?id=3", "1");
  addLink(site.host() + "/it&MV1Qs.jpg", "jpg");
  site.file("/it's.jpg", "image/jpeg", "2");
  addFile("/" + longName + ".jpg", "3");
  const int nameless = addFile("/folder/", "4");
  addLink(site.host(), "jpg");
  site.file("/", "image/jpeg", "5");
  downloadAll();
  EXPECT_EQ(savedFiles(), (Names{"it's.jpg", mv::cleanFileName(longName + ".jpg"), "show.php?id=3"}));
  EXPECT_EQ(readFile(path("it's.jpg")), "2");
  EXPECT_TRUE(waitFor([this] { return state("") == "Error"; }));
  EXPECT_EQ(process->ErrorCount(), 2);
  EXPECT_EQ(logLines().at(0), std::to_string(nameless));
}

TEST_F(DownloadProcessTest, AFailedTransferIsShownLoggedAndNotTriedAgain) {
  const auto fault = [this](const std::string& path, Fault kind, int status = 200) {
    site.add(path, {.body = std::string(40'000, 'x'), .status = status, .fault = kind});
    addLink(site.host() + path, "jpg");
  };
  const int first = lastLink + 1;
  fault("/gone.jpg", Fault::None, 404);
  fault("/reset.jpg", Fault::Reset);
  fault("/short.jpg", Fault::ShortBody);
  fault("/refused.jpg", Fault::Refuse);
  fault("/garbage.jpg", Fault::Garbage);
  addFile("/good.jpg", "good");
  addLink("me:secret@127.0.0.1:1/closed.jpg", "jpg");
  downloadAll();
  ASSERT_TRUE(waitFor([this] { return process->ErrorCount() == 6; }));
  for (const char* name : {"gone", "reset", "short", "refused", "garbage", "closed"})
    EXPECT_TRUE(waitFor([&] { return state(name + std::string(".jpg")) == "Error"; })) << name;
  EXPECT_EQ(savedFiles(), Names{"good.jpg"});
  EXPECT_EQ(process->lastError().subject, "File: closed.jpg");

  const std::vector<std::string> log = logLines();
  ASSERT_EQ(log.size(), 36u);
  EXPECT_EQ(log[0], std::to_string(first));
  EXPECT_EQ(log[3], "Code: 404  -  Reason: Not Found");
  EXPECT_EQ(log[31], "me:***@127.0.0.1:1/closed.jpg");
}

TEST_F(DownloadProcessTest, AFullDiskOrAFolderThatCannotBeMadeEndsTheEntryOnly) {
  mv::gOverwriteExisting = "yes";
  write("old.jpg", "old");
  addFile("/new.jpg", std::string(5000, 'n'));
  addFile("/old.jpg", std::string(5000, 'o'));
  AtomicFile::failAfterBytes(2000);
  downloadAll();
  AtomicFile::failAfterBytes(0);
  EXPECT_TRUE(waitFor([this] { return state("new.jpg") == "Error"; }));
  EXPECT_EQ(savedFiles(), Names{"old.jpg"});
  EXPECT_EQ(readFile(path("old.jpg")), "old");

  std::ofstream(folder() + "/plain") << "x";
  for (const std::string& unusable : {folder() + "/plain/below", std::string()}) {
    setSite("download_path = '" + unusable + "'");
    addFile("/a.jpg", "a");
    waitForAll();
    EXPECT_TRUE(waitFor([this] { return state("a.jpg") == "Error"; })) << unusable;
    outcomes.clear();
  }
  EXPECT_EQ(process->ErrorCount(), 4);
  EXPECT_TRUE(dialogs.messages().empty());

  setSite("download_path = '" + saveFolder + "'");
  addFile("/later.jpg", "later");
  waitForAll();
  EXPECT_EQ(readFile(path("later.jpg")), "later");
}

TEST_F(DownloadProcessTest, AThousandSkippedFilesDoNotHoldTheThread) {
  setSite("pages_to_scan = 5000");
  write("a.jpg", "x");
  for (int i = 0; i < 1500; ++i) addLink(site.host() + "/" + std::to_string(i) + "/a.jpg", "jpg");
  const LoopMeter turn;
  process->initWindow();
  EXPECT_EQ(process->lvwLinks.count(), 1000) << "the rest comes with the next list";
  ASSERT_TRUE(waitFor([this] { return process->lvwLinks.count() == 0 && allDone(); }));
  EXPECT_LT(turn.longest, 50);
  EXPECT_TRUE(process->tmrOKToDownload.isActive());
  EXPECT_TRUE(site.requests().empty());
}

TEST_F(DownloadProcessTest, ALargeFileBecomesTheFileThatItWasReceivedInto) {
  setSite("upper_limit = 100");
  const std::string body(std::size_t{5} << 20, 'b');
  for (const std::string& below : {saveFolder, saveFolder + "/not/made/yet"}) {
    setSite("download_path = '" + below + "'");
    addFile("/whole.bin", body);
    renew();
    downloadAll();
    EXPECT_TRUE(readFile(below + "/whole.bin") == body);
    EXPECT_EQ(process->status().received, 5242880);
  }
  EXPECT_EQ(savedFiles(), (Names{"whole.bin", "whole.bin"}));

  AtomicFile::failAfterBytes(std::size_t{2} << 20);
  addFile("/full.bin", body);
  waitForAll();
  EXPECT_TRUE(waitFor([this] { return state("full.bin") == "Error"; }));
  EXPECT_EQ(mv::errorReasonText(process->lastError()), "Code: 23  -  Reason: No space left on device");
  EXPECT_EQ(savedFiles(), (Names{"whole.bin", "whole.bin"}));
}

TEST_F(DownloadProcessTest, ALargeFileIsSavedInShortSlices) {
  const BodiesInMemory bodies;
  setSite("upper_limit = 100");
  std::string body(std::size_t{16} << 20, '\0');
  for (std::size_t at = 0; at < body.size(); ++at) body[at] = static_cast<char>(at * 2654435761u >> 24);
  addFile("/large.bin", body);
  process->initWindow();
  bool saved = false;
  QObject::connect(process.get(), &DownloadProcess::fileSaved, [&](const std::string&) { saved = true; });
  const LoopMeter turn;
  ASSERT_TRUE(waitFor([&] { return saved; }));
  EXPECT_LT(turn.longest, 50);
  EXPECT_TRUE(readFile(path("large.bin")) == body);
  EXPECT_EQ(process->status().received, 16777216);
  EXPECT_EQ(process->status().left, 0);
  EXPECT_EQ(site.requestCount("/large.bin"), 1);
}

TEST_F(DownloadProcessTest, StoppedAtAnyYieldLeavesNoPartOfAFile) {
  const BodiesInMemory bodies;
  setSite("upper_limit = 100");
  addFile("/large.bin", std::string(std::size_t{16} << 20, 'x'));
  for (int stopAt = 1;; ++stopAt) {
    renew();
    int seen = 0;
    std::int64_t last = 0;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
      const std::int64_t received = process->status().received.value_or(0);
      const bool midway = received != last && process->status().left != 0;
      last = received;
      if (midway && ++seen == stopAt) process->requestStop();
    });
    look.start(0);
    process->initWindow();
    ASSERT_TRUE(waitFor([&] { return (process->StopRequested() && !process->isBusy()) || allDone(); }));
    if (!process->StopRequested()) {
      EXPECT_GT(stopAt, 1);
      break;
    }
    EXPECT_EQ(savedFiles(), Names{}) << "stopped at yield " << stopAt;
    EXPECT_FALSE(allDone());
  }
  EXPECT_EQ(savedFiles(), Names{"large.bin"});
}

TEST_F(DownloadProcessTest, AnIdleProcessPollsQuietly) {
  process->initWindow();
  ASSERT_TRUE(waitFor([this] { return mv::fileText(process->status()) == "File: "; }));
  QSignalSpy changed(process.get(), &mv::Process::viewChanged);
  QSignalSpy ticks(&process->tmrOKToDownload, &QTimer::timeout);
  ASSERT_TRUE(waitFor([&] { return ticks.count() > 100; }));  // the last change has been shown by then
  changed.clear();
  ticks.clear();
  const QSignalSpy cleared(&process->lvwLinks, &QAbstractItemModel::modelReset);
  ASSERT_TRUE(waitFor([&] { return ticks.count() > 20; }));
  EXPECT_EQ(cleared.count() + changed.count(), 0);
  addFile("/late.jpg", "late");
  waitForAll();
  EXPECT_EQ(readFile(path("late.jpg")), "late");
}

TEST_F(DownloadProcessTest, ARefusingDatabasePausesTheProcessAndNoMore) {
  addFile("/first.jpg", "1");
  addFile("/second.jpg", "2");
  mv::gDatabase.execute("alter table site_paths rename to away");
  process->initWindow();
  ASSERT_TRUE(waitFor([this] { return process->tmrWaitForAWhile.isActive(); }));
  EXPECT_EQ(process->tmrWaitForAWhile.interval(), 60'000);
  EXPECT_EQ(process->ErrorCount(), 1);
  EXPECT_TRUE(mv::errorReasonText(process->lastError()).starts_with("Code: 3078  -  Reason: "))
      << process->lastError().reason;
  EXPECT_EQ(logLines().size(), 6u);

  mv::gDatabase.execute("alter table away rename to site_paths");
  process->tmrWaitForAWhile.start(1);
  waitForAll();
  EXPECT_EQ(state("first.jpg"), "Error");
  EXPECT_EQ(savedFiles(), Names{"second.jpg"});
}

TEST_F(DownloadProcessTest, AFileThatCouldNotBeAskedForIsTakenUpAnew) {
  addFile("/first.jpg", "1");
  addFile("/second.jpg", "2");
  process->initWindow();
  mv::gDatabase.close();
  ASSERT_TRUE(waitFor([this] { return process->tmrWaitForAWhile.isActive(); }));
  EXPECT_EQ(process->lastError().code, mv::DatabaseError::kNotOpen);
  mv::gDatabase.open(mv::gDatabasePath);
  process->tmrWaitForAWhile.start(1);
  waitForAll();
  EXPECT_EQ(savedFiles(), (Names{"first.jpg", "second.jpg"}));
}

}  // namespace
