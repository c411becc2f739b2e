#include "help_windows/OnlineUpdates.h"

#include <QEvent>

#include "base/Text.h"
#include "help_windows/frmMessage.h"
#include "ui_OnlineUpdates.h"
#include "windows/ToolIcons.h"
#include "windows/WindowRegistry.h"

namespace mv {

namespace {

constexpr int kPictureSize = 16;

enum HelpColumn { kId, kUrl, kFetch };

QString fetchFlag(bool marked) { return marked ? "yes" : "no"; }

void showNews(const NewsMessage& message) {
  auto* window = WindowRegistry::instance().find<frmMessage>();
  if (!window) window = new frmMessage;
  window->setMessage(toQString(message.text));
  window->setURL(toQString(message.url));
  window->showChild();
}

}  // namespace

OnlineUpdates::OnlineUpdates(QWidget* parent) : QWidget(parent), ui_(std::make_unique<Ui::OnlineUpdates>()) {
  ui_->setupUi(this);
  drawPictures();
  connectPanel(*ui_->pictUpdates, *ui_->lblUpdates, formUpdates);
  connectPanel(*ui_->pictHelpUpdates, *ui_->lblHelpUpdates, helpUpdates);
  fillOverview();
  fillHelpOverview();
  connect(&messageCheck, &MessageCheck::newsArrived, this,
          [](const NewsMessage& message) { guarded("MessageCheck", [&] { showNews(message); }); });
}

OnlineUpdates::~OnlineUpdates() = default;

void OnlineUpdates::drawPictures() {
  ui_->iconUpdates->setPixmap(toolIcon("updates").pixmap(kPictureSize));
  ui_->iconHelpUpdates->setPixmap(toolIcon("help").pixmap(kPictureSize));
}

void OnlineUpdates::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) drawPictures();
}

void OnlineUpdates::hidePanels() {
  ui_->pictUpdates->hide();
  ui_->pictHelpUpdates->hide();
}

void OnlineUpdates::connectPanel(QWidget& panel, ElidedLabel& line, const FeedChain& chain) {
  connect(&chain, &FeedChain::progress, &panel, [&panel, &line](const std::string& text) {
    line.setLine(text);
    panel.show();
  });
  connect(&chain, &FeedChain::ended, &panel, &QWidget::hide);
}

void OnlineUpdates::fillOverview() {
  ListView& list = *ui_->lvwOverview;
  list.setColumns({{"name"}, {"release date"}, {"url"}});
  connect(&formUpdates, &FormUpdates::listCleared, &list, &ListView::clearRows);
  connect(&formUpdates, &FormUpdates::definitionListed, &list, [&list](const FormUpdate& definition) {
    list.addRow({toQString(definition.name), toQString(definition.releaseDate), toQString(definition.url)});
  });
  connect(&formUpdates, &FormUpdates::definitionTakenOff, &list, &ListView::removeRow);
}

void OnlineUpdates::fillHelpOverview() {
  ListView& list = *ui_->lvwHelpOverview;
  list.setColumns({{"id"}, {"url"}, {"fetch"}});
  connect(&helpUpdates, &HelpUpdates::listCleared, &list, &ListView::clearRows);
  connect(&helpUpdates, &HelpUpdates::topicListed, &list, [&list](const TopicEntry& topic) {
    list.addRow({QString::number(topic.id), toQString(topic.url), fetchFlag(true)});
  });
  connect(&helpUpdates, &HelpUpdates::topicMarked, &list,
          [&list](int row, bool marked) { list.setCell(row, kFetch, fetchFlag(marked)); });
}

}  // namespace mv
