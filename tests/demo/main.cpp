// demo <program>: serves the bundled gallery and an update server's feeds on 127.0.0.1, lets the real program harvest
// the gallery with automatic scanning on and fetch login forms and help topics, and lists what was saved. Then opens
// the program's windows and presses Start for the news message. Works with and without a display. The exit code says
// whether files, link rows, imports and message are the expected ones.

#include <QAbstractButton>
#include <QApplication>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTest>
#include <QThread>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "app/Settings.h"
#include "app/WindowRegistry.h"
#include "catalog/clsPath.h"
#include "demo/Feeds.h"
#include "demo/Gallery.h"
#include "help/frmMessage.h"
#include "platform/Text.h"
#include "shell/StartUp.h"
#include "shell/frmDownloadManager.h"
#include "sites/frmWebSites.h"
#include "support/ProgramRun.h"
#include "support/TestSite.h"

namespace {

using mvtest::Picture;

constexpr int kDeadlineMs = 180'000;
constexpr int kMessageDeadlineMs = 20'000;
constexpr int kLookEveryMs = 500;
constexpr const char* kPngFolder = "/Pictures in PNG";

// The rows that the link table is to hold in the end: type and status, and how many.
const std::map<std::string, int> kExpectedRows = {{"Directory, Done", 1}, {"Document, Done", 6}, {"File, Done", 11}};

std::string readAll(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

std::map<std::string, int> linkRows() {
  std::map<std::string, int> rows;
  auto links = mv::gDatabase.query("select link_type, status from link");
  for (; !links.endOfRows(); links.moveNext()) ++rows[links.text("link_type") + ", " + links.text("status")];
  return rows;
}

QString savedPath(const Picture& picture) {
  const QString path = QString::fromLatin1(picture.path);
  const QString name = path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
  const bool png = name.endsWith(".png");
  return mv::toQString(mv::gDownloadFolder) + (png ? QString::fromLatin1(kPngFolder) : QString()) + QLatin1Char('/') +
         name;
}

bool allSaved() {
  for (const Picture& picture : mvtest::galleryPictures())
    if (picture.wanted && !QFile::exists(savedPath(picture))) return false;
  return true;
}

long importedForms() { return mv::gDatabase.count("select count(*) as outCount from form where id >= 100"); }
long importedTopics() { return mv::gDatabase.count("select count(*) as outCount from help_info where id < 1000"); }

bool allImported() {
  return importedForms() == mvtest::kFeedDefinitions && importedTopics() == mvtest::kFeedTopics &&
         mv::gDatabase.count("select count(*) as outCount from form_def_update where retrieved = \"yes\"") ==
             mvtest::kFeedDefinitions;
}

bool waitForHarvest(mvtest::ProgramRun& program) {
  QElapsedTimer clock;
  clock.start();
  while (clock.elapsed() < kDeadlineMs && program.isRunning()) {
    if (allSaved() && linkRows() == kExpectedRows && allImported()) return true;
    QThread::msleep(kLookEveryMs);
  }
  return false;
}

// Prints the files and answers whether they are the wanted ones, byte for byte.
bool listFiles() {
  bool good = true;
  std::map<QString, std::string> wanted;
  for (const Picture& picture : mvtest::galleryPictures())
    if (picture.wanted) wanted[savedPath(picture)] = mvtest::pictureBytes(picture);
  std::printf("Files saved:\n");
  const QString root = mv::toQString(mv::gDownloadFolder);
  QDirIterator files(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
  std::map<QString, bool> found;
  while (files.hasNext()) {
    const QString path = files.next();
    const auto match = wanted.find(path);
    const bool right = match != wanted.end() && match->second == readAll(path);
    found[path] = right;
  }
  for (const auto& [path, right] : found) {
    std::printf("  %9lld  %s%s\n", static_cast<long long>(QFileInfo(path).size()),
                qPrintable(path.mid(root.size() + 1)), right ? "" : "   <- not expected");
    good = good && right;
  }
  for (const auto& [path, bytes] : wanted)
    if (!found.count(path)) {
      std::printf("  missing: %s\n", qPrintable(path));
      good = false;
    }
  return good;
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
  mv::gDatabase.execute("update pref set auto_scan = \"no\"");
  mv::gDatabase.close();
  mv::StartUp startUp;
  if (!startUp.run(mv::gProgramFolder)) return false;
  const auto message = [] { return mv::WindowRegistry::instance().find<mv::frmMessage>(); };
  mv::WindowRegistry::instance().find<mv::frmWebSites>()->findChild<QAbstractButton*>("Start")->click();
  const bool shown = QTest::qWaitFor([&] { return message() != nullptr; }, kMessageDeadlineMs);
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
  if (!display) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setApplicationName("Morvane2000");

  mvtest::TestSite site;
  mvtest::fillGallery(site);
  mvtest::fillFeeds(site);
  mvtest::ProgramRun program(argv[1], MORVANE_SHIPPED_DATABASE);
  mvtest::useAsUpdateServer(site);
  mv::gDatabase.execute("update pref set auto_update = \"yes\", help_server = \"yes\"");
  mv::clsPath paths;
  paths.SiteID = program.addAutoScanSite(site.host(), "10", "1", {"png", "jpg", "bmp"});
  paths.AddSitePath(mv::gDownloadFolder + kPngFolder,
                    mv::gDatabase.query("select id from valid_filetypes where name = \"png\"").number("id"));

  std::printf("Serving a gallery on http://%s/ and harvesting it%s ...\n", site.host().c_str(),
              display ? "" : " (no display)");
  std::fflush(stdout);
  if (!program.start()) {
    std::fprintf(stderr, "The program did not start.\n");
    return 1;
  }
  const bool finished = waitForHarvest(program);
  const bool ended = program.terminate();

  const bool files = listFiles();
  const bool rows = listRows();
  const bool imports = listImports();
  const bool message = ended && showMessage();
  const bool good = finished && ended && files && rows && imports && message;
  std::printf("%s\n", good ? "The harvest is as expected." : "The harvest is NOT as expected.");
  return good ? 0 : 1;
}
