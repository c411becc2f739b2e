#include "UpdatePanel.h"

#include <QEvent>
#include <QHBoxLayout>

#include "windows/ElidedLabel.h"
#include "windows/ToolIcons.h"

namespace mv {

namespace {

constexpr int kPictureSize = 16;
constexpr int kMargin = 3;

}  // namespace

UpdatePanel::UpdatePanel(const QString& name, const QString& labelName, const QString& picture, QWidget* parent)
    : QFrame(parent), picture_(picture), icon_(new QLabel(this)), label_(new ElidedLabel(labelName, {}, this)) {
  setObjectName(name);
  drawPicture();
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(2 * kMargin, kMargin, 2 * kMargin, kMargin);
  row->addWidget(icon_);
  row->addWidget(label_, 1);
  hide();
}

void UpdatePanel::drawPicture() { icon_->setPixmap(toolIcon(picture_).pixmap(kPictureSize)); }

void UpdatePanel::changeEvent(QEvent* event) {
  QFrame::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) drawPicture();
}

void UpdatePanel::say(const std::string& line) {
  label_->setLine(line);
  show();
}

}  // namespace mv
