// demo <program>: serves the bundled gallery and an update server's feeds on 127.0.0.1, lets the real program harvest
// the gallery with automatic scanning on and fetch login forms and help topics, and lists what was saved. Then opens
// the program's windows and presses Start for the news message. Works with and without a display. The exit code says
// whether files, link rows, imports and message are the expected ones.

#include <QApplication>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>
#include <cstdio>
#include <map>
#include <string>

#include "app/Settings.h"
#include "base/Text.h"
#include "catalog/clsPath.h"
#include "gallery/Gallery.h"
#include "help_windows/frmMessage.h"
#include "program/StartUp.h"
#include "shell/frmDownloadManager.h"
#include "sites_windows/frmWebSites.h"
#include "testkit/Controls.h"
#include "testkit/EventLoop.h"
#include "testkit/ProgramRun.h"
#include "testkit/TestSite.h"

namespace {

using namespace mvtest;
using mv::gDatabase;
using Files = std::map<std::string, std::string>;  // path below the download folder -> content

constexpr int kDeadlineMs = 180'000;
constexpr int kMessageDeadlineMs = 20'000;
constexpr int kLookEveryMs = 500;
constexpr const char* kPngFolder = "/Pictures in PNG";

// The rows that the link table is to hold in the end: type and status, and how many.
const std::map<std::string, int> kExpectedRows = {{"Directory, Done", 1}, {"Document, Done", 6}, {"File, Done", 11}};

std::map<std::string, int> linkRows() {
  std::map<std::string, int> rows;
  auto links = gDatabase.query("select link_type, status from link");
  for (; !links.endOfRows(); links.moveNext()) ++rows[links.text("link_type") + ", " + links.text("status")];
  return rows;
}

Files wantedFiles() {
  Files wanted;
  for (const Picture& picture : galleryPictures()) {
    const std::string name = std::string(picture.path).substr(std::string(picture.path).rfind('/'));
    if (picture.wanted) wanted[(name.ends_with(".png") ? kPngFolder : "") + name] = pictureBytes(picture);
  }
  return wanted;
}

Files savedFiles() {
  Files saved;
  const QString root = mv::toQString(mv::gDownloadFolder);
  QDirIterator files(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    QFile file(files.next());
    if (file.open(QIODevice::ReadOnly))
      saved[mv::toUtf8(file.fileName().mid(root.size()))] = file.readAll().toStdString();
  }
  return saved;
}

long importedForms() { return gDatabase.count("select count(*) as outCount from form where id >= 100"); }
long importedTopics() { return gDatabase.count("select count(*) as outCount from help_info where id < 1000"); }

bool allImported() {
  return importedForms() == kFeedDefinitions && importedTopics() == kFeedTopics &&
         gDatabase.count("select count(*) as outCount from form_def_update where retrieved = \"yes\"") ==
             kFeedDefinitions;
}

bool waitForHarvest(ProgramRun& program, const Files& wanted) {
  QElapsedTimer clock;
  for (clock.start(); clock.elapsed() < kDeadlineMs && program.isRunning(); QThread::msleep(kLookEveryMs))
    if (linkRows() == kExpectedRows && allImported() && savedFiles() == wanted) return true;
  return false;
}

// Prints the files and answers whether they are the wanted ones, byte for byte.
bool listFiles(const Files& wanted) {
  std::printf("Files saved:\n");
  const Files saved = savedFiles();
  for (const auto& [path, bytes] : saved) {
    const auto match = wanted.find(path);
    const bool right = match != wanted.end() && match->second == bytes;
    std::printf("  %9zu  %s%s\n", bytes.size(), path.substr(1).c_str(), right ? "" : "   <- not expected");
  }
  for (const auto& [path, bytes] : wanted)
    if (!saved.count(path)) std::printf("  missing: %s\n", path.c_str());
  return saved == wanted;
}

bool listRows() {
  const auto rows = linkRows();
  std::printf("Links by type and status:\n");
  for (const auto& [kind, number] : rows) std::printf("  %4d  %s\n", number, kind.c_str());
  return rows == kExpectedRows;
}

bool listImports() {
  std::printf("From the update server:\n  %4ld  login forms\n  %4ld  help topics\n", importedForms(), importedTopics());
  return allImported();
}

// In this process: presses Start in the list of web sites, no site selected, and answers whether the message came.
bool showMessage() {
  gDatabase.execute("update pref set auto_scan = \"no\"");
  gDatabase.close();
  mv::StartUp startUp;
  if (!startUp.run(mv::gProgramFolder)) return false;
  click(find<mv::frmWebSites>(), "Start");
  const auto message = [] { return find<mv::frmMessage>(); };
  const bool shown = waitFor([&] { return message() != nullptr; }, kMessageDeadlineMs);
  if (shown) std::printf("Message shown:\n  %s\n", qPrintable(message()->Message().section('\r', 0, 0)));
  startUp.mainWindow()->close();
  return shown;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: demo <program>\n");
    return 2;
  }
  const bool display = !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
  if (!display) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // What that platform says it cannot do hides what is to be read here.
    if (!qEnvironmentVariableIsSet("QT_LOGGING_RULES")) qputenv("QT_LOGGING_RULES", "*.warning=false");
  }
  QApplication application(argc, argv);
  QApplication::setApplicationName("Morvane2000");

  TestSite site;
  fillGallery(site);
  ProgramRun program(argv[1]);
  useAsUpdateServer(site);
  gDatabase.execute("update pref set auto_update = \"yes\", help_server = \"yes\"");
  mv::clsPath paths;
  paths.SiteID = program.addAutoScanSite(site.host(), "10", "1", {"png", "jpg", "bmp"});
  paths.AddSitePath(mv::gDownloadFolder + kPngFolder,
                    gDatabase.query("select id from valid_filetypes where name = \"png\"").number("id"));

  std::printf("Serving a gallery on http://%s/ and harvesting it%s ...\n", site.host().c_str(),
              display ? "" : " (no display)");
  std::fflush(stdout);
  if (!program.start()) {
    std::fprintf(stderr, "The program did not start.\n");
    return 1;
  }
  const Files wanted = wantedFiles();
  const bool finished = waitForHarvest(program, wanted);
  const bool ended = program.terminate();

  const bool files = listFiles(wanted);
  const bool rows = listRows();
  const bool imports = listImports();
  const bool message = ended && showMessage();
  const bool good = finished && ended && files && rows && imports && message;
  std::printf("%s\n", good ? "The harvest is as expected." : "The harvest is NOT as expected.");
  return good ? 0 : 1;
}
