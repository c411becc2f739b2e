#include "Program.h"

#include <QDir>
#include <stdexcept>

#include "app/EndProgram.h"
#include "app/Settings.h"
#include "base/Text.h"
#include "shell/frmDownloadManager.h"
#include "testkit/SiteRow.h"
#include "windows/WindowRegistry.h"

namespace mvbench {

namespace {

template <class Window>
std::vector<Window*> windowsOf() {
  std::vector<Window*> found;
  for (mv::ChildWindow* window : mv::WindowRegistry::instance().windows())
    if (auto* match = dynamic_cast<Window*>(window)) found.push_back(match);
  return found;
}

}  // namespace

mv::Id addSite(const std::string& location) {
  const std::string folder = mv::gProgramFolder + "/files of " + location.substr(0, location.find('/'));
  QDir().mkpath(mv::toQString(folder));
  const mv::Id id = mvtest::addSite(location, folder);
  mvtest::setSite(id,
                  "auto_scan = \"yes\", upper_limit = 1000000, pages_to_scan = 1000000000, files_to_download = "
                  "1000000000");
  mvtest::allowEveryType(id);
  mv::gDatabase.execute("update pref set auto_scan = \"yes\", max_connections = 1000");
  return id;
}

Application::Application()
    : application_((qputenv("QT_QPA_PLATFORM", qEnvironmentVariable("QT_QPA_PLATFORM", "offscreen").toUtf8()), argc_),
                   argv_) {
  // What a process says in a box would wait for a user for ever.
  QApplication::setQuitOnLastWindowClosed(false);
}

Program::Program() {
  const std::string folder = mv::gProgramFolder;
  mv::gDatabase.close();
  if (!startUp_.run(folder)) throw std::runtime_error("The program did not start");
}

Program::~Program() { startUp_.mainWindow()->close(); }

std::vector<mv::frmScan*> Program::scans() const { return windowsOf<mv::frmScan>(); }
std::vector<mv::frmDownload*> Program::downloads() const { return windowsOf<mv::frmDownload>(); }

void Program::unpace() {
  for (auto* scan : scans()) scan->process().tmrOKToDownload.setInterval(0);
  for (auto* download : downloads()) download->process().tmrOKToDownload.setInterval(0);
}

}  // namespace mvbench
