#include "support/ProgramRun.h"

#include <QDir>
#include <QFile>

#include "app/Settings.h"
#include "platform/Text.h"

namespace mvtest {

namespace {

constexpr int kPatienceMs = 10'000;

}  // namespace

ProgramRun::ProgramRun(const std::string& executable, const std::string& database)
    : folder_(work_.path() + QStringLiteral("/program")) {
  QDir().mkpath(folder_);
  QFile::copy(mv::toQString(executable), folder_ + QStringLiteral("/morvane2000"));
  QFile::copy(mv::toQString(database), folder_ + QStringLiteral("/morvane2000.mdb"));
  mv::setProgramFolder(mv::toUtf8(folder_));
  mv::gDatabase.open(mv::gDatabasePath);
  process_.setProcessChannelMode(QProcess::ForwardedChannels);
}

ProgramRun::~ProgramRun() {
  if (isRunning()) kill();
  mv::gDatabase.close();
}

std::int32_t ProgramRun::addAutoScanSite(const std::string& location, const std::string& lowerKB,
                                         const std::string& upperMB, const std::vector<std::string>& extensions,
                                         std::vector<std::int64_t>* fileTypeIds) {
  auto& database = mv::gDatabase;
  database.execute("update pref set auto_scan = \"yes\"");
  const std::int32_t id =
      static_cast<std::int32_t>(database.query("select next_value from valid_sid where sid_name = 'site_id'").number("next_value"));
  database.execute("update valid_sid set next_value = " + std::to_string(id + 1) + " where sid_name = 'site_id'");
  const std::string domain = location.substr(0, location.find('/'));
  database.execute("insert into site (id, name, upper_limit, lower_limit, pages_to_scan, files_to_download, download_path, "
                   "auto_scan, domain, alternate_matchpath, hops, unique_names, base_name) values (" +
                   std::to_string(id) + ", " + mv::quoted(location) + ", " + upperMB + ", " + lowerKB + ", 50, 1000, " +
                   mv::quoted(mv::gDownloadFolder) + ", \"yes\", " + mv::quoted(domain) + ", \"no\", 0, \"no\", \"NewFile\")");
  for (const std::string& extension : extensions) {
    auto type = database.query("select id from valid_filetypes where name = " + mv::quoted(extension));
    const std::int64_t typeId = type.number("id");
    database.execute("insert into site_filetype_xref (site_id, file_type_id) values (" + std::to_string(id) + ", " +
                     std::to_string(typeId) + ")");
    if (fileTypeIds) fileTypeIds->push_back(typeId);
  }
  return id;
}

bool ProgramRun::start() {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  if (!environment.contains(QStringLiteral("DISPLAY")) && !environment.contains(QStringLiteral("WAYLAND_DISPLAY")))
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
  process_.setProcessEnvironment(environment);
  process_.start(folder_ + QStringLiteral("/morvane2000"), QStringList());
  return process_.waitForStarted(kPatienceMs);
}

bool ProgramRun::isRunning() {
  process_.waitForFinished(0);
  return process_.state() == QProcess::Running;
}

bool ProgramRun::terminate() {
  process_.terminate();
  return process_.waitForFinished(kPatienceMs) && process_.exitStatus() == QProcess::NormalExit &&
         process_.exitCode() == 0;
}

void ProgramRun::kill() {
  process_.kill();
  process_.waitForFinished(kPatienceMs);
}

}  // namespace mvtest
