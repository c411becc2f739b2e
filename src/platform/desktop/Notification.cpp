#include "desktop/Notification.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>
#include <QGuiApplication>
#include <utility>

#include "Notifier.h"

namespace mv {

namespace {

constexpr const char* kService = "org.freedesktop.Notifications";
constexpr const char* kPath = "/org/freedesktop/Notifications";
constexpr const char* kClick = "default";  // the action of a click on the notification itself
constexpr int kServiceDecides = -1;        // how long it stands

// Without one, asking for the session's bus would start one.
bool hasSessionBus() {
  return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
         QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + "/bus");
}

}  // namespace

Notifier::Notifier() {
  QDBusConnection bus = QDBusConnection::sessionBus();
  bus.connect(kService, kPath, kService, "ActionInvoked", this, SLOT(actionInvoked(uint, QString)));
  bus.connect(kService, kPath, kService, "NotificationClosed", this, SLOT(notificationClosed(uint, uint)));
}

void Notifier::show(const QString& title, const QString& text, std::function<void()> clicked) {
  QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kService, "Notify");
  const QVariantMap hints{{"desktop-entry", QGuiApplication::desktopFileName()}};
  // The text may hold markup, the title may not.
  call << QGuiApplication::applicationDisplayName() << 0U << QGuiApplication::desktopFileName() << title
       << text.toHtmlEscaped() << QStringList{kClick, "Open Folder"} << hints << kServiceDecides;
  auto* answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, work = std::move(clicked)] {
    shown(*answer, work);
    answer->deleteLater();
  });
}

void Notifier::shown(QDBusPendingCallWatcher& answer, const std::function<void()>& clicked) {
  const QDBusPendingReply<uint> id = answer;
  if (!id.isError()) clicked_.insert(id.value(), clicked);
}

void Notifier::actionInvoked(uint id, const QString& action) {
  const auto work = clicked_.value(id);
  if (work && action == kClick) work();
}

void Notifier::notificationClosed(uint id, uint) { clicked_.remove(id); }

void notifyDesktop(const QString& title, const QString& text, std::function<void()> clicked) {
  if (!hasSessionBus()) return;
  static Notifier notifier;
  notifier.show(title, text, std::move(clicked));
}

}  // namespace mv
