// The path manager of one site: a folder for each of its file types.
#pragma once

#include <cstdint>
#include <memory>

#include "catalog/clsPath.h"
#include "store/Id.h"
#include "windows/ChildWindow.h"

namespace mv {

namespace Ui {
class frmSitePaths;
}

class frmSitePaths : public ChildWindow {
  Q_OBJECT
 public:
  frmSitePaths();
  ~frmSitePaths() override;

  // Set by the opener before open(). The caption becomes "Path Manager for: " + SiteName, whose password is masked.
  Id SiteID = 0;
  QString SiteName;

  // Restores the place, builds the list and shows the window.
  void open();
  // "filetype" rebuilds the list; other words do nothing.
  void buildWorkingLists(const std::string& command, long id = 0) override;

 protected:
  void unloading() override;
  void activated() override;

 private:
  QString shownName() const;
  void selectionChanged();
  void showPathOfRow(int row);
  void browse();
  QString askFolder(const QString& extension);
  bool makeFolder(const QString& folder);
  void takeTypedFolder();
  void saveFolder(const QString& folder);

  std::unique_ptr<Ui::frmSitePaths> ui_;
  clsPath path_;
  std::int64_t fileTypeId_ = 0;
};

}  // namespace mv
