#include "transfer/HttpsHosts.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTimer>
#include <algorithm>
#include <map>
#include <optional>
#include <set>

#include "base/Text.h"
#include "transfer/RequestAddress.h"

namespace mv {

namespace {

constexpr const char* kFileName = "/https-hosts.txt";
constexpr int kSaveDelay = 1000;  // milliseconds
constexpr std::string_view kUsualPort = ":443";
// What servers may make the program remember has an end.
constexpr std::size_t kMostHosts = 20'000;
constexpr const char* kSubDomains = "includesubdomains";

// One line of the file: the host, and for one that has demanded it until when (seconds since 1970) it is asked by https
// only, perhaps with the hosts below it.
struct Demand {
  qint64 until = 0;
  bool below = false;
};

struct Memory {
  std::set<std::string> met;
  std::map<std::string, Demand> demanded;  // without port
  std::set<std::string> required;
  std::set<std::string> givenUp;
  QString file;
  bool saveDue = false;
};

Memory& memory() {
  static Memory hosts;
  return hosts;
}

std::string keyOf(std::string host) {
  if (host.ends_with(kUsualPort)) host.resize(host.size() - kUsualPort.size());
  return host;
}

std::string keyOfAddress(std::string_view address) { return keyOf(hostOf(address)); }

std::string_view withoutPort(std::string_view host) {
  const auto colon = host.rfind(':');
  return colon == std::string_view::npos || host.ends_with(']') ? host : host.substr(0, colon);
}

bool isNumber(std::string_view host) {
  return host.starts_with('[') || host.find_first_not_of("0123456789.") == std::string_view::npos;
}

bool holds(const std::map<std::string, Demand>& demanded, std::string_view host, bool below) {
  const auto found = demanded.find(std::string(host));
  return found != demanded.end() && (!below || found->second.below) &&
         found->second.until > QDateTime::currentSecsSinceEpoch();
}

bool isDemanded(std::string_view host) {
  const auto& demanded = memory().demanded;
  if (demanded.empty()) return false;
  host = withoutPort(host);
  if (holds(demanded, host, false)) return true;
  for (auto dot = host.find('.'); dot != std::string_view::npos; dot = host.find('.')) {
    host.remove_prefix(dot + 1);
    if (holds(demanded, host, true)) return true;
  }
  return false;
}

void changed() {
  auto& hosts = memory();
  if (hosts.file.isEmpty() || hosts.saveDue || QCoreApplication::instance() == nullptr) return;
  hosts.saveDue = true;
  QTimer::singleShot(kSaveDelay, QCoreApplication::instance(), &saveHttpsHosts);
}

void readLine(const QByteArray& line) {
  auto& hosts = memory();
  const QList<QByteArray> words = line.simplified().split(' ');
  const std::string host = words[0].toStdString();
  if (host.empty() || host.starts_with('#') || hosts.met.size() + hosts.demanded.size() >= kMostHosts) return;
  if (words.size() == 1)
    hosts.met.insert(host);
  else
    hosts.demanded[host] = {words[1].toLongLong(), words.size() > 2 && words[2] == kSubDomains};
}

}  // namespace

void rememberHttps(std::string_view address) {
  auto& hosts = memory();
  const std::string host = keyOfAddress(address);
  if (host.empty() || hosts.met.size() >= kMostHosts || hosts.givenUp.contains(host)) return;
  if (hosts.met.insert(host).second) changed();
}

void requireHttps(std::string_view address) {
  const std::string host = keyOfAddress(address);
  if (!host.empty()) memory().required.insert(host);
}

void giveUpHttps(const std::string& host) { memory().givenUp.insert(keyOf(host)); }

void rememberHsts(std::string_view address, std::string_view field) {
  auto& hosts = memory();
  const std::string host(withoutPort(keyOfAddress(address)));
  if (host.empty() || isNumber(host)) return;
  std::optional<qint64> age;
  bool below = false;
  for (QByteArray part : QByteArray(field.data(), static_cast<qsizetype>(field.size())).toLower().split(';')) {
    part = part.trimmed();
    below = below || part == kSubDomains;
    if (!part.startsWith("max-age")) continue;
    bool isNumeric = false;
    const qint64 seconds = part.mid(part.indexOf('=') + 1).trimmed().replace('"', "").toLongLong(&isNumeric);
    if (isNumeric && seconds >= 0) age = seconds;
  }
  if (!age || hosts.demanded.size() >= kMostHosts) return;
  constexpr qint64 kLongest = qint64{10} * 365 * 24 * 3600;
  if (*age == 0)
    hosts.demanded.erase(host);
  else
    hosts.demanded[host] = {QDateTime::currentSecsSinceEpoch() + std::min(*age, kLongest), below};
  changed();
}

HttpsUse httpsUse(const std::string& host) {
  const auto& hosts = memory();
  const std::string key = keyOf(host);
  if (hosts.required.contains(key) || isDemanded(key)) return HttpsUse::Only;
  return hosts.met.contains(key) && !hosts.givenUp.contains(key) ? HttpsUse::Tried : HttpsUse::No;
}

void keepHttpsHosts(const std::string& folder) {
  auto& hosts = memory();
  QDir().mkpath(toQString(folder));
  hosts.file = toQString(folder) + QString::fromLatin1(kFileName);
  QFile file(hosts.file);
  // A pipe would hold the program until somebody writes into it.
  if (QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly))
    while (!file.atEnd()) readLine(file.readLine());
  qRemovePostRoutine(&saveHttpsHosts);
  qAddPostRoutine(&saveHttpsHosts);
}

// A failure is no one's loss: the hosts are met again.
void saveHttpsHosts() {
  auto& hosts = memory();
  if (!hosts.saveDue) return;
  hosts.saveDue = false;
  QSaveFile file(hosts.file);
  if (!file.open(QIODevice::WriteOnly)) return;
  file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
  file.write("# Hosts that speak https. With a number: https only, until then (seconds since 1970).\n");
  for (const auto& host : hosts.met) file.write(QByteArray::fromStdString(host + "\n"));
  const qint64 now = QDateTime::currentSecsSinceEpoch();
  for (const auto& [host, demand] : hosts.demanded) {
    if (demand.until <= now) continue;
    file.write(QByteArray::fromStdString(host) + ' ' + QByteArray::number(demand.until) +
               (demand.below ? QByteArray(" ") + kSubDomains : QByteArray()) + '\n');
  }
  file.commit();
}

void forgetHttpsHosts() {
  saveHttpsHosts();
  memory() = Memory();
}

}  // namespace mv
