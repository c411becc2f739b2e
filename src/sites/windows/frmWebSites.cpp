#include "sites_windows/frmWebSites.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPointer>
#include <QRegularExpression>
#include <QToolButton>
#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "SiteMenu.h"
#include "SiteWatch.h"
#include "app/Events.h"
#include "app/Settings.h"
#include "base/Clock.h"
#include "base/Text.h"
#include "base/TimeBudget.h"
#include "base/Turns.h"
#include "base/WebAddress.h"
#include "desktop/Dialogs.h"
#include "download_windows/frmDownload.h"
#include "scan_windows/frmScan.h"
#include "sites_windows/frmNew.h"
#include "store/LinkCleaner.h"
#include "store/Preferences.h"
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
constexpr const char* kOn = "on";
constexpr const char* kOff = "off";
constexpr long kMostConnections = 1000;
constexpr long kMenuConnections = 5;

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

// The first loaded process window of a class whose process is one that `is` tells.
template <class Window, class Is>
Window* findProcess(Is is) {
  for (ChildWindow* window : WindowRegistry::instance().windows())
    if (auto* match = dynamic_cast<Window*>(window); match && is(match->process())) return match;
  return nullptr;
}

frmScan* scanOf(Id siteId) {
  return findProcess<frmScan>([&](const ScanProcess& process) { return process.SiteID == siteId; });
}

frmDownload* downloadOf(Id siteId) {
  return findProcess<frmDownload>([&](const DownloadProcess& process) { return process.SiteId == siteId; });
}

// By name first: two sites of the same name share their titles, and the first window of that title is the one that
// goes. A site that was renamed while it runs is found by its identifier.
template <class Window>
void endProcess(const std::string& siteName, Window* own) {
  auto* named = findProcess<Window>([&](const auto& process) { return process.SiteName == siteName; });
  if (named || own) closeProcess(named ? *named : *own);
}

QPointer<ChildWindow> openScan(const SiteListRow& site) {
  const Id loginForm = siteLoginForm(site.id);
  const QPointer<frmScan> scan = new frmScan;
  scan->process().SiteID = site.id;
  scan->process().SiteName = site.name;
  scan->process().Domain = site.domain;
  scan->process().LoginFormID = loginForm;
  scan->process().DomainHops = site.hops;
  scan->setCaption(scan->settledCaption());
  scan->showChild();
  if (scan) scan->initWindow();
  return scan.data();
}

QPointer<ChildWindow> openDownload(const SiteListRow& site) {
  const QPointer<frmDownload> download = new frmDownload;
  download->process().SiteId = site.id;
  download->process().SiteName = site.name;
  download->process().UniqueNames = yesNo(site.uniqueNames);
  download->process().BaseName = site.baseName;
  download->process().OverwriteExisting = gOverwriteExisting;
  download->setCaption(download->settledCaption());
  download->showChild();
  if (download) download->initWindow();
  return download.data();
}

// `window` where there is one, else what `open` answers.
template <class Open>
QPointer<ChildWindow> broughtForward(ChildWindow* window, Open open) {
  if (!window) return open();
  window->showChild();
  return window;
}

// The number that an answer begins with, as a whole number of connections; 1 when there is none or it is less.
long connectionsOf(const QString& answer) {
  static const QRegularExpression kLeadingNumber(R"(^\s*[+-]?(\d+\.?\d*|\.\d+))");
  const double number = kLeadingNumber.match(answer).captured().trimmed().toDouble();
  return std::lround(std::clamp(number, 1.0, static_cast<double>(kMostConnections)));
}

}  // namespace

frmWebSites::frmWebSites() : ListWindow(kTitle, kWidth, kHeight) {
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
  list().setEmptyText("Press New to describe a first web site.");
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
  buildConnectionsMenu();
}

void frmWebSites::listen() {
  listenTo(&Events::siteAdded, [this](std::int64_t id) { buildWorkingLists("websiteadded", id); });
  listenTo(&Events::siteEdited, [this](std::int64_t id) { buildWorkingLists("websiteedited", id); });
  listenTo(&Events::filterTakenBack, [this](std::int64_t) { buildWorkingLists("init"); });
  listenTo(&Events::siteTakenBack, [this](std::int64_t id) {
    runningSites_.erase(id);
    buildWorkingLists("init");
  });
}

void frmWebSites::buildConnectionsMenu() {
  auto* menu = new QMenu(connections_);
  for (long count = 1; count <= kMenuConnections; ++count)
    menu->addAction(QString(count == 1 ? "%1 Connection" : "%1 Connections").arg(count), this,
                    [this, count] { run([&] { setConnections(count); }); });
  menu->addAction("Other...", this, [this] { run([this] { askConnections(); }); });
  connections_->setMenu(menu);
  connections_->setPopupMode(QToolButton::MenuButtonPopup);
  connections_->installEventFilter(this);
}

QString frmWebSites::positionKey() const { return kTitle; }

bool frmWebSites::queryUnload() {
  if (gAppClosing || gClosingProcesses) return true;
  hideChild();
  return false;
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
  if (!key || watched != connections_ || key->key() != Qt::Key_Down) return ListWindow::eventFilter(watched, event);
  run([this] { connections_->showMenu(); });
  return true;
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
    for (const SiteListRow& site : loadSiteRow(siteId)) list().showRow(addSiteRow(site));
  } else if (command == "websiteedited") {
    refreshRow(siteId);
  }
}

void frmWebSites::fillList() {
  sites_.clear();
  for (const SiteListRow& site : listSites()) addSiteRow(site);
  maxConnections_ = readMaxConnections().value_or(maxConnections_);
}

int frmWebSites::addSiteRow(const SiteListRow& site) {
  sites_[site.id] = site;
  return list().addRow(textsOf(site));
}

void frmWebSites::refreshRow(Id siteId) {
  const int row = rowOf(siteId);
  if (row < 0) return;
  const bool running = isRunning(row);
  for (const SiteListRow& site : loadSiteRow(siteId)) {
    sites_[siteId] = site;
    const QStringList texts = textsOf(site);
    for (int column = 0; column < texts.size(); ++column) list().setCell(row, column, texts[column]);
    list().setRowSelected(row, false);
  }
  setRunning(row, running);
}

Id frmWebSites::idOfRow(int row) const { return list().cell(row, kId).toLongLong(); }

SiteListRow frmWebSites::siteOfRow(int row) const {
  const auto found = sites_.find(idOfRow(row));
  return found == sites_.end() ? SiteListRow() : found->second;
}

int frmWebSites::rowOf(Id siteId) { return list().findRow(kId, QString::number(siteId)); }

bool frmWebSites::isRunning(int row) { return list().isBold(row); }

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
  if (rowOf(selectedSiteID_) < 0) selectedSiteID_ = 0;
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
  const std::string name = sites_[selectedSiteID_].name;
  editor->SiteID = selectedSiteID_;
  editor->SiteName = toQString(name);
  editor->setCaption("Edit: " + shownAddress(name));
  editor->open();
}

std::deque<Id> frmWebSites::deletableSites() {
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

void frmWebSites::deleteChosen() { deleteSome(deletableSites()); }

// Thousands of sites take seconds: what is left goes in later turns.
void frmWebSites::deleteSome(std::deque<Id> ids) {
  const TimeBudget budget;
  while (!ids.empty() && !budget.spent()) {
    const Id id = ids.front();
    ids.pop_front();
    deleteUnlessRunning(id);
  }
  if (ids.empty()) return;
  takeTurn(this, [this, left = std::move(ids)] { run([this, &left] { deleteSome(left); }); });
}

void frmWebSites::deleteUnlessRunning(Id id) {
  const int row = rowOf(id);
  if (row < 0 || list().cell(row, kOnOff) != kOff) return;
  if (!deleteSite(id))
    showMessage(this, "No Site Selected", "Please select a web site to delete. ", MessageIcon::Information);
  endOwnProcesses(id);
  list().removeRow(rowOf(id));
  forgetVanishedSelection();
}

// --- Start, Stop

void frmWebSites::editChosen() { startSelected(); }

void frmWebSites::startSelected() {
  Q_EMIT events().sitesStarting();
  if (list().selectedRows().empty()) sayInFoot("Select a web site first, then press Start.");
  QStringList beyond;
  for (int row = 0; row < list().rowCount() && !isUnloaded(); ++row) {
    if (!list().isRowSelected(row) || list().cell(row, kOnOff) != kOff) continue;
    if (mayStart(idOfRow(row)))
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

// A site at work takes no further connection.
bool frmWebSites::mayStart(Id siteId) const {
  return scanOf(siteId) || downloadOf(siteId) || std::ssize(runningSites_) < maxConnections_;
}

// Of a site that is at work already, though a rebuild shows it off, the windows are brought to the front; one of them
// that was ended by itself is opened anew.
void frmWebSites::startSite(const SiteListRow& site) {
  if (site.id == 0) return;
  const QPointer<ChildWindow> scan = broughtForward(scanOf(site.id), [&] { return openScan(site); });
  // A message box of the scan may have run the end of the program.
  if (isUnloaded()) return;
  const QPointer<ChildWindow> download = broughtForward(downloadOf(site.id), [&] { return openDownload(site); });
  watch(site.id);
  if (isYes(gHideProcesses)) {
    if (scan) scan->hideChild();
    if (download) download->hideChild();
  }
  Q_EMIT events().processesChanged();
  runningSites_.insert(site.id);
}

void frmWebSites::watch(Id siteId) {
  auto* scan = dynamic_cast<frmScan*>(scanOf(siteId));
  auto* download = dynamic_cast<frmDownload*>(downloadOf(siteId));
  if (scan && download) SiteWatch::begin(*scan, *download);
}

void frmWebSites::stopSelected() {
  stop_->defaultAction()->setEnabled(false);
  for (int row = 0; row < list().rowCount(); ++row)
    if (list().isRowSelected(row) && isRunning(row)) stopRow(row);
}

void frmWebSites::stopRow(int row) {
  const SiteListRow site = siteOfRow(row);
  closeProcesses(site);
  setRunning(rowOf(site.id), false);
  offerStart(true);
}

void frmWebSites::closeProcesses(const SiteListRow& site) {
  endProcess(site.name, downloadOf(site.id));
  endProcess(site.name, scanOf(site.id));
  runningSites_.erase(site.id);
}

// A site that is gone, though a rebuild has shown it off, has no work left.
void frmWebSites::endOwnProcesses(Id siteId) {
  if (auto* download = downloadOf(siteId)) closeProcess(*download);
  if (auto* scan = scanOf(siteId)) closeProcess(*scan);
  runningSites_.erase(siteId);
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
  showMessage(this, applicationTitle(),
              "Connections set to 1\r\n\r\nUse drop down to increase the number of\r\nsimultaneuous connections.",
              MessageIcon::None);
  maxConnections_ = 1;
  updateTitle();
}

void frmWebSites::askConnections() {
  const auto answer =
      askText(this, "Set Number of Connections", "Enter the number of connections.", QString::number(maxConnections_));
  if (!isUnloaded()) setConnections(connectionsOf(answer.value_or(QString())));
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
