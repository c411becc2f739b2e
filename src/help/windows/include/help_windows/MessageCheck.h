// The news message of the update server: shown when its number is higher than that of the last one seen, which is kept
// in the per-user settings. The first message of all is not shown.
#pragma once

#include "help_windows/FeedChain.h"

namespace mv {

class MessageCheck : public FeedChain {
  Q_OBJECT
 public:
  explicit MessageCheck(QObject* parent);

  // Starts the check, anew when one is under way. Returns at once.
  void getMessage();

  InternetTransfer Inet4{0, this};

 private:
  void messageCompleted();
};

}  // namespace mv
