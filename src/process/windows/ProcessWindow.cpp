#include "process_windows/ProcessWindow.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <algorithm>
#include <limits>

#include "app/Settings.h"
#include "base/Text.h"
#include "desktop/ListColumns.h"
#include "process/ProcessTexts.h"
#include "windows/ListHelpers.h"
#include "windows/WindowRegistry.h"

namespace mv {

namespace {

constexpr const char* kShowDetails = "Show Details";
constexpr const char* kHideDetails = "Hide Details";

// Characters, from the first column on.
constexpr int kColumnWidths[] = {8, 7, 28, 8, 8, 12, 4};
constexpr int kAddressColumn = 2;
// So long the list stays where the user has put it: a row must not go from under a double click.
constexpr int kHandsOffMs = 3000;

bool isOfMouse(const QEvent& event) {
  return event.type() == QEvent::MouseButtonPress || event.type() == QEvent::MouseButtonDblClick ||
         event.type() == QEvent::Wheel;
}

int asProgress(long value) { return static_cast<int>(std::clamp<long>(value, 0, std::numeric_limits<int>::max())); }

}  // namespace

ProcessWindow::ProcessWindow(Process& process) : ChildWindow(kProcessWidth, kCollapsedHeight), process_(process) {
  setOpens(Opens::InFreeSpace);
}

void ProcessWindow::connectControls(const Controls& controls) {
  controls_ = controls;
  controls_.siteId->hide();
  controls_.details->hide();
  setUpLinks();
  wire();
}

void ProcessWindow::setUpLinks() {
  QTreeView& links = *controls_.links;
  links.setModel(&process_.lvwLinks);
  links.installEventFilter(this);
  links.viewport()->installEventFilter(this);
  handsOff_.setSingleShot(true);
  handsOff_.setInterval(kHandsOffMs);
  QHeaderView& header = *links.header();
  header.setSectionsClickable(true);
  header.setStretchLastSection(false);
  for (int column = 0; column < header.count(); ++column)
    header.resizeSection(column, columnWidth(links, column, kColumnWidths[column]));
  giveRoom(links, kAddressColumn);
  tellCutCells(links);
}

Commands ProcessWindow::commandsOf(int row) {
  const QString address = publicAddress(toQString(plainAddress(process_.lvwLinks.row(row).url)));
  return {{"mnuRowBrowser", "Open in &Browser", [this, address] { openInBrowser(this, address); }},
          {"mnuRowCopy", "&Copy Address", [address] { QApplication::clipboard()->setText(address); }}};
}

void ProcessWindow::wire() {
  offerCommands(
      *controls_.links, [this](int row) { return commandsOf(row); }, [this] { return commandsOfList(); });
  connect(controls_.links, &QTreeView::activated, this,
          [this](const QModelIndex& row) { run([&] { openRow(row.row()); }); });
  connect(controls_.detailsButton, &QPushButton::clicked, this, [this] { run([this] { toggleDetails(); }); });
  connect(controls_.links->header(), &QHeaderView::sectionClicked, this,
          [this](int column) { run([this, column] { sortLinks(column); }); });
  connect(&handsOff_, &QTimer::timeout, this, [this] { run([this] { showTakenRow(); }); });
  connect(&process_, &Process::viewChanged, this, [this] { run([this] { refresh(); }); });
  connect(&process_, &Process::stopped, this, [this] { readyToDelete(); });
  connect(&process_, &Process::siteGone, this, [this] { closeProcess(*this); });
}

void ProcessWindow::showLine(QLineEdit& line, const std::string& text) {
  const QString shown = toQString(text);
  if (line.text() == shown) return;
  line.setText(shown);
  line.setCursorPosition(0);
}

void ProcessWindow::prepareFor(Id siteId) {
  controls_.siteId->setText(QString::number(siteId));
  run([this] {
    if (restorePosition()) setDetailsShown(place().height == kExpandedHeight);
  });
}

void ProcessWindow::toggleDetails() {
  if (process_.StopRequested()) return;
  setDetailsShown(collapsed_);
}

void ProcessWindow::setDetailsShown(bool shown) {
  collapsed_ = !shown;
  controls_.details->setVisible(shown);
  controls_.detailsButton->setText(shown ? kHideDetails : kShowDetails);
  markErrors();
  setOwnHeight(shown ? kExpandedHeight : kCollapsedHeight);
}

bool ProcessWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == controls_.links->viewport() && isOfMouse(*event)) handsOff_.start();
  if (watched == controls_.links && event->type() == QEvent::Show) showTakenRow();
  const bool key = watched == controls_.links && event->type() == QEvent::KeyPress;
  // Left to itself the view takes Escape for the beginning of a search.
  if (!key || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape) return ChildWindow::eventFilter(watched, event);
  closeRequested();
  return true;
}

void ProcessWindow::sortLinks(int column) {
  const Qt::SortOrder order = sortDescending_ ? Qt::DescendingOrder : Qt::AscendingOrder;
  sortDescending_ = !sortDescending_;
  process_.lvwLinks.sort(column, order);
  controls_.links->header()->setSortIndicatorShown(true);
  controls_.links->header()->setSortIndicator(column, order);
}

void ProcessWindow::showTakenRow() {
  // A hidden list would lay all of its rows out for it; it is told when it shows.
  if (process_.takenRow() == shownRow_ || !controls_.links->isVisible() || handsOff_.isActive()) return;
  shownRow_ = process_.takenRow();
  // Makes it the selected row too, and scrolls to it.
  if (shownRow_.isValid()) controls_.links->setCurrentIndex(shownRow_);
}

void ProcessWindow::refresh() {
  const QString title = process_.rowsOpened() ? toQString(openingText(*process_.rowsOpened())) : settledCaption();
  if (title != caption()) setCaption(title);
  controls_.progress->setMaximum(std::max(asProgress(process_.progressMaximum()), 1));
  controls_.progress->setValue(std::min(asProgress(process_.progressValue()), controls_.progress->maximum()));
  controls_.state->setLine(stateText());
  showTakenRow();
  showErrorPanel();
  markErrors();
}

// A failure is seen in the details only.
void ProcessWindow::markErrors() {
  if (!collapsed_) errorsSeen_ = process_.ErrorCount();
  const bool unseen = process_.ErrorCount() > errorsSeen_;
  if (unseen == !controls_.detailsButton->icon().isNull()) return;
  controls_.detailsButton->setIcon(unseen ? style()->standardIcon(QStyle::SP_MessageBoxWarning) : QIcon());
  controls_.detailsButton->setToolTip(unseen ? "Something has failed since the details were open" : "");
}

void ProcessWindow::showErrorPanel() {
  const ProcessError& error = process_.lastError();
  if (error.time.isNull()) return;
  controls_.errorSubject->setLine(error.subject);
  controls_.errorReason->setLine(errorReasonText(error));
  controls_.errorTime->setLine(errorTimeText(error));
  controls_.errorCount->setLine(errorCountText(error));
}

bool ProcessWindow::queryUnload() {
  if (!gAppClosing && !gClosingProcesses) {
    hideChild();
    return false;
  }
  process_.requestStop();
  return true;
}

void ProcessWindow::unloading() {
  keepTotals(totals());
  savePosition();
}

bool ProcessWindow::canDeleteNow() const { return !process_.isBusy(); }

void ProcessWindow::activated() {
  if (gAppClosing) unload();
}

}  // namespace mv
