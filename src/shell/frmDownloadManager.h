// The main window: the frame of all child windows, the menu bar, the clipboard commands and the ways of ending.
#pragma once

#include <QMainWindow>
#include <QMdiArea>
#include <functional>

#include "app/MainFrame.h"

class QAction;
class QLabel;
class QMenu;

namespace mv {

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
  void startMessageCheck() override;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void buildFileMenu();
  void buildEditMenu();
  void buildToolsMenu();
  void buildWindowsMenu();
  void buildHelpMenu();
  // An entry with a window; without `open` it is present and disabled.
  QAction* addItem(QMenu* menu, const char* name, const QString& caption, std::function<void()> open = {});

  QMdiArea* area_;
  QAction* mnuEditCut_ = nullptr;
  QAction* mnuEditCopy_ = nullptr;
  QAction* mnuEditPaste_ = nullptr;
  QAction* mnuEditDeleteWebSite_ = nullptr;
};

}  // namespace mv
