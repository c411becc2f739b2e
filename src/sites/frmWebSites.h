// The web-site list: defines, starts and stops sites.
#pragma once

#include <QTimer>
#include <cstdint>

#include "app/ListWindow.h"
#include "sites/SiteStore.h"

class QAction;

namespace mv {

class frmWebSites : public ListWindow {
  Q_OBJECT
 public:
  frmWebSites();

  QString positionKey() const override;  // "Web Sites", whatever the caption says

  // "init", "websiteadded", "websiteedited"; other words do nothing.
  void buildWorkingLists(const std::string& command, long siteId = 0) override;
  // Starts the sites marked for automatic scanning among the first maxConnections rows.
  void autoScan();
  // Stops every running site.
  void closeAllWebSites();

  QTimer tmrQuit;  // 60 s; ends the program when gQuitAt has passed. Switched on by start-up only.

 protected:
  void fillList() override;
  void editChosen() override;
  void deleteChosen() override;
  bool queryUnload() override;
  void activated() override;

 private:
  void buildToolbar();
  void openNew();
  void startSelected();
  void startRow(int row);
  void startSite(const SiteListRow& site);
  void stopSelected();
  void stopRow(int row);
  void closeProcesses(const QString& siteName);
  void setRunning(int row, bool running);
  void rowWasChosen(int row);
  void connectionsClicked();
  void setConnections(long connections);
  void askConnections();
  void updateTitle();
  void updateMenus();
  void dropFilters(const QString& text);
  void quitWhenDue();

  long selectedSiteID_ = 0;
  QString selectedSiteName_;
  long runningSites_ = 0;
  long maxConnections_ = 0;
  QAction* start_ = nullptr;
  QAction* stop_ = nullptr;
};

}  // namespace mv
