// The site editor: one site's location, limits, folder, options, assignments and login.
//
// The opener sets Mode, and for "edit" SiteID, SiteName and the caption, then calls open().
#pragma once

#include <QString>
#include <cstdint>

#include "store/SiteStore.h"
#include "windows/EditorWindow.h"

class QTabWidget;

namespace mv {

class AutoScanPage;
class DomainHoppingPage;
class FileTypeLists;
class FilterLists;
class LoginFormFields;
class OtherPage;
class PathsPage;
class RequiredInfoPage;

class frmNew : public EditorWindow {
  Q_OBJECT
 public:
  frmNew();

  std::int32_t SiteID = 0;  // drawn by the editor for a new site
  QString SiteName;         // the saved name after every save

 protected:
  void initWindow() override;
  bool accept() override;
  void apply() override;
  void cancel() override;
  void activated() override;

 private:
  void buildPages();
  QTabWidget* makeOptionalTabs();
  void connectPages();

  void loadNewSite();
  void loadExistingSite();
  void showSite(const Site& site);
  Site site() const;
  void rebuildAssignments();

  // Writes the site and its assignments. False, after a message, when the site is gone.
  bool save();
  bool writeSiteRow();
  void writeAssignments();
  // False, after a message, when a limit box is empty.
  bool limitsAreFilled();
  void refuse(const QString& title, const QString& text);
  void mustSaveFirst(const QString& title, const QString& text);

  void browse();
  void clearCache();
  void openNewFileType();
  void openNewFilter();
  void openPathManager();

  RequiredInfoPage* required_;
  LoginFormFields* login_;
  FileTypeLists* fileTypes_;
  FilterLists* filters_;
  PathsPage* paths_;
  AutoScanPage* autoScan_;
  DomainHoppingPage* hopping_;
  OtherPage* other_;

  bool assignmentsChanged_ = false;
  bool createdByApply_ = false;  // this window inserted the site: Cancel takes it back
  bool listed_ = false;          // the web-site list has a row of the site
};

}  // namespace mv
