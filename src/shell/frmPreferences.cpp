#include "shell/frmPreferences.h"

#include <QFileInfo>
#include <QKeyEvent>
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
#include "ui_frmPreferences.h"
#include "windows/ClearingWait.h"
#include "windows/MainFrame.h"
#include "windows/WindowRegistry.h"
#include "windows/frmPleaseWait.h"

namespace mv {

namespace {

constexpr int kWidth = 7800;   // twips
constexpr int kHeight = 7200;  // twips
constexpr double kMegabyte = 1024.0 * 1024.0;
constexpr int kProgressInterval = 100;  // milliseconds

constexpr const char* kNotEnoughSpace = "Not enough disk space available to perform maintenance.";
constexpr const char* kCleared = "Cleared";

bool countsFromNextStart(const Preferences& before, const Preferences& now) {
  return before.autoScan != now.autoScan || before.autoUpdate != now.autoUpdate || before.helpServer != now.helpServer;
}

}  // namespace

frmPreferences::frmPreferences() : ChildWindow(kWidth, kHeight), ui_(std::make_unique<Ui::frmPreferences>()) {
  ui_->setupUi(this);
  wire();
  setOpens(Opens::Cascaded);
  // Without the row there is nothing to choose, and nothing that Close may write.
  ui_->SSTabPrefs->setEnabled(run([this] { loadPreferencesWindow(); }));
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
    (focused ? focused : ui_->btnClose)->click();
  } else {
    ChildWindow::keyPressEvent(event);
  }
}

void frmPreferences::wire() {
  for (QCheckBox* box : {ui_->chkAutoScan, ui_->chkAutoUpdate, ui_->chkHelpServer, ui_->chkOverwrite})
    connect(box, &QCheckBox::toggled, this, [this] { run([this] { refreshPreferenceControls(); }); });
  connect(ui_->sldrQuitAfterThisManyHours, &QSlider::valueChanged, this, &frmPreferences::sliderMoved);
  const auto onClick = [this](QPushButton* button, void (frmPreferences::*work)()) {
    connect(button, &QPushButton::clicked, this, [this, work] { run([this, work] { (this->*work)(); }); });
  };
  onClick(ui_->cmdClearWinPos, &frmPreferences::clearWindowPositions);
  onClick(ui_->cmdClearCache, &frmPreferences::clearCache);
  onClick(ui_->cmdCompactDatabase, &frmPreferences::askToCompact);
  onClick(ui_->btnClose, &frmPreferences::saveAndClose);
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
  ui_->chkOverwrite->setChecked(row.overwriteExisting);
  ui_->chkAutoScan->setChecked(row.autoScan);
  ui_->chkAutoHideProcesses->setChecked(row.hideProcesses);
  ui_->chkAutoUpdate->setChecked(row.autoUpdate);
  ui_->chkHelpServer->setChecked(row.helpServer);
  QSlider& hours = *ui_->sldrQuitAfterThisManyHours;
  hours.setValue(static_cast<int>(std::clamp<std::int64_t>(row.quitTime, hours.minimum(), hours.maximum())));
  ui_->txtGenQuitAfterThisManyHours->setText(QString::number(row.quitTime));
  loading_ = false;
}

void frmPreferences::showDatabaseInfo() {
  const double freeSpace = static_cast<double>(freeDiskSpace(gProgramFolder)) / kMegabyte;
  const double size = static_cast<double>(QFileInfo(toQString(gDatabasePath)).size()) / kMegabyte;
  ui_->txtDBFreeSpace->setText(QString::number(freeSpace, 'f', 0));
  ui_->txtDBName->setText(toQString(gDatabasePath));
  ui_->txtDBName->setToolTip(plainToolTip(toQString(gDatabasePath)));
  ui_->txtDBSize->setText(QString::number(size, 'f', 2));
  freeMegabytes_ = std::llround(freeSpace);
  databaseMegabytes_ = std::llround(size);
}

void frmPreferences::refreshPreferenceControls() {
  if (loading_) return;
  ui_->txtDBStatus->setText(hasRoomToCompact(freeMegabytes_, databaseMegabytes_) ? "Ready" : kNotEnoughSpace);
  const bool autoScan = ui_->chkAutoScan->isChecked();
  for (QWidget* control :
       std::initializer_list<QWidget*>{ui_->frmGenTurnAutoScanningOff, ui_->sldrQuitAfterThisManyHours,
                                       ui_->lblGenLogOffAfterThisLong, ui_->txtGenQuitAfterThisManyHours})
    control->setEnabled(autoScan);
  // Without hours, from an empty table, the program would end as soon as it has started.
  if (autoScan && preferences_.quitTime < ui_->sldrQuitAfterThisManyHours->minimum())
    sliderMoved(ui_->sldrQuitAfterThisManyHours->value());
}

void frmPreferences::sliderMoved(int hours) {
  if (loading_) return;
  hoursChanged_ = true;
  preferences_.quitTime = hours;
  ui_->txtGenQuitAfterThisManyHours->setText(QString::number(hours));
}

void frmPreferences::savePreferences() {
  preferences_.autoScan = ui_->chkAutoScan->isChecked();
  preferences_.hideProcesses = ui_->chkAutoHideProcesses->isChecked();
  preferences_.autoUpdate = ui_->chkAutoUpdate->isChecked();
  preferences_.helpServer = ui_->chkHelpServer->isChecked();
  preferences_.overwriteExisting = ui_->chkOverwrite->isChecked();
  mv::savePreferences(preferences_);
}

void frmPreferences::saveAndClose() {
  const Preferences before = preferences_;
  if (ui_->SSTabPrefs->isEnabled()) savePreferences();
  if (countsFromNextStart(before, preferences_) || hoursChanged_)
    sayInFoot("The changed settings of AutoScan, AutoUpdate and the Help Server count from the next start.");
  unload();
}

// --- maintenance

void frmPreferences::markDone(QPushButton& button, const char* caption) {
  // Disabled, it hands the focus to the next button: a second Enter after compacting would clear the cache.
  if (focusWidget() == &button) ui_->btnClose->setFocus();
  button.setText(caption);
  button.setEnabled(false);
}

void frmPreferences::clearWindowPositions() {
  mv::clearWindowPositions();
  markDone(*ui_->cmdClearWinPos, kCleared);
}

void frmPreferences::clearCache() {
  clearLinkCache();
  whenLinksAreCleared(this, [this] {
    ui_->txtDBStatus->setText("Link Cache has been cleared.");
    markDone(*ui_->cmdClearCache, kCleared);
  });
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
    ui_->txtDBStatus->setText("The database has not been compacted.");
    std::rethrow_exception(failure);
  }
  ui_->txtDBStatus->setText("Database compacted");
  markDone(*ui_->cmdCompactDatabase, "Compacted");
}

void frmPreferences::endWaiting() {
  progress_.stop();
  compaction_.reset();
  delete wait_;
}

}  // namespace mv
