// The main window: the frame of all child windows, the menu bar, the clipboard commands and the ways of ending.
#pragma once

#include <QMainWindow>
#include <QMdiArea>
#include <QTimer>
#include <functional>

#include "windows/MainFrame.h"

class QAction;
class QMenu;

namespace mv {

class FormUpdates;
class HelpUpdates;
class ListView;
class MessageCheck;
class UpdatePanel;
class frmSplash;

class frmDownloadManager : public QMainWindow, public MainFrame {
  Q_OBJECT
 public:
  frmDownloadManager();
  ~frmDownloadManager() override;

  // Applies the stored window place. Raises DatabaseError.
  void initWindow();

  QMdiArea& mdiArea() override { return *area_; }
  QWidget* window() override { return this; }
  void setClipboardItemsEnabled(bool enabled) override;
  void setDeleteWebSiteEnabled(bool enabled) override;
  void hideStatusIndicators() override;
  void startMessageCheck() override { getMessage(); }

  // The online checks. Each works in the background; what it needs of a server that is not there it goes without.
  void getFormUpdates();
  void fetchNextFormUpdate();
  void getHelp();
  void fetchNextHelpTopic();
  void getMessage();

  // The one splash window, made on first use.
  frmSplash& splash();

  QTimer timerQuit;  // 8 s; ends the program at once when it fires. Nothing switches it on so far.

 protected:
  // Closing the main window, which the end of the desktop session does too, closes the program: child windows first,
  // each really unloading, then place, log and database.
  void closeEvent(QCloseEvent* event) override;

 private:
  void buildFileMenu();
  void buildEditMenu();
  void buildToolsMenu();
  void buildWindowsMenu();
  void buildHelpMenu();
  void buildStatusIndicators();
  void buildOnlineChecks();
  // A menu entry; without `open` it is present and disabled.
  QAction* addItem(QMenu* menu, const char* name, const QString& caption, const std::function<void()>& open = {});
  QAction* addPageItem(QMenu* menu, const char* name, const QString& caption, const QString& address);
  void unloadChildWindows();
  void saveOwnPosition();

  bool closed_ = false;  // the end of the session and a signal may ask one after the other
  QMdiArea* area_;
  QAction* mnuEditCut_ = nullptr;
  QAction* mnuEditCopy_ = nullptr;
  QAction* mnuEditPaste_ = nullptr;
  QAction* mnuEditDeleteWebSite_ = nullptr;
  UpdatePanel* pictUpdates_ = nullptr;
  UpdatePanel* pictHelpUpdates_ = nullptr;
  FormUpdates* formUpdates_ = nullptr;
  HelpUpdates* helpUpdates_ = nullptr;
  MessageCheck* messageCheck_ = nullptr;
  frmSplash* splash_ = nullptr;
};

}  // namespace mv
