// The preferences: the one row of `pref`, and the maintenance of the database. Close saves; the close box and Escape do
// not. Hiding of process windows and overwriting of files apply at once, the rest from the next start.
#pragma once

#include <QPointer>
#include <QTimer>
#include <cstdint>
#include <exception>
#include <memory>
#include <string>

#include "store/Preferences.h"
#include "windows/ChildWindow.h"

class QPushButton;

namespace mv {

namespace Ui {
class frmPreferences;
}

class Compaction;
class frmPleaseWait;

class frmPreferences : public ChildWindow {
  Q_OBJECT
 public:
  frmPreferences();
  ~frmPreferences() override;

 protected:
  void activated() override;
  void unloading() override;
  // Enter presses the button with the focus, else Close.
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void wire();

  void loadPreferencesWindow();
  void showDatabaseInfo();
  void refreshPreferenceControls();
  void sliderMoved(int hours);
  void savePreferences();
  void saveAndClose();

  // For the rest of the window's life.
  void markDone(QPushButton& button, const char* caption);
  void clearWindowPositions();
  void clearCache();
  // The compaction: refused with a message, or begun under the please-wait window.
  void askToCompact();
  QString whyNotCompact() const;
  void beginCompaction();
  void compactionEnded(const std::exception_ptr& failure);
  // Takes the please-wait window away; a compaction that still runs is given up.
  void endWaiting();

  std::unique_ptr<Ui::frmPreferences> ui_;
  Preferences preferences_;  // as they were read, and as they will be written
  bool loading_ = false;
  bool hoursChanged_ = false;
  std::int64_t freeMegabytes_ = 0;
  std::int64_t databaseMegabytes_ = 0;

  std::unique_ptr<Compaction> compaction_;
  QPointer<frmPleaseWait> wait_;
  QTimer progress_;
};

}  // namespace mv
