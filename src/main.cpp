// The entry of the program.

#include <QApplication>
#include <QIcon>
#include <QStandardPaths>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "base/EndSignals.h"
#include "base/ProgramName.h"
#include "base/Text.h"
#include "files/FileSignals.h"
#include "program/StartUp.h"
#include "transfer/HttpsHosts.h"

namespace {

constexpr const char* kVersionText = "Morvane2000 " MORVANE_VERSION "\n";
constexpr const char* kHelpText =
    "Usage: morvane2000 [--help | --version]\n"
    "\n"
    "Fetches the files of web sites, page by page. Opens a window in which sites are described, started and stopped;\n"
    "its Help menu has the user guide.\n"
    "\n"
    "The database, the error log and the fetched files lie in the program's folder or, for an installed program, in "
    "the\n"
    "user's own data folder, usually ~/.local/share/Morvane2000.\n";

// The drawing's fine lines are narrower than a pixel in title bars and task lists.
QIcon programIcon() {
  QIcon icon(":/morvane2000.svg");
  const QIcon small(":/morvane2000-small.svg");
  for (const int size : {16, 22, 24}) icon.addPixmap(small.pixmap(size));
  return icon;
}

// What packagers ask a program; answered without a display, and nothing is touched. nullptr: the window is wanted.
const char* answerTo(int argc, char** argv) {
  const std::string_view word = argc == 2 ? argv[1] : "";
  if (word == "--version") return kVersionText;
  return word == "--help" ? kHelpText : nullptr;
}

}  // namespace

int main(int argc, char** argv) {
  if (const char* answer = answerTo(argc, argv)) return std::fputs(answer, stdout) < 0 ? 1 : 0;

  mv::makeFileSignalsErrors();

  QApplication application(argc, argv);
  QApplication::setApplicationName(mv::kProgramName);
  QApplication::setApplicationVersion(QStringLiteral(MORVANE_VERSION));
  QApplication::setDesktopFileName("morvane2000");
  QApplication::setWindowIcon(programIcon());

  const std::string userFolder = mv::toUtf8(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation));
  mv::keepHttpsHosts(userFolder);
  mv::StartUp startUp;
  mv::onEndSignal([&] { startUp.end(); });
  const bool hasWindow = startUp.run(mv::toUtf8(QCoreApplication::applicationDirPath()), userFolder);
  if (startUp.isEnded()) return EXIT_SUCCESS;
  return hasWindow ? QApplication::exec() : EXIT_FAILURE;
}
