// The one connection to the desktop's notification service.
#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <functional>

class QDBusPendingCallWatcher;

namespace mv {

class Notifier : public QObject {
  Q_OBJECT
 public:
  Notifier();

  void show(const QString& title, const QString& text, std::function<void()> clicked);

 private:
  Q_SLOT void actionInvoked(uint id, const QString& action);
  Q_SLOT void notificationClosed(uint id, uint reason);
  void shown(QDBusPendingCallWatcher& answer, const std::function<void()>& clicked);

  QHash<uint, std::function<void()>> clicked_;  // by the service's number
};

}  // namespace mv
