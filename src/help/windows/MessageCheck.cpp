#include "help_windows/MessageCheck.h"

#include "base/Text.h"
#include "base/UserSettings.h"
#include "desktop/Dialogs.h"
#include "help/FeedParsers.h"
#include "help/VendorServers.h"
#include "help_windows/frmMessage.h"
#include "net/TextBody.h"
#include "windows/WindowRegistry.h"

namespace mv {

namespace {

constexpr const char* kMessagePath = "/morvane2000/message.txt";
constexpr const char* kSection = "TheSection";
constexpr const char* kKey = "LastMessageID";

void show(const NewsMessage& message) {
  auto* window = WindowRegistry::instance().find<frmMessage>();
  if (!window) window = new frmMessage;
  window->setMessage(toQString(message.text));
  window->setURL(toQString(message.url));
  window->showChild();
}

}  // namespace

MessageCheck::MessageCheck(QObject* parent) : FeedChain("MessageCheck", nullptr, parent) {
  handle(Inet4, "Inet4", [this] { messageCompleted(); });
}

void MessageCheck::getMessage() { get(Inet4, updatePage(kMessagePath)); }

void MessageCheck::messageCompleted() {
  const auto message = readNewsMessage(readTextBody(Inet4));
  if (!message) return;
  const int last = readUserSetting(applicationTitle(), kSection, kKey, "0").toInt();
  if (last != 0 && message->id <= last) return;
  saveUserSetting(applicationTitle(), kSection, kKey, QString::number(message->id));
  if (last != 0) show(*message);
}

}  // namespace mv
