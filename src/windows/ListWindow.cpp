#include "windows/ListWindow.h"

#include <QAction>
#include <QResizeEvent>
#include <QToolBar>
#include <QToolButton>
#include <utility>

#include "windows/MainFrame.h"

namespace mv {
namespace {

constexpr QSize kIconSize(24, 24);

}  // namespace

ListWindow::ListWindow(const QString& caption, int width, int height)
    : ChildWindow(width, height), toolbar_(new QToolBar(this)), list_(new ListView(this)) {
  setCaption(caption);
  toolbar_->setObjectName("Toolbar1");
  toolbar_->setIconSize(kIconSize);
  toolbar_->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
  setFocusProxy(list_);
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
  run([this] { restorePosition(); });
  run([this] { buildWorkingLists("init"); });
}

void ListWindow::buildWorkingLists(const std::string& command, long) {
  if (command == "init") rebuild();
}

void ListWindow::rebuild() {
  list_->setSorting(false);
  list_->clearRows();
  fillList();
  list_->setSorting(keepSorted_);

  const int row = keepChosen_ ? rememberedRow() : -1;
  if (row < 0)
    forgetChosen();
  else
    list_->setRowSelected(row, true);
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

void ListWindow::resizeEvent(QResizeEvent* event) {
  ChildWindow::resizeEvent(event);
  const int top = twipsToPixels(kToolbarHeight);
  toolbar_->setGeometry(0, 0, width(), top);
  if (height() > top) list_->setGeometry(0, top, width(), height() - top);
}

}  // namespace mv
