#include "help/MessageCheck.h"

#include "base/ProgramName.h"
#include "base/UserSettings.h"
#include "help/FeedParsers.h"
#include "help/VendorServers.h"
#include "net/TextBody.h"

namespace mv {

namespace {

constexpr const char* kMessagePath = "/morvane2000/message.txt";
constexpr const char* kSection = "TheSection";
constexpr const char* kKey = "LastMessageID";

}  // namespace

MessageCheck::MessageCheck(QObject* parent) : FeedChain("MessageCheck", parent) {
  handle(Inet4, "Inet4", [this] { messageCompleted(); });
}

void MessageCheck::getMessage() { get(Inet4, updatePage(kMessagePath)); }

void MessageCheck::messageCompleted() {
  const auto message = readNewsMessage(readTextBody(Inet4));
  if (!message) return;
  const int last = readUserSetting(kProgramName, kSection, kKey, "0").toInt();
  if (last != 0 && message->id <= last) return;
  saveUserSetting(kProgramName, kSection, kKey, QString::number(message->id));
  if (last != 0) Q_EMIT newsArrived(*message);
}

}  // namespace mv
