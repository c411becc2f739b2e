#include "help_windows/OnlineUpdates.h"

#include <QHBoxLayout>

#include "UpdatePanel.h"
#include "base/Text.h"
#include "desktop/ListView.h"
#include "help_windows/frmMessage.h"
#include "windows/WindowRegistry.h"

namespace mv {

namespace {

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

OnlineUpdates::OnlineUpdates(QWidget* parent)
    : QWidget(parent),
      pictUpdates_(new UpdatePanel("pictUpdates", "lblUpdates", "updates", this)),
      pictHelpUpdates_(new UpdatePanel("pictHelpUpdates", "lblHelpUpdates", "help", this)) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  addPanel(*pictUpdates_, formUpdates);
  addPanel(*pictHelpUpdates_, helpUpdates);
  fillOverview(*addList("lvwOverview"));
  fillHelpOverview(*addList("lvwHelpOverview"));
  connect(&messageCheck, &MessageCheck::newsArrived, this,
          [](const NewsMessage& message) { guarded("MessageCheck", [&] { showNews(message); }); });
}

void OnlineUpdates::hidePanels() {
  for (UpdatePanel* panel : {pictUpdates_, pictHelpUpdates_}) panel->hide();
}

void OnlineUpdates::addPanel(UpdatePanel& panel, const FeedChain& chain) {
  static_cast<QHBoxLayout*>(layout())->addWidget(&panel, 1);
  connect(&chain, &FeedChain::progress, &panel, &UpdatePanel::say);
  connect(&chain, &FeedChain::ended, &panel, &QWidget::hide);
}

ListView* OnlineUpdates::addList(const char* name) {
  auto* list = new ListView(this);
  list->setObjectName(QString::fromLatin1(name));
  list->hide();
  return list;
}

void OnlineUpdates::fillOverview(ListView& lvwOverview) {
  lvwOverview.setColumns({{"name"}, {"release date"}, {"url"}});
  connect(&formUpdates, &FormUpdates::listCleared, &lvwOverview, &ListView::clearRows);
  connect(&formUpdates, &FormUpdates::definitionListed, &lvwOverview, [&lvwOverview](const FormUpdate& definition) {
    lvwOverview.addRow({toQString(definition.name), toQString(definition.releaseDate), toQString(definition.url)});
  });
  connect(&formUpdates, &FormUpdates::definitionTakenOff, &lvwOverview, &ListView::removeRow);
}

void OnlineUpdates::fillHelpOverview(ListView& lvwHelpOverview) {
  lvwHelpOverview.setColumns({{"id"}, {"url"}, {"fetch"}});
  connect(&helpUpdates, &HelpUpdates::listCleared, &lvwHelpOverview, &ListView::clearRows);
  connect(&helpUpdates, &HelpUpdates::topicListed, &lvwHelpOverview, [&lvwHelpOverview](const TopicEntry& topic) {
    lvwHelpOverview.addRow({QString::number(topic.id), toQString(topic.url), fetchFlag(true)});
  });
  connect(&helpUpdates, &HelpUpdates::topicMarked, &lvwHelpOverview,
          [&lvwHelpOverview](int row, bool marked) { lvwHelpOverview.setCell(row, kFetch, fetchFlag(marked)); });
}

}  // namespace mv
