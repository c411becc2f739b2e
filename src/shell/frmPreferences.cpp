#include "shell/frmPreferences.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "app/Settings.h"
#include "base/Text.h"
#include "base/ToolTip.h"
#include "desktop/Dialogs.h"
#include "files/DiskSpace.h"
#include "store/LinkCleaner.h"
#include "store/Maintenance.h"
#include "store/WindowPlaces.h"
#include "windows/EntryBox.h"
#include "windows/MainFrame.h"
#include "windows/PageTabs.h"
#include "windows/ScrollingPage.h"
#include "windows/WindowRegistry.h"
#include "windows/frmPleaseWait.h"

namespace mv {

namespace {

constexpr int kWidth = 7800;   // twips
constexpr int kHeight = 7200;  // twips
constexpr int kFewestHours = 1;
constexpr int kMostHours = 24;
constexpr int kMostDigits = 4;  // of hours in the table
constexpr int kLargeStep = 5;
constexpr double kMegabyte = 1024.0 * 1024.0;
constexpr int kProgressInterval = 100;  // milliseconds

constexpr const char* kNotEnoughSpace = "Not enough disk space available to perform maintenance.";
constexpr const char* kCleared = "Cleared";

template <class Control>
Control* named(Control* control, const char* name) {
  control->setObjectName(QString::fromLatin1(name));
  return control;
}

QLabel* makeText(const QString& text) {
  auto* label = new QLabel(text);
  label->setWordWrap(true);
  return label;
}

QLineEdit* makeShownValue(const char* name) {
  auto* box = named(new QLineEdit, name);
  box->setReadOnly(true);
  return box;
}

// A frame with its contents below one another.
QGroupBox* makeFrame(const char* name, const QString& caption, std::initializer_list<QWidget*> contents) {
  auto* frame = named(new QGroupBox(caption), name);
  auto* lines = new QVBoxLayout(frame);
  for (QWidget* content : contents) lines->addWidget(content);
  return frame;
}

// A tab with frames below one another.
QWidget* makeTab(std::initializer_list<QWidget*> frames) {
  auto* tab = new QWidget;
  auto* lines = new QVBoxLayout(makeScrollingPage(tab));
  for (QWidget* frame : frames) lines->addWidget(frame);
  lines->addStretch();
  return tab;
}

// A button as wide as its caption, for a frame that is wider.
QWidget* leftAligned(QPushButton* button) {
  auto* line = new QWidget;
  auto* layout = new QHBoxLayout(line);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(button);
  layout->addStretch();
  return line;
}

bool countsFromNextStart(const Preferences& before, const Preferences& now) {
  return before.autoScan != now.autoScan || before.autoUpdate != now.autoUpdate || before.helpServer != now.helpServer;
}

}  // namespace

frmPreferences::frmPreferences() : ChildWindow(kWidth, kHeight) {
  setObjectName("frmPreferences");
  setCaption("Preferences");
  buildTabs();
  wire();
  setOpens(Opens::Cascaded);
  // Without the row there is nothing to choose, and nothing that Close may write.
  SSTabPrefs_->setEnabled(run([this] { loadPreferencesWindow(); }));
  run([this] { showDatabaseInfo(); });
  refreshPreferenceControls();
}

frmPreferences::~frmPreferences() { endWaiting(); }

void frmPreferences::activated() {
  if (MainFrame* frame = MainFrame::current()) frame->setClipboardItemsEnabled(true);
}

void frmPreferences::unloading() { endWaiting(); }

void frmPreferences::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    auto* focused = qobject_cast<QPushButton*>(focusWidget());
    (focused ? focused : btnClose_)->click();
  } else {
    ChildWindow::keyPressEvent(event);
  }
}

// --- the controls

void frmPreferences::buildTabs() {
  SSTabPrefs_ = new PageTabs("SSTabPrefs");
  SSTabPrefs_->addTab(makeAutoScanTab(), "AutoScan");
  SSTabPrefs_->addTab(makeDatabaseTab(), "Database");
  SSTabPrefs_->addTab(makeAutoHideTab(), "AutoHide");
  SSTabPrefs_->addTab(makeAutoUpdateTab(), "AutoUpdate");
  SSTabPrefs_->addTab(makeGeneralTab(), "General");
  btnClose_ = named(new QPushButton("&Close"), "btnClose");
  btnClose_->setToolTip("Closes the Preferences window");
  auto* lblClosing = named(makeText("Close keeps the changes. The close box of the window drops them."), "lblClosing");
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(lblClosing, 1);
  buttons->addWidget(btnClose_);
  auto* whole = new QVBoxLayout(this);
  whole->addWidget(SSTabPrefs_);
  whole->addLayout(buttons);
}

QWidget* frmPreferences::makeAutoScanTab() {
  chkAutoScan_ = named(new QCheckBox("AutoScan upon launch"), "chkAutoScan");
  QGroupBox* on = makeFrame(
      "frmGenTurnAutoScanOn", "Turn AutoScan On",
      {makeText("When the program starts it also starts the sites that are marked for AutoScan in the site editor."),
       chkAutoScan_});
  return makeTab({makeFrame("frmGenAutoStuff", "AutoScan", {on, makeStopFrame()})});
}

QGroupBox* frmPreferences::makeStopFrame() {
  lblGenLogOffAfterThisLong_ = named(new QLabel("Quit after this many hours"), "lblGenLogOffAfterThisLong");
  txtGenQuitAfterThisManyHours_ = makeShownValue("txtGenQuitAfterThisManyHours");
  txtGenQuitAfterThisManyHours_->setAccessibleName("Hours");
  txtGenQuitAfterThisManyHours_->setFixedWidth(widthForDigits(*txtGenQuitAfterThisManyHours_, kMostDigits));
  txtGenQuitAfterThisManyHours_->setFocusPolicy(Qt::NoFocus);
  sldrQuitAfterThisManyHours_ = named(new QSlider(Qt::Horizontal), "sldrQuitAfterThisManyHours");
  sldrQuitAfterThisManyHours_->setRange(kFewestHours, kMostHours);
  sldrQuitAfterThisManyHours_->setSingleStep(1);
  sldrQuitAfterThisManyHours_->setPageStep(kLargeStep);
  sldrQuitAfterThisManyHours_->setTickInterval(1);
  sldrQuitAfterThisManyHours_->setTickPosition(QSlider::TicksBelow);
  sldrQuitAfterThisManyHours_->setAccessibleName(lblGenLogOffAfterThisLong_->text());
  lblGenLogOffAfterThisLong_->setBuddy(sldrQuitAfterThisManyHours_);
  frmGenTurnAutoScanningOff_ = named(new QGroupBox("When to Stop AutoScanning"), "frmGenTurnAutoScanningOff");
  auto* grid = new QGridLayout(frmGenTurnAutoScanningOff_);
  grid->addWidget(lblGenLogOffAfterThisLong_, 0, 0);
  grid->addWidget(txtGenQuitAfterThisManyHours_, 0, 1);
  grid->addWidget(sldrQuitAfterThisManyHours_, 1, 0, 1, 2);
  return frmGenTurnAutoScanningOff_;
}

QWidget* frmPreferences::makeDatabaseTab() {
  cmdCompactDatabase_ = named(new QPushButton("Compact Database"), "cmdCompactDatabase");
  cmdClearCache_ = named(new QPushButton("Clear Cache"), "cmdClearCache");
  return makeTab(
      {makeDatabaseInfo(),
       makeFrame(
           "frmDBMaintenance", "Database Maintenance",
           {makeText("Compacting gives the space of deleted rows back to the disk. Stop the running sites first."),
            leftAligned(cmdCompactDatabase_)}),
       makeFrame("frmCache", "Link Cache",
                 {makeText("Clearing forgets every link of every site, those of files still to be downloaded too. The "
                           "next scans follow all links again."),
                  leftAligned(cmdClearCache_)})});
}

QGroupBox* frmPreferences::makeDatabaseInfo() {
  auto* frame = named(new QGroupBox("Database Information"), "frmDBInfo");
  auto* grid = new QGridLayout(frame);
  auto add = [&, row = 0](const QString& caption, const char* name) mutable {
    QLineEdit* box = makeShownValue(name);
    auto* label = new QLabel(caption);
    label->setBuddy(box);
    box->setAccessibleName(caption);
    grid->addWidget(label, row, 0);
    grid->addWidget(box, row++, 1);
    return box;
  };
  txtDBName_ = add("Database", "txtDBName");
  txtDBSize_ = add("Database Size (MB)", "txtDBSize");
  txtDBFreeSpace_ = add("Free Space (MB)", "txtDBFreeSpace");
  txtDBStatus_ = add("Status", "txtDBStatus");
  return frame;
}

QWidget* frmPreferences::makeAutoHideTab() {
  chkAutoHideProcesses_ = named(new QCheckBox("Automatically hide process windows"), "chkAutoHideProcesses");
  return makeTab({makeFrame("frmAutoHide", "AutoHide Setting",
                            {makeText("Scan and download windows of the sites started from now on stay out of sight. "
                                      "The Process Manager in the Tools menu brings them into view."),
                             chkAutoHideProcesses_})});
}

QWidget* frmPreferences::makeAutoUpdateTab() {
  chkAutoUpdate_ = named(new QCheckBox("Automatically update my Form Definition database"), "chkAutoUpdate");
  return makeTab({makeFrame("frmAutoUpdate", "AutoUpdate Setting",
                            {makeText("A form definition tells the program how the login page of a kind of web site is "
                                      "filled in. With this option it asks the update server at every start for "
                                      "definitions that it does not know yet, and adds them to the Form Manager; forms "
                                      "that are there stay as they are."),
                             chkAutoUpdate_})});
}

QWidget* frmPreferences::makeGeneralTab() {
  chkOverwrite_ = named(new QCheckBox("Overwrite existing files"), "chkOverwrite");
  auto* lblOverwrite = named(makeText("A file is not downloaded when its folder already holds one of the same name. "
                                      "Tick this to download it all the same and to replace the one that is there."),
                             "lblOverwrite");
  chkHelpServer_ = named(new QCheckBox("Check the Help Server"), "chkHelpServer");
  cmdClearWinPos_ = named(new QPushButton("Clear Window Positions"), "cmdClearWinPos");
  return makeTab(
      {makeFrame("frmOverwrite", "Overwrite Option", {chkOverwrite_, lblOverwrite}),
       makeFrame("frmAutoHelp", "Help Server - When We Know It, You'll Know It",
                 {chkHelpServer_, makeText("New help topics are fetched when the program starts.")}),
       makeFrame("frmWinPos", "Window Positions",
                 {makeText("Every window opens at its first place and size again."), leftAligned(cmdClearWinPos_)})});
}

void frmPreferences::wire() {
  for (QCheckBox* box : {chkAutoScan_, chkAutoUpdate_, chkHelpServer_, chkOverwrite_})
    connect(box, &QCheckBox::toggled, this, [this] { run([this] { refreshPreferenceControls(); }); });
  connect(sldrQuitAfterThisManyHours_, &QSlider::valueChanged, this, &frmPreferences::sliderMoved);
  const auto onClick = [this](QPushButton* button, void (frmPreferences::*work)()) {
    connect(button, &QPushButton::clicked, this, [this, work] { run([this, work] { (this->*work)(); }); });
  };
  onClick(cmdClearWinPos_, &frmPreferences::clearWindowPositions);
  onClick(cmdClearCache_, &frmPreferences::clearCache);
  onClick(cmdCompactDatabase_, &frmPreferences::askToCompact);
  onClick(btnClose_, &frmPreferences::saveAndClose);
  progress_.setInterval(kProgressInterval);
  connect(&progress_, &QTimer::timeout, this, [this] {
    if (wait_ && compaction_) wait_->setPercent(compaction_->percentWritten());
  });
}

// --- the row

void frmPreferences::loadPreferencesWindow() {
  preferences_ = readPreferences().value_or(Preferences());
  const Preferences& row = preferences_;
  loading_ = true;
  chkOverwrite_->setChecked(row.overwriteExisting);
  chkAutoScan_->setChecked(row.autoScan);
  chkAutoHideProcesses_->setChecked(row.hideProcesses);
  chkAutoUpdate_->setChecked(row.autoUpdate);
  chkHelpServer_->setChecked(row.helpServer);
  sldrQuitAfterThisManyHours_->setValue(
      static_cast<int>(std::clamp<std::int64_t>(row.quitTime, kFewestHours, kMostHours)));
  txtGenQuitAfterThisManyHours_->setText(QString::number(row.quitTime));
  loading_ = false;
}

void frmPreferences::showDatabaseInfo() {
  const double freeSpace = static_cast<double>(freeDiskSpace(gProgramFolder)) / kMegabyte;
  const double size = static_cast<double>(QFileInfo(toQString(gDatabasePath)).size()) / kMegabyte;
  txtDBFreeSpace_->setText(QString::number(freeSpace, 'f', 0));
  txtDBName_->setText(toQString(gDatabasePath));
  txtDBName_->setToolTip(plainToolTip(toQString(gDatabasePath)));
  txtDBSize_->setText(QString::number(size, 'f', 2));
  freeMegabytes_ = std::llround(freeSpace);
  databaseMegabytes_ = std::llround(size);
}

void frmPreferences::refreshPreferenceControls() {
  if (loading_) return;
  txtDBStatus_->setText(hasRoomToCompact(freeMegabytes_, databaseMegabytes_) ? "Ready" : kNotEnoughSpace);
  const bool autoScan = chkAutoScan_->isChecked();
  for (QWidget* control : std::initializer_list<QWidget*>{frmGenTurnAutoScanningOff_, sldrQuitAfterThisManyHours_,
                                                          lblGenLogOffAfterThisLong_, txtGenQuitAfterThisManyHours_})
    control->setEnabled(autoScan);
  // Without hours, from an empty table, the program would end as soon as it has started.
  if (autoScan && preferences_.quitTime < kFewestHours) sliderMoved(sldrQuitAfterThisManyHours_->value());
}

void frmPreferences::sliderMoved(int hours) {
  if (loading_) return;
  hoursChanged_ = true;
  preferences_.quitTime = hours;
  txtGenQuitAfterThisManyHours_->setText(QString::number(hours));
}

void frmPreferences::savePreferences() {
  preferences_.autoScan = chkAutoScan_->isChecked();
  preferences_.hideProcesses = chkAutoHideProcesses_->isChecked();
  preferences_.autoUpdate = chkAutoUpdate_->isChecked();
  preferences_.helpServer = chkHelpServer_->isChecked();
  preferences_.overwriteExisting = chkOverwrite_->isChecked();
  mv::savePreferences(preferences_);
}

void frmPreferences::saveAndClose() {
  const Preferences before = preferences_;
  if (SSTabPrefs_->isEnabled()) savePreferences();
  if (countsFromNextStart(before, preferences_) || hoursChanged_)
    sayInFoot("The changed settings of AutoScan, AutoUpdate and the Help Server count from the next start.");
  unload();
}

// --- maintenance

void frmPreferences::markDone(QPushButton& button, const char* caption) {
  // Disabled, it hands the focus to the next button: a second Enter after compacting would clear the cache.
  if (focusWidget() == &button) btnClose_->setFocus();
  button.setText(caption);
  button.setEnabled(false);
}

void frmPreferences::clearWindowPositions() {
  mv::clearWindowPositions();
  markDone(*cmdClearWinPos_, kCleared);
}

void frmPreferences::clearCache() {
  clearLinkCache();
  txtDBStatus_->setText("Link Cache has been cleared.");
  markDone(*cmdClearCache_, kCleared);
}

QString frmPreferences::whyNotCompact() const {
  if (!processWindows().empty())
    return "The database cannot be compacted while sites are running.\r\n\r\nStop them in the Web Sites window, or end "
           "their processes in the Process Manager, and try again.";
  if (!LinkCleaner::instance().isIdle())
    return "The links of a site are still being cleared.\r\n\r\nPlease try again in a moment.";
  return hasRoomToCompact(freeMegabytes_, databaseMegabytes_) ? QString() : kNotEnoughSpace;
}

// Compacting runs beside the user-interface thread, so that the please-wait window goes on painting; being modal it
// keeps the user from everything else meanwhile. It needs no event loop of its own: the end is a signal.
void frmPreferences::askToCompact() {
  showDatabaseInfo();
  if (const QString reason = whyNotCompact(); !reason.isEmpty()) {
    showMessage(this, applicationTitle(), reason, MessageIcon::Exclamation);
    return;
  }
  wait_ = new frmPleaseWait(MainFrame::current()->window());
  wait_->show();
  // In a later event, so that the window is seen before the work begins.
  QMetaObject::invokeMethod(
      this, [this] { run([this] { beginCompaction(); }); }, Qt::QueuedConnection);
}

void frmPreferences::beginCompaction() {
  if (!wait_) return;
  wait_->setText("Compacting Morvane2000 database. Please wait...");
  compaction_ = compactDatabase(gDatabasePath, gProgramFolder + gTempDatabaseFileName);
  connect(compaction_.get(), &Compaction::finished, this,
          [this](const std::exception_ptr& failure) { run([&] { compactionEnded(failure); }); });
  progress_.start();
}

void frmPreferences::compactionEnded(const std::exception_ptr& failure) {
  // It is the one that has just spoken to us.
  if (compaction_) compaction_.release()->deleteLater();
  endWaiting();
  showDatabaseInfo();
  if (failure) {
    txtDBStatus_->setText("The database has not been compacted.");
    std::rethrow_exception(failure);
  }
  txtDBStatus_->setText("Database compacted");
  markDone(*cmdCompactDatabase_, "Compacted");
}

void frmPreferences::endWaiting() {
  progress_.stop();
  compaction_.reset();
  delete wait_;
}

}  // namespace mv
