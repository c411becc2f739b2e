// The web-site list: defines, starts and stops sites. There is one for the whole program; closing it only hides it.
#pragma once

#include <QTimer>
#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "store/SiteStore.h"
#include "windows/CommandMenu.h"
#include "windows/ListWindow.h"

class QToolButton;

namespace mv {

class ListedSites;
class SiteDeletion;
class SiteProcesses;

class frmWebSites : public ListWindow {
  Q_OBJECT
 public:
  frmWebSites();
  ~frmWebSites() override;

  QString positionKey() const override;  // "Web Sites", whatever the caption says

  // "init" rebuilds the list, every row off; "websiteadded" appends the row of a site, "websiteedited" refreshes it.
  // Other words do nothing.
  void buildWorkingLists(const std::string& command, long siteId = 0) override;
  // Opens the editor of a new site.
  void newSite();
  // Starts the sites marked for automatic scanning among the first maxConnections rows.
  void autoScan();
  // Stops every running site.
  void closeAllWebSites();

  QTimer tmrQuit;  // 60 s; ends the program when gQuitAt has passed. Switched on by start-up only.

 protected:
  std::vector<QStringList> readRows() override;
  // Enter, double click and F5 start the selected sites, Shift+F5 stops them; F2 opens the editor, Insert that of a new
  // site.
  void editChosen() override;
  void deleteChosen() override;
  // Asks first: unlike the button the key may be a slip.
  void deleteByKey() override;
  bool queryUnload() override;
  void unloading() override;
  void activated() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void buildList();
  void buildToolbar();
  void listen();

  void openNew();
  void openEdit();
  void deleteUnlessRunning(Id id);
  void startSelected();
  void startRow(int row);
  void startSite(const SiteListRow& site);
  void stopSelected();
  void stopRow(int row);

  void refreshRow(Id siteId);
  Id idOfRow(int row) const;
  // As it is stored; the row shows the name without its password.
  SiteListRow siteOfRow(int row) const;
  int rowOf(Id siteId) const;  // -1 when it has none
  std::deque<Id> deletableSites() const;
  bool workByKey(const QKeyEvent& event);
  bool isRunning(int row) const;
  void setRunning(int row, bool running);
  void offerStart(bool start);
  void rowWasChosen(int row);
  void forgetVanishedSelection();

  Commands commandsOf(int row);
  void setOneConnection();
  void setConnections(long connections);
  void askConnections();
  void updateTitle();
  void updateMenus();
  void dropFilters(const QString& text);
  void quitWhenDue();

  Id selectedSiteID_ = 0;  // the row last clicked; 0 when none, or when it is gone
  std::unique_ptr<ListedSites> sites_;
  long maxConnections_ = 0;
  std::unique_ptr<SiteProcesses> processes_;
  SiteDeletion* deletion_;
  QToolButton* start_ = nullptr;
  QToolButton* stop_ = nullptr;
  QToolButton* connections_ = nullptr;
};

}  // namespace mv
