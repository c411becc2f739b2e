#include "shell/frmSplash.h"

#include <QApplication>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include "app/Settings.h"
#include "base/Text.h"
#include "desktop/Dialogs.h"
#include "transfer/InternetTransfer.h"

namespace mv {

namespace {

constexpr int kShownFor = 4000;  // ms
constexpr int kPictureSize = 96;

QLabel* centredLabel(const QString& text, qreal scale, bool bold) {
  auto* label = new QLabel(text);
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * scale);
  font.setBold(bold);
  label->setFont(font);
  label->setAlignment(Qt::AlignCenter);
  return label;
}

QString detailsText() {
  return QString("MIT licence\n\nQt %1, %2, %3\n\nProgram folder: %4")
      .arg(qVersion(), toQString(Database::engineVersion()), toQString(InternetTransfer::libraryVersion()),
           toQString(gProgramFolder));
}

}  // namespace

frmSplash::frmSplash(QWidget* owner) : QFrame(owner, Qt::Dialog | Qt::FramelessWindowHint) {
  setFrameStyle(QFrame::Box | QFrame::Raised);
  setObjectName("frmSplash");
  setWindowTitle("About " + applicationTitle());
  setAttribute(Qt::WA_ShowWithoutActivating);

  auto* picture = new QLabel;
  picture->setPixmap(QApplication::windowIcon().pixmap(kPictureSize));
  picture->setAlignment(Qt::AlignCenter);
  close_ = new QPushButton("Close");
  connect(close_, &QPushButton::clicked, this, &QWidget::hide);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(40, 28, 40, 24);
  layout->addWidget(picture);
  layout->addWidget(centredLabel(applicationTitle(), 2.0, true));
  layout->addWidget(centredLabel("Version " + QApplication::applicationVersion(), 1.0, false));
  layout->addWidget(centredLabel("Harvests files from web sites", 1.1, false));
  details_ = centredLabel({}, 1.0, false);
  details_->setObjectName("lblDetails");
  details_->setTextFormat(Qt::PlainText);
  details_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  layout->addWidget(details_);
  layout->addSpacing(8);
  layout->addWidget(close_, 0, Qt::AlignHCenter);

  closingTimer.setSingleShot(true);
  closingTimer.setInterval(kShownFor);
  connect(&closingTimer, &QTimer::timeout, this, &QWidget::hide);
}

void frmSplash::showBriefly() {
  close_->hide();
  details_->hide();
  showCentred();
  closingTimer.start();
}

void frmSplash::showUntilClosed() {
  closingTimer.stop();
  details_->setText(detailsText());
  details_->show();
  close_->show();
  showCentred();
  raise();
  activateWindow();
  close_->setFocus();
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
