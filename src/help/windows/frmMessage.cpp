#include "help_windows/frmMessage.h"

#include <QKeyEvent>

#include "base/ToolTip.h"
#include "base/WebAddress.h"
#include "ui_frmMessage.h"
#include "windows/ListHelpers.h"
#include "windows/MainFrame.h"

namespace mv {

namespace {

constexpr int kTop = 20, kLeft = 20, kWidth = 5430, kHeight = 2805;  // twips

}  // namespace

frmMessage::frmMessage() : ChildWindow(kWidth, kHeight), ui_(std::make_unique<Ui::frmMessage>()) {
  ui_->setupUi(this);
  setFocusProxy(ui_->cmdClose);
  setPlace({kTop, kLeft, kHeight, kWidth});
  connect(ui_->cbGo, &QPushButton::clicked, this, [this] { run([this] { openInBrowser(this, url_); }); });
  connect(ui_->cmdClose, &QPushButton::clicked, this, [this] { run([this] { unload(); }); });
}

frmMessage::~frmMessage() = default;

void frmMessage::setMessage(const QString& text) {
  message_ = text;
  ui_->tbMsg->showText(text);
}

void frmMessage::setURL(const QString& url) {
  url_ = url;
  ui_->cbGo->setEnabled(isWebAddress(url));
  ui_->cbGo->setToolTip(plainToolTip(url));
}

void frmMessage::activated() { MainFrame::current()->setClipboardItemsEnabled(true); }

void frmMessage::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter)
    (ui_->cbGo->hasFocus() ? ui_->cbGo : ui_->cmdClose)->click();
  else
    ChildWindow::keyPressEvent(event);
}

}  // namespace mv
