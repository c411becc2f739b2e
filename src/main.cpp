// The entry of the program.

#include <QApplication>
#include <QIcon>
#include <QStandardPaths>
#include <cstdlib>

#include "base/EndSignals.h"
#include "base/ProgramName.h"
#include "base/Text.h"
#include "program/StartUp.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationName(mv::kProgramName);
  QApplication::setApplicationVersion(QStringLiteral(MORVANE_VERSION));
  QApplication::setDesktopFileName("morvane2000");
  QApplication::setWindowIcon(QIcon(":/morvane2000.svg"));

  mv::StartUp startUp;
  mv::onEndSignal([&] { startUp.end(); });
  const bool hasWindow =
      startUp.run(mv::toUtf8(QCoreApplication::applicationDirPath()),
                  mv::toUtf8(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation)));
  if (startUp.isEnded()) return EXIT_SUCCESS;
  return hasWindow ? QApplication::exec() : EXIT_FAILURE;
}
