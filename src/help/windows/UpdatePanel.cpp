#include "UpdatePanel.h"

#include <QHBoxLayout>

#include "windows/ElidedLabel.h"
#include "windows/ToolIcons.h"

namespace mv {

namespace {

constexpr int kPictureSize = 16;
constexpr int kMargin = 3;

}  // namespace

UpdatePanel::UpdatePanel(const QString& name, const QString& labelName, const QString& picture, QWidget* parent)
    : QFrame(parent), label_(new ElidedLabel(labelName, {}, this)) {
  setObjectName(name);
  auto* icon = new QLabel(this);
  icon->setPixmap(toolIcon(picture).pixmap(kPictureSize));
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(2 * kMargin, kMargin, 2 * kMargin, kMargin);
  row->addWidget(icon);
  row->addWidget(label_, 1);
  hide();
}

void UpdatePanel::say(const std::string& line) {
  label_->setLine(line);
  show();
}

}  // namespace mv
