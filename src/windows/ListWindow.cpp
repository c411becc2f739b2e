#include "windows/ListWindow.h"

#include <QAction>
#include <QSet>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "desktop/ListColumns.h"
#include "windows/MainFrame.h"

namespace mv {
namespace {

constexpr QSize kIconSize(24, 24);
constexpr int kToolbarHeight = 870;  // twips

}  // namespace

ListWindow::ListWindow(const QString& caption, int width, int height)
    : ChildWindow(width, height), toolbar_(new QToolBar(this)), list_(new ListView(this)) {
  setCaption(caption);
  auto* strips = new QVBoxLayout(this);
  strips->setContentsMargins({});
  strips->setSpacing(0);
  strips->addWidget(toolbar_);
  strips->addWidget(list_, 1);
  toolbar_->setObjectName("Toolbar1");
  // Large letters need more.
  toolbar_->setMinimumHeight(twipsToPixels(kToolbarHeight));
  toolbar_->setIconSize(kIconSize);
  toolbar_->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
  setFocusProxy(list_);
  setKeepSorted(true);
  connect(list_, &ListView::rowChosen, this, [this](int row) { run([&] { choose(row); }); });
  connect(list_, &ListView::rowActivated, this, [this](int row) {
    run([&] {
      choose(row);
      editChosen();
    });
  });
  connect(list_, &ListView::deletePressed, this, [this] { run([this] { deleteByKey(); }); });
}

QToolButton* ListWindow::addButton(const QString& caption, const QString& toolTip, const QIcon& icon,
                                   std::function<void()> work) {
  const QString name = caption.trimmed();
  auto* action = new QAction(icon, caption, toolbar_);
  // Left to itself the action trims the caption of its button.
  action->setIconText(caption);
  action->setToolTip(toolTip);
  action->setObjectName(name);
  connect(action, &QAction::triggered, this, [this, clicked = std::move(work)] { run(clicked); });
  toolbar_->addAction(action);
  auto* button = qobject_cast<QToolButton*>(toolbar_->widgetForAction(action));
  button->setObjectName(name);
  button->setAccessibleName(name);
  button->setFocusPolicy(Qt::TabFocus);
  return button;
}

void ListWindow::load() {
  keepColumnWidths(*list_, objectName() + '.' + list_->objectName());
  run([this] { restorePosition(); });
  run([this] { buildWorkingLists("init"); });
}

void ListWindow::buildWorkingLists(const std::string& command, long) {
  if (command == "init") rebuild();
}

// What tells a row from the others.
QString ListWindow::rowKey(int row) const { return list_->cell(row, std::max(idColumn_, 0)); }

std::vector<QString> ListWindow::rowKeys() const {
  std::vector<QString> keys;
  keys.reserve(static_cast<std::size_t>(list_->rowCount()));
  for (int row = 0; row < list_->rowCount(); ++row) keys.push_back(rowKey(row));
  return keys;
}

// The row that an editor has just made is looked for by the user.
void ListWindow::showNewRow(const std::vector<QString>& before) {
  if (before.empty() || rowKeys() == before) return;
  const QSet<QString> known(before.begin(), before.end());
  for (int row = list_->rowCount() - 1; row >= 0; --row)
    if (!known.contains(rowKey(row))) list_->showRow(row);
}

void ListWindow::rebuild() {
  const std::vector<QString> before = rowKeys();
  list_->setRows(readRows());
  const int row = keepChosen_ ? rememberedRow() : -1;
  if (row < 0)
    forgetChosen();
  else
    list_->setRowSelected(row, true);
  showNewRow(before);
}

void ListWindow::choose(int row) {
  chosenText_ = list_->cell(row, 0);
  chosenId_ = idColumn_ < 0 ? 0 : list_->cell(row, idColumn_).toLong();
}

int ListWindow::chosenRow() const {
  const int row = rememberedRow();
  return row >= 0 && list_->isRowSelected(row) ? row : -1;
}

int ListWindow::rememberedRow() const {
  if (idColumn_ >= 0) return chosenId_ == 0 ? -1 : list_->findRow(idColumn_, QString::number(chosenId_));
  return chosenText_.isEmpty() ? -1 : list_->findRow(0, chosenText_);
}

void ListWindow::forgetChosen() {
  chosenId_ = 0;
  chosenText_.clear();
}

void ListWindow::activated() {
  if (RefreshPending) {
    buildWorkingLists("init");
    RefreshPending = false;
  }
  if (MainFrame* frame = MainFrame::current()) frame->setClipboardItemsEnabled(list_->rowCount() > 0);
}

void ListWindow::unloading() { savePosition(); }

}  // namespace mv
