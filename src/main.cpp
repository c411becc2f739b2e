// The entry of the program.

#include <QApplication>
#include <QDir>
#include <QIcon>
#include <QStandardPaths>

#include "base/EndSignals.h"
#include "base/ProgramName.h"
#include "base/Text.h"
#include "files/FileSignals.h"
#include "program/StartUp.h"
#include "shell/frmDownloadManager.h"

int main(int argc, char** argv) {
  mv::makeFileSignalsErrors();
  QApplication application(argc, argv);
  QApplication::setApplicationName(mv::kProgramName);
  QApplication::setApplicationVersion(QStringLiteral(MORVANE_VERSION));
  QApplication::setDesktopFileName("morvane2000");
  QApplication::setWindowIcon(QIcon(":/morvane2000.svg"));

  mv::StartUp startUp;
  const std::string folder =
      mv::findProgramFolder(mv::toUtf8(QCoreApplication::applicationDirPath()),
                            mv::toUtf8(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation)));
  if (!startUp.run(folder)) return 1;
  // A request of the system to end (a log-out, Ctrl+C) closes the program as its close box does.
  mv::onEndSignal([&] { startUp.mainWindow()->close(); });
  return QApplication::exec();
}
