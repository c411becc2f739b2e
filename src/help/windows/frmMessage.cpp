#include "help_windows/frmMessage.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QPushButton>

#include "ReadingBox.h"
#include "base/ToolTip.h"
#include "base/WebAddress.h"
#include "windows/ListHelpers.h"
#include "windows/MainFrame.h"
#include "windows/ScrollingPage.h"

namespace mv {

namespace {

constexpr int kTop = 20, kLeft = 20, kWidth = 5430, kHeight = 2805;  // twips

}  // namespace

frmMessage::frmMessage()
    : ChildWindow(kWidth, kHeight),
      tbMsg_(new ReadingBox("tbMsg", "Message", this)),
      cbGo_(new QPushButton("&Go", this)),
      cmdClose_(new QPushButton("Close", this)) {
  setObjectName("frmMessage");
  setCaption("Message");
  setPlace({kTop, kLeft, kHeight, kWidth});
  buildControls();
  connect(cbGo_, &QPushButton::clicked, this, [this] { run([this] { openInBrowser(this, url_); }); });
  connect(cmdClose_, &QPushButton::clicked, this, [this] { run([this] { unload(); }); });
}

void frmMessage::buildControls() {
  cbGo_->setObjectName("cbGo");
  cbGo_->setEnabled(false);
  cmdClose_->setObjectName("cmdClose");
  auto* grid = new QGridLayout(makeScrollingPage(this));
  grid->addWidget(tbMsg_, 0, 0, 1, 3);
  grid->setRowStretch(0, 1);
  grid->setColumnStretch(0, 1);
  grid->addWidget(cbGo_, 1, 1);
  grid->addWidget(cmdClose_, 1, 2);
  setFocusProxy(cmdClose_);
}

void frmMessage::setMessage(const QString& text) {
  message_ = text;
  tbMsg_->showText(text);
}

void frmMessage::setURL(const QString& url) {
  url_ = url;
  cbGo_->setEnabled(isWebAddress(url));
  cbGo_->setToolTip(plainToolTip(url));
}

void frmMessage::activated() { MainFrame::current()->setClipboardItemsEnabled(true); }

void frmMessage::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter)
    (cbGo_->hasFocus() ? cbGo_ : cmdClose_)->click();
  else
    ChildWindow::keyPressEvent(event);
}

}  // namespace mv
