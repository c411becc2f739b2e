#include "help/VendorServers.h"

#include "base/ProgramName.h"
#include "base/UserSettings.h"

namespace mv {

namespace {

constexpr const char* kDefaultUpdateHost = "update.quillon.example";
constexpr const char* kDefaultSupportHost = "support.quillon.example";
constexpr const char* kDefaultMakerHost = "www.quillon.example";

QString address(const char* key, const char* defaultHost, const QString& path) {
  const QString host =
      readUserSetting(kProgramName, "Servers", QString::fromLatin1(key), QString::fromLatin1(defaultHost));
  return "http://" + host + path;
}

}  // namespace

QString updatePage(const QString& path) { return address("UpdateHost", kDefaultUpdateHost, path); }
QString supportPage(const QString& path) { return address("SupportHost", kDefaultSupportHost, path); }
QString makerPage() { return address("MakerHost", kDefaultMakerHost, "/"); }

}  // namespace mv
