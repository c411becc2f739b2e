// The news window: a message from the program's maker and the way to a page about it. There is one.
#pragma once

#include <memory>

#include "windows/ChildWindow.h"

namespace mv {

namespace Ui {
class frmMessage;
}

class frmMessage : public ChildWindow {
  Q_OBJECT
 public:
  frmMessage();
  ~frmMessage() override;

  // Plain text, shown at once.
  void setMessage(const QString& text);
  QString Message() const { return message_; }
  // The page that Go opens; with an address that is not http or https there is nothing to open.
  void setURL(const QString& url);
  QString URL() const { return url_; }

 protected:
  void activated() override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  std::unique_ptr<Ui::frmMessage> ui_;
  QString message_;
  QString url_;
};

}  // namespace mv
