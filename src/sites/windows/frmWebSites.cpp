#include "sites_windows/frmWebSites.h"

#include <QKeyEvent>
#include <QToolButton>
#include <algorithm>
#include <utility>

#include "ConnectionsMenu.h"
#include "ListedSites.h"
#include "SiteDeletion.h"
#include "SiteMenu.h"
#include "SiteProcesses.h"
#include "app/Events.h"
#include "app/Settings.h"
#include "base/Clock.h"
#include "base/Text.h"
#include "base/WebAddress.h"
#include "desktop/Dialogs.h"
#include "desktop/ListColumns.h"
#include "sites_windows/frmNew.h"
#include "store/LinkCleaner.h"
#include "store/Preferences.h"
#include "windows/ListHelpers.h"
#include "windows/MainFrame.h"
#include "windows/ToolIcons.h"
#include "windows/WindowRegistry.h"

namespace mv {

namespace {

constexpr int kWidth = 6500;   // twips
constexpr int kHeight = 3600;  // twips
// As the shipped database has them.
constexpr int kShippedWidth = 11400;  // twips
constexpr int kShippedHeight = 4500;  // twips
constexpr int kQuitInterval = 60'000;
constexpr const char* kTitle = "Web Sites";
const QString kOn = QStringLiteral("on");
const QString kOff = QStringLiteral("off");

enum Column { kName, kId, kAutoScan, kOnOff, kDomain, kHops, kUniqueNames, kBaseName };

QString shownAddress(const std::string& address) { return toQString(maskPassword(address)); }

QStringList textsOf(const SiteListRow& site) {
  return {shownAddress(site.name),
          QString::number(site.id),
          toQString(yesNo(site.autoScan)),
          kOff,
          shownAddress(site.domain),
          QString::number(site.hops),
          toQString(yesNo(site.uniqueNames)),
          toQString(site.baseName)};
}

}  // namespace

frmWebSites::frmWebSites()
    : ListWindow(kTitle, kWidth, kHeight),
      sites_(std::make_unique<ListedSites>()),
      processes_(std::make_unique<SiteProcesses>()),
      deletion_(new SiteDeletion(list(), [this](Id id) { return run([&] { deleteUnlessRunning(id); }); })) {
  setObjectName("frmWebSites");
  buildList();
  buildToolbar();
  listen();
  addOwnSize(kShippedWidth, kShippedHeight);
  tmrQuit.setInterval(kQuitInterval);
  connect(&tmrQuit, &QTimer::timeout, this, [this] { run([this] { quitWhenDue(); }); });
  load();
  updateMenus();
  updateTitle();
}

void frmWebSites::buildList() {
  list().setObjectName("lvwSites");
  list().setAccessibleName("Sites");
  list().setColumns({{"Web Site", 22},
                     {"ID", 4},
                     {"AutoScan", 4},
                     {"On/Off", 4},
                     {"Domain", 18},
                     {"Hops", 4},
                     {"Unique Names", 4},
                     {"Base Name", 12}});
  setEmptyText(list(), "Press New to describe a first web site.");
  list().setMultiSelect(true);
  list().setAcceptTextDrops(true);
  list().installEventFilter(this);
  setKeepSorted(false);
  connect(&list(), &ListView::rowChosen, this, [this](int row) { run([&] { rowWasChosen(row); }); });
  offerCommands(list(), [this](int row) { return commandsOf(row); });
  connect(&list(), &ListView::textDropped, this, [this](const QString& text) { run([&] { dropFilters(text); }); });
}

void frmWebSites::buildToolbar() {
  addButton("New", "Create a new web site to scan", toolIcon("new"), [this] { openNew(); });
  addButton("Edit", "Edit the selected web site", toolIcon("edit"), [this] { openEdit(); });
  addButton("Delete", "Delete the selected web site", toolIcon("delete"), [this] { deleteChosen(); });
  start_ = addButton("Start", "Start downloading from selected sites", toolIcon("start"), [this] { startSelected(); });
  stop_ = addButton("Stop", "", toolIcon("stop"), [this] { stopSelected(); });
  stop_->setAccessibleDescription("Stop downloading from selected sites");
  stop_->installEventFilter(this);
  connections_ = addButton("Connections", "Set the number of connections", toolIcon("connections"),
                           [this] { setOneConnection(); });
  offerConnections(
      *connections_, [this](long count) { run([&] { setConnections(count); }); },
      [this] { run([this] { askConnections(); }); });
}

frmWebSites::~frmWebSites() = default;

void frmWebSites::listen() {
  listenTo(&Events::siteAdded, [this](std::int64_t id) { buildWorkingLists("websiteadded", id); });
  listenTo(&Events::siteEdited, [this](std::int64_t id) { buildWorkingLists("websiteedited", id); });
  listenTo(&Events::filterTakenBack, [this](std::int64_t) { buildWorkingLists("init"); });
  listenTo(&Events::siteTakenBack, [this](std::int64_t id) {
    processes_->forget(id);
    buildWorkingLists("init");
  });
}

QString frmWebSites::positionKey() const { return kTitle; }

bool frmWebSites::queryUnload() {
  if (gAppClosing || gClosingProcesses) return true;
  hideChild();
  return false;
}

void frmWebSites::unloading() {
  deletion_->stop();
  ListWindow::unloading();
}

void frmWebSites::activated() {
  ListWindow::activated();
  updateMenus();
  MainFrame::current()->setDeleteWebSiteEnabled(false);
}

bool frmWebSites::eventFilter(QObject* watched, QEvent* event) {
  // Left without a tool tip, a button shows its caption instead.
  if (watched == stop_ && event->type() == QEvent::ToolTip) return true;
  const auto* key = event->type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(event) : nullptr;
  if (key && watched == &list() && workByKey(*key)) return true;
  return ListWindow::eventFilter(watched, event);
}

bool frmWebSites::workByKey(const QKeyEvent& event) {
  if (event.key() == Qt::Key_F2)
    run([this] { openEdit(); });
  else if (event.key() == Qt::Key_Insert)
    newSite();
  else if (event.key() == Qt::Key_F5)
    (event.modifiers() == Qt::ShiftModifier ? stop_ : start_)->click();
  else
    return false;
  return true;
}

void frmWebSites::updateMenus() {
  const bool any = list().rowCount() > 0;
  MainFrame::current()->setClipboardItemsEnabled(any);
  MainFrame::current()->setDeleteWebSiteEnabled(any);
}

void frmWebSites::updateTitle() { setCaption(QString("%1: Max Connections: %2").arg(kTitle).arg(maxConnections_)); }

// --- the rows

void frmWebSites::buildWorkingLists(const std::string& command, long siteId) {
  if (command == "init") {
    forgetChosen();
    ListWindow::buildWorkingLists(command);
    forgetVanishedSelection();
  } else if (command == "websiteadded") {
    for (const SiteListRow& site : loadSiteRow(siteId)) {
      sites_->keep(site);
      list().showRow(list().addRow(textsOf(site)));
    }
  } else if (command == "websiteedited") {
    refreshRow(siteId);
  }
}

std::vector<QStringList> frmWebSites::readRows() {
  sites_->replace(listSites());
  maxConnections_ = readMaxConnections().value_or(maxConnections_);
  return rowsOf(sites_->all(), textsOf);
}

void frmWebSites::refreshRow(Id siteId) {
  const int row = rowOf(siteId);
  if (row < 0) return;
  const bool running = isRunning(row);
  for (const SiteListRow& site : loadSiteRow(siteId)) {
    sites_->keep(site);
    const QStringList texts = textsOf(site);
    for (int column = 0; column < texts.size(); ++column) list().setCell(row, column, texts[column]);
    list().setRowSelected(row, false);
  }
  setRunning(row, running);
}

Id frmWebSites::idOfRow(int row) const { return list().cell(row, kId).toLongLong(); }

SiteListRow frmWebSites::siteOfRow(int row) const { return sites_->find(idOfRow(row)); }

int frmWebSites::rowOf(Id siteId) const { return list().findRow(kId, QString::number(siteId)); }

bool frmWebSites::isRunning(int row) const { return list().isBold(row); }

void frmWebSites::setRunning(int row, bool running) {
  list().setBold(row, running);
  list().setCell(row, kOnOff, running ? kOn : kOff);
}

void frmWebSites::offerStart(bool start) {
  start_->defaultAction()->setEnabled(start);
  stop_->defaultAction()->setEnabled(!start);
}

void frmWebSites::rowWasChosen(int row) {
  selectedSiteID_ = idOfRow(row);
  offerStart(!isRunning(row));
}

void frmWebSites::forgetVanishedSelection() {
  if (selectedSiteID_ != 0 && rowOf(selectedSiteID_) < 0) selectedSiteID_ = 0;
}

// --- the context menu

// A right click has selected the row, but chosen none.
Commands frmWebSites::commandsOf(int row) {
  Q_EMIT list().rowChosen(row);
  Commands all = {{"mnuSiteStart", "&Start", [this] { run([this] { startSelected(); }); }, !isRunning(row)},
                  {"mnuSiteStop", "S&top", [this] { run([this] { stopSelected(); }); }, isRunning(row)},
                  {"mnuSiteEdit", "&Edit", [this] { run([this] { openEdit(); }); }},
                  {"", ""}};
  for (Command& command : siteCommands(this, idOfRow(row), list().cell(row, kName))) all.push_back(std::move(command));
  return all;
}

// --- New, Edit, Delete

void frmWebSites::newSite() {
  run([this] { openNew(); });
}

void frmWebSites::openNew() {
  auto* editor = new frmNew;
  editor->Mode = "new";
  editor->open();
}

void frmWebSites::openEdit() {
  if (selectedSiteID_ == 0) return;
  auto* editor = new frmNew;
  editor->Mode = "edit";
  const std::string name = sites_->find(selectedSiteID_).name;
  editor->SiteID = selectedSiteID_;
  editor->SiteName = toQString(name);
  editor->setCaption("Edit: " + shownAddress(name));
  editor->open();
}

std::deque<Id> frmWebSites::deletableSites() const {
  std::deque<Id> ids;
  for (const int row : list().selectedRows())
    if (list().cell(row, kOnOff) == kOff) ids.push_back(idOfRow(row));
  return ids;
}

void frmWebSites::deleteByKey() {
  const std::size_t sites = deletableSites().size();
  if (sites == 0) return;
  const QString what = sites == 1 ? "this web site" : QString("these %1 web sites").arg(sites);
  if (askConfirmation(this, "Delete Web Site", "Delete " + what + " with all settings and collected links?") &&
      !isUnloaded())
    deleteChosen();
}

void frmWebSites::deleteChosen() { deletion_->begin(deletableSites()); }

void frmWebSites::deleteUnlessRunning(Id id) {
  const int row = rowOf(id);
  if (row < 0 || list().cell(row, kOnOff) != kOff) return;
  if (!deleteSite(id))
    showMessage(this, "No Site Selected", "Please select a web site to delete. ", MessageIcon::Information);
  processes_->endOwn(id);
  list().removeRow(rowOf(id));
  forgetVanishedSelection();
}

// --- Start, Stop

void frmWebSites::editChosen() { startSelected(); }

void frmWebSites::startSelected() {
  Q_EMIT events().sitesStarting();
  const std::vector<int> rows = list().selectedRows();
  if (rows.empty())
    sayInFoot("Select a web site first, then press Start.");
  else if (std::all_of(rows.begin(), rows.end(), [this](int row) { return isRunning(row); }))
    sayInFoot("It is running. The Windows menu shows its windows, the Process Manager those that are hidden.");
  QStringList beyond;
  for (const int row : rows) {
    // While a box of a start stood open the rows may have changed.
    if (isUnloaded() || !list().isRowSelected(row) || list().cell(row, kOnOff) != kOff) continue;
    if (processes_->mayStart(idOfRow(row), maxConnections_))
      startRow(row);
    else
      beyond << list().cell(row, kName);
  }
  if (!beyond.isEmpty())
    sayInFoot(QString("Max Connections is %1. Not started: %2").arg(maxConnections_).arg(beyond.join(", ")));
}

void frmWebSites::startRow(int row) {
  const SiteListRow site = siteOfRow(row);
  startSite(site);
  setRunning(rowOf(site.id), true);
  offerStart(false);
}

void frmWebSites::startSite(const SiteListRow& site) {
  if (site.id == 0) return;
  SiteProcesses::startScan(site);
  // A message box of the scan may have run the end of the program.
  if (!isUnloaded()) processes_->startDownload(site);
}

void frmWebSites::stopSelected() {
  stop_->defaultAction()->setEnabled(false);
  for (const int row : list().selectedRows())
    if (isRunning(row)) stopRow(row);
}

void frmWebSites::stopRow(int row) {
  const SiteListRow site = siteOfRow(row);
  processes_->end(site);
  setRunning(rowOf(site.id), false);
  offerStart(true);
}

void frmWebSites::autoScan() {
  run([this] {
    for (int row = 0; row < maxConnections_ && row < list().rowCount() && !isUnloaded(); ++row)
      if (isYes(toUtf8(list().cell(row, kAutoScan)))) startRow(row);
  });
}

void frmWebSites::closeAllWebSites() {
  run([this] {
    for (int row = 0; row < list().rowCount(); ++row)
      if (isRunning(row)) stopRow(row);
  });
}

// --- connections

void frmWebSites::setOneConnection() {
  tellOneConnection(this);
  maxConnections_ = 1;
  updateTitle();
}

void frmWebSites::askConnections() {
  const long answer = askForConnections(this, maxConnections_);
  if (!isUnloaded()) setConnections(answer);
}

void frmWebSites::setConnections(long connections) {
  maxConnections_ = connections;
  updateTitle();
  setMaxConnections(maxConnections_);
}

// --- filters dropped, the end of automatic scanning

void frmWebSites::dropFilters(const QString& text) {
  if (gDragKind != kDropFilter) return;
  QStringList sites;
  for (const int row : list().selectedRows()) {
    addDroppedFilters(idOfRow(row), toUtf8(text));
    sites << list().cell(row, kName);
  }
  sayInFoot(sites.isEmpty() ? QString("Select the web sites first that the filters are dropped on.")
                            : "The filters apply to " + sites.join(", "));
  gDragKind.clear();
}

void frmWebSites::quitWhenDue() {
  if (gQuitAt.isValid() && now() > gQuitAt) clearAndEndProgram();
}

}  // namespace mv
