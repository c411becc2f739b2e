// The main window: the frame of all child windows, the menu bar, the online checks and the ways of ending.
#pragma once

#include <QMainWindow>
#include <QMdiArea>
#include <QTimer>
#include <memory>
#include <vector>

#include "shell/Menu.h"
#include "windows/MainFrame.h"

namespace mv {

namespace Ui {
class frmDownloadManager;
}

class NormalPlace;
class frmSplash;

class frmDownloadManager : public QMainWindow, public MainFrame {
  Q_OBJECT
 public:
  explicit frmDownloadManager(const std::vector<Menu>& menus);
  ~frmDownloadManager() override;

  // Applies the stored window place. Raises DatabaseError.
  void initWindow();

  QMdiArea& mdiArea() override;
  QWidget* window() override { return this; }
  void setClipboardItemsEnabled(bool enabled) override;
  void setDeleteWebSiteEnabled(bool enabled) override;
  void hideStatusIndicators() override;
  void say(const QString& line) override;

  // The online checks. Each works in the background; what it needs of a server that is not there it goes without.
  void getFormUpdates();
  void fetchNextFormUpdate();
  void getHelp();
  void fetchNextHelpTopic();
  // Whenever sites are started, too.
  void getMessage();

  // The one splash window, made on first use.
  frmSplash& splash();

  QTimer timerQuit;  // 8 s; ends the program at once when it fires. Nothing switches it on so far.

 protected:
  // Closing the main window, which the end of the desktop session does too, closes the program: child windows first,
  // each really unloading, then place, log and database.
  void closeEvent(QCloseEvent* event) override;

 private:
  void addMenu(const Menu& menu);
  void addItem(QMenu& menu, const MenuItem& item);
  void wire();
  void setItemEnabled(const char* name, bool enabled);
  void unloadChildWindows();
  void saveOwnPosition();

  std::unique_ptr<Ui::frmDownloadManager> ui_;
  bool closed_ = false;  // the end of the session and a signal may ask one after the other
  std::unique_ptr<NormalPlace> normalPlace_;
  frmSplash* splash_ = nullptr;
};

}  // namespace mv
