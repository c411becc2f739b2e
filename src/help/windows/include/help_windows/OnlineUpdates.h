// The online checks as the main window carries them: a strip of panels that say what a check is doing, no higher than
// nothing while none has anything to say; the hidden lists of what the update server offers; the news window.
#pragma once

#include <QWidget>
#include <memory>

#include "help/FormUpdates.h"
#include "help/HelpUpdates.h"
#include "help/MessageCheck.h"

namespace mv {

class ElidedLabel;
namespace Ui {
class OnlineUpdates;
}

class OnlineUpdates : public QWidget {
  Q_OBJECT
 public:
  explicit OnlineUpdates(QWidget* parent);
  ~OnlineUpdates() override;

  // Until a check has something to say again.
  void hidePanels();

  FormUpdates formUpdates{this};
  HelpUpdates helpUpdates{this};
  MessageCheck messageCheck{this};

 protected:
  void changeEvent(QEvent* event) override;

 private:
  // The panel shows what `chain` is doing, and goes with its end.
  void connectPanel(QWidget& panel, ElidedLabel& line, const FeedChain& chain);
  void fillOverview();
  void fillHelpOverview();
  void drawPictures();

  std::unique_ptr<Ui::OnlineUpdates> ui_;
};

}  // namespace mv
