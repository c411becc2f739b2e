// The site editor: one site's location, limits, folder, options, assignments and login.
//
// The opener sets Mode, and for "edit" SiteID, SiteName and the caption, then calls open().
#pragma once

#include <QString>
#include <memory>

#include "store/Id.h"
#include "store/SiteStore.h"
#include "windows/RecordEditor.h"

namespace mv {

namespace Ui {
class frmNew;
}

class frmNew : public RecordEditor {
  Q_OBJECT
 public:
  frmNew();
  ~frmNew() override;

  Id& SiteID = RecordId;
  QString SiteName;  // the saved name after every save

 protected:
  void initWindow() override;
  void loadRecord() override;
  Checks checks(Choice choice) const override;
  void insertRecord() override;
  bool updateRecord() override;
  void recordChanged() override;
  void sayGone() override;
  void cancel() override;
  void activated() override;

 private:
  void connectPages();

  void showDefaults();
  void showSite(const Site& site);
  void rebuildAssignments();

  // The site as the boxes have it, which are put in order first.
  Site takeSite();
  void writeAssignments();
  void mustSaveFirst(const QString& title, const QString& text);

  void browse();
  void clearCache();
  void openNewFileType();
  void openNewFilter();
  void openPathManager();

  std::unique_ptr<Ui::frmNew> ui_;
  bool assignmentsChanged_ = false;
  bool listed_ = false;  // the web-site list has a row of the site
};

}  // namespace mv
