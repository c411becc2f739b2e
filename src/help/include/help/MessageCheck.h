// The news message of the update server: told when its number is higher than that of the last one seen, which is kept
// in the per-user settings. The first message of all is not told.
#pragma once

#include "help/FeedChain.h"

namespace mv {

struct NewsMessage;

class MessageCheck : public FeedChain {
  Q_OBJECT
 public:
  explicit MessageCheck(QObject* parent);

  // Starts the check, anew when one is under way. Returns at once.
  void getMessage();

  InternetTransfer Inet4{0, this};

 Q_SIGNALS:
  void newsArrived(const mv::NewsMessage& message);

 private:
  void messageCompleted();
};

}  // namespace mv
