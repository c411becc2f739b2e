// The online checks as the main window carries them: a strip of panels that say what a check is doing, no higher than
// nothing while none has anything to say; the hidden lists of what the update server offers; the news window.
#pragma once

#include <QWidget>

#include "help/FormUpdates.h"
#include "help/HelpUpdates.h"
#include "help/MessageCheck.h"

namespace mv {

class ListView;
class UpdatePanel;

class OnlineUpdates : public QWidget {
  Q_OBJECT
 public:
  explicit OnlineUpdates(QWidget* parent);

  // Until a check has something to say again.
  void hidePanels();

  FormUpdates formUpdates{this};
  HelpUpdates helpUpdates{this};
  MessageCheck messageCheck{this};

 private:
  // A panel that shows what `chain` is doing, and goes with its end.
  void addPanel(UpdatePanel& panel, const FeedChain& chain);
  ListView* addList(const char* name);
  void fillOverview(ListView& lvwOverview);
  void fillHelpOverview(ListView& lvwHelpOverview);

  UpdatePanel* pictUpdates_;
  UpdatePanel* pictHelpUpdates_;
};

}  // namespace mv
