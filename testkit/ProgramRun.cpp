#include "testkit/ProgramRun.h"

#include <QFile>

#include "app/Settings.h"
#include "base/Text.h"
#include "testkit/SiteRow.h"

namespace mvtest {

namespace {

constexpr int kPatienceMs = 10'000;

QString programIn(const ProgramFolder& folder) { return mv::toQString(folder.path()) + "/morvane2000"; }

}  // namespace

ProgramRun::ProgramRun(const std::string& executable) {
  QFile::copy(mv::toQString(executable), programIn(folder_));
  process_.setProcessChannelMode(QProcess::ForwardedChannels);
}

ProgramRun::~ProgramRun() {
  if (isRunning()) kill();
}

mv::Id ProgramRun::addAutoScanSite(const std::string& location, const std::string& lowerKB, const std::string& upperMB,
                                   const std::vector<std::string>& extensions) {
  const mv::Id id = addSite(location, mv::gDownloadFolder, extensions);
  setSite(id, "auto_scan = \"yes\", lower_limit = " + lowerKB + ", upper_limit = " + upperMB);
  mv::gDatabase.execute("update pref set auto_scan = \"yes\"");
  return id;
}

bool ProgramRun::start() {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  if (!environment.contains("DISPLAY") && !environment.contains("WAYLAND_DISPLAY"))
    environment.insert("QT_QPA_PLATFORM", "offscreen");
  environment.insert("XDG_CONFIG_HOME", mv::toQString(userSettingsOf(folder_.path())));
  environment.insert("XDG_DATA_HOME", mv::toQString(userSettingsOf(folder_.path())));
  process_.setProcessEnvironment(environment);
  process_.start(programIn(folder_), QStringList());
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
