#include "shell/frmSplash.h"

#include <QApplication>
#include <QIcon>
#include <QKeyEvent>
#include <QScreen>

#include "app/Settings.h"
#include "base/Text.h"
#include "desktop/Dialogs.h"
#include "transfer/InternetTransfer.h"
#include "ui_frmSplash.h"

namespace mv {

namespace {

constexpr int kShownFor = 4000;  // ms
constexpr int kPictureSize = 96;

void enlarge(QWidget& control, qreal scale, bool bold) {
  QFont font = control.font();
  font.setPointSizeF(font.pointSizeF() * scale);
  font.setBold(bold);
  control.setFont(font);
}

QString detailsText() {
  return QString("MIT licence\n\nQt %1, %2, %3\n\nProgram folder: %4")
      .arg(qVersion(), toQString(Database::engineVersion()), toQString(InternetTransfer::libraryVersion()),
           toQString(gProgramFolder));
}

}  // namespace

frmSplash::frmSplash(QWidget* owner)
    : QFrame(owner, Qt::Dialog | Qt::FramelessWindowHint), ui_(std::make_unique<Ui::frmSplash>()) {
  ui_->setupUi(this);
  setWindowTitle("About " + applicationTitle());
  setAttribute(Qt::WA_ShowWithoutActivating);
  ui_->lblPicture->setPixmap(QApplication::windowIcon().pixmap(kPictureSize));
  ui_->lblTitle->setText(applicationTitle());
  enlarge(*ui_->lblTitle, 2.0, true);
  ui_->lblVersion->setText("Version " + QApplication::applicationVersion());
  enlarge(*ui_->lblPurpose, 1.1, false);
  connect(ui_->cmdClose, &QPushButton::clicked, this, &QWidget::hide);

  closingTimer.setSingleShot(true);
  closingTimer.setInterval(kShownFor);
  connect(&closingTimer, &QTimer::timeout, this, &QWidget::hide);
}

frmSplash::~frmSplash() = default;

void frmSplash::showBriefly() {
  ui_->cmdClose->hide();
  ui_->lblDetails->hide();
  showCentred();
  closingTimer.start();
}

void frmSplash::showUntilClosed() {
  closingTimer.stop();
  ui_->lblDetails->setText(detailsText());
  ui_->lblDetails->show();
  ui_->cmdClose->show();
  showCentred();
  raise();
  activateWindow();
  ui_->cmdClose->setFocus();
}

void frmSplash::mousePressEvent(QMouseEvent*) { hide(); }

void frmSplash::keyPressEvent(QKeyEvent* event) {
  const bool closes = event->key() == Qt::Key_Escape || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  closes ? hide() : QFrame::keyPressEvent(event);
}

void frmSplash::showCentred() {
  adjustSize();
  const QWidget* owner = parentWidget();
  if (const QScreen* shown = owner ? owner->screen() : screen())
    move(shown->availableGeometry().center() - rect().center());
  show();
}

}  // namespace mv
