#include "Program.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QTimer>
#include <stdexcept>

#include "app/EndProgram.h"
#include "app/Settings.h"
#include "app/WindowRegistry.h"
#include "platform/Text.h"
#include "shell/frmDownloadManager.h"
#include "store/ProgramDatabase.h"

namespace mvbench {

namespace {

constexpr int kLookEveryMs = 5;

template <class Window>
std::vector<Window*> windowsOf() {
  std::vector<Window*> found;
  for (mv::ChildWindow* window : mv::WindowRegistry::instance().windows())
    if (auto* match = dynamic_cast<Window*>(window)) found.push_back(match);
  return found;
}

}  // namespace

void openFolder(const std::string& folder) {
  QDir().mkpath(mv::toQString(folder));
  mv::setProgramFolder(folder);
  const QString database = mv::toQString(mv::gDatabasePath);
  if (!QFile::copy(QStringLiteral(MORVANE_SHIPPED_DATABASE), database))
    throw std::runtime_error("The database cannot be copied to " + mv::gDatabasePath);
  QFile::setPermissions(database, QFile::ReadOwner | QFile::WriteOwner);
  mv::openProgramDatabase(mv::gDatabasePath);
  mv::gDatabase.execute("update pref set auto_scan = \"yes\", max_connections = 1000");
}

std::int32_t addSite(const std::string& location) {
  const auto id = static_cast<std::int32_t>(
      mv::gDatabase.query("select next_value from valid_sid where sid_name = 'site_id'").number("next_value"));
  const std::string key = std::to_string(id);
  mv::gDatabase.execute("update valid_sid set next_value = " + std::to_string(id + 1) + " where sid_name = 'site_id'");
  mv::gDatabase.execute(
      "insert into site (id, name, upper_limit, lower_limit, pages_to_scan, files_to_download, download_path, "
      "auto_scan, domain, alternate_matchpath, hops, unique_names, base_name) values (" +
      key + ", " + mv::quoted(location) + ", 1000000, 0, 1000000000, 1000000000, " +
      mv::quoted(mv::gProgramFolder + "/files-" + key) + ", 'yes', " +
      mv::quoted(location.substr(0, location.find('/'))) + ", 'no', 0, 'no', 'NewFile')");
  mv::gDatabase.execute("insert into site_filetype_xref (site_id, file_type_id) select " + key +
                        ", id from valid_filetypes");
  QDir().mkpath(mv::toQString(mv::gProgramFolder + "/files-" + key));
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

void runUntil(const std::function<bool()>& done) {
  QEventLoop loop;
  QTimer look;
  QObject::connect(&look, &QTimer::timeout, &loop, [&] {
    if (done()) loop.quit();
  });
  look.start(kLookEveryMs);
  loop.exec();
}

}  // namespace mvbench
