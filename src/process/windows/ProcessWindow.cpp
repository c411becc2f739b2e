#include "process_windows/ProcessWindow.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QVBoxLayout>
#include <algorithm>
#include <limits>

#include "app/Settings.h"
#include "base/Text.h"
#include "desktop/ListColumns.h"
#include "process/ProcessTexts.h"
#include "windows/ScrollingPage.h"
#include "windows/WindowRegistry.h"

namespace mv {

namespace {

constexpr const char* kShowDetails = "Show Details";
constexpr const char* kHideDetails = "Hide Details";

constexpr int kProgressHeight = 12;
constexpr int kSmallestList = 90;
// Characters, from the first column on.
constexpr int kColumnWidths[] = {7, 7, 28, 8, 8, 12, 4};
constexpr int kAddressColumn = 2;

int asProgress(long value) { return static_cast<int>(std::clamp<long>(value, 0, std::numeric_limits<int>::max())); }

}  // namespace

ProcessWindow::ProcessWindow(Process& process) : ChildWindow(kProcessWidth, kCollapsedHeight), process_(process) {
  buildControls();
  buildLinkView();
  layOut();
  setOpens(Opens::InFreeSpace);
  wire();
}

void ProcessWindow::buildControls() {
  pbarSave_ = new QProgressBar;
  pbarSave_->setObjectName("pbarSave");
  pbarSave_->setAccessibleName("Progress");
  pbarSave_->setTextVisible(false);
  pbarSave_->setFixedHeight(kProgressHeight);
  pbarSave_->setRange(0, 1);
  btnDetails_ = new QPushButton(kShowDetails);
  btnDetails_->setObjectName("btnDetails");
  lblSiteId_ = new QLabel("Please Wait...", this);
  lblSiteId_->setObjectName("lblSiteId");
  lblSiteId_->hide();
}

void ProcessWindow::layOut() {
  summary_ = new QVBoxLayout;
  summary_->setSpacing(kTightSpacing);
  auto* lastLine = new QHBoxLayout;
  lastLine->addWidget(pbarSave_, 1);
  lastLine->addWidget(btnDetails_);
  details_ = new QWidget;
  details_->hide();
  auto* detailLines = new QVBoxLayout(details_);
  detailLines->setContentsMargins(0, 0, 0, 0);
  detailLines->setSpacing(kTightSpacing);

  auto* lines = new QVBoxLayout(makeScrollingPage(this));
  lines->setContentsMargins(kTightMargins);
  lines->setSpacing(kTightSpacing);
  lines->addLayout(summary_);
  lines->addLayout(lastLine);
  lines->addWidget(details_, 1);
  lines->addStretch(0);  // takes what a collapsed window has too much
}

void ProcessWindow::addSummary(QWidget* line, QWidget* leftCounter, QWidget* rightCounter) {
  auto* counters = new QHBoxLayout;
  counters->addWidget(leftCounter, 1);
  counters->addWidget(rightCounter, 1);
  summary_->addWidget(line);
  summary_->addLayout(counters);
}

void ProcessWindow::buildLinkView() {
  lvwLinks_ = new QTreeView(this);
  lvwLinks_->setObjectName("lvwLinks");
  lvwLinks_->setAccessibleName("Links");
  lvwLinks_->setUniformRowHeights(true);
  lvwLinks_->setRootIsDecorated(false);
  lvwLinks_->setItemsExpandable(false);
  lvwLinks_->setAllColumnsShowFocus(true);
  lvwLinks_->setSelectionMode(QAbstractItemView::SingleSelection);
  lvwLinks_->setMinimumHeight(kSmallestList);
  lvwLinks_->setModel(&process_.lvwLinks);
  lvwLinks_->installEventFilter(this);
  QHeaderView& header = *lvwLinks_->header();
  header.setSectionsClickable(true);
  header.setStretchLastSection(false);
  for (int column = 0; column < header.count(); ++column)
    header.resizeSection(column, columnWidth(*lvwLinks_, column, kColumnWidths[column]));
  giveRoom(*lvwLinks_, kAddressColumn);
  tellCutCells(*lvwLinks_);
  // The rows come and go; the list asks for no more than its least height.
  lvwLinks_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
}

void ProcessWindow::wire() {
  connect(btnDetails_, &QPushButton::clicked, this, [this] { run([this] { toggleDetails(); }); });
  connect(lvwLinks_->header(), &QHeaderView::sectionClicked, this,
          [this](int column) { run([this, column] { sortLinks(column); }); });
  connect(&process_, &Process::viewChanged, this, [this] { run([this] { refresh(); }); });
  connect(&process_, &Process::stopped, this, [this] { readyToDelete(); });
  connect(&process_, &Process::siteGone, this, [this] { closeProcess(*this); });
}

QGroupBox* ProcessWindow::makeErrorPanel(const QString& frame, const QString& subject, const QString& reason,
                                         const QString& time, const QString& count, const std::string& subjectCaption) {
  auto* panel = new QGroupBox("Last Error Logged");
  panel->setObjectName(frame);
  auto* lines = new QVBoxLayout(panel);
  lines->setContentsMargins(kTightMargins);
  lines->setSpacing(kTightSpacing);
  const auto addLine = [lines](const QString& name, const std::string& caption) {
    auto* label = new ElidedLabel(name, caption);
    lines->addWidget(label);
    return label;
  };
  errorSubject_ = addLine(subject, subjectCaption);
  errorReason_ = addLine(reason, "Code:");
  errorTime_ = addLine(time, "Time:");
  errorCount_ = addLine(count, "Total Errors:");
  return panel;
}

QLineEdit* ProcessWindow::makeReadOnlyLine(const QString& name, const QString& accessibleName,
                                           const std::string& text) {
  auto* line = new QLineEdit(toQString(text));
  line->setObjectName(name);
  line->setAccessibleName(accessibleName);
  line->setReadOnly(true);
  return line;
}

void ProcessWindow::showLine(QLineEdit& line, const std::string& text) {
  const QString shown = toQString(text);
  if (line.text() == shown) return;
  line.setText(shown);
  line.setCursorPosition(0);
}

void ProcessWindow::prepareFor(Id siteId) {
  lblSiteId_->setText(QString::number(siteId));
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
  details_->setVisible(shown);
  btnDetails_->setText(shown ? kHideDetails : kShowDetails);
  setOwnHeight(shown ? kExpandedHeight : kCollapsedHeight);
}

bool ProcessWindow::eventFilter(QObject* watched, QEvent* event) {
  const bool key = watched == lvwLinks_ && event->type() == QEvent::KeyPress;
  // Left to itself the view takes Escape for the beginning of a search.
  if (!key || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape) return ChildWindow::eventFilter(watched, event);
  closeRequested();
  return true;
}

void ProcessWindow::sortLinks(int column) {
  const Qt::SortOrder order = sortDescending_ ? Qt::DescendingOrder : Qt::AscendingOrder;
  sortDescending_ = !sortDescending_;
  process_.lvwLinks.sort(column, order);
  lvwLinks_->header()->setSortIndicatorShown(true);
  lvwLinks_->header()->setSortIndicator(column, order);
}

void ProcessWindow::showTakenRow() {
  if (process_.takenRow() == shownRow_) return;
  shownRow_ = process_.takenRow();
  // Makes it the selected row too, and scrolls to it, in a hidden list as soon as that shows.
  if (shownRow_.isValid()) lvwLinks_->setCurrentIndex(shownRow_);
}

void ProcessWindow::refresh() {
  const QString title = process_.rowsOpened() ? toQString(openingText(*process_.rowsOpened())) : settledCaption();
  if (title != caption()) setCaption(title);
  pbarSave_->setMaximum(std::max(asProgress(process_.progressMaximum()), 1));
  pbarSave_->setValue(std::min(asProgress(process_.progressValue()), pbarSave_->maximum()));
  showTakenRow();
  showErrorPanel();
}

void ProcessWindow::showErrorPanel() {
  const ProcessError& error = process_.lastError();
  if (!errorSubject_ || error.time.isNull()) return;
  errorSubject_->setLine(error.subject);
  errorReason_->setLine(errorReasonText(error));
  errorTime_->setLine(errorTimeText(error));
  errorCount_->setLine(errorCountText(error));
}

bool ProcessWindow::queryUnload() {
  if (!gAppClosing && !gClosingProcesses) {
    hideChild();
    return false;
  }
  process_.requestStop();
  return true;
}

void ProcessWindow::unloading() { savePosition(); }

bool ProcessWindow::canDeleteNow() const { return !process_.isBusy(); }

void ProcessWindow::activated() {
  if (gAppClosing) unload();
}

}  // namespace mv
