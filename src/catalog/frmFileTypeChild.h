// The file-type editor.
#pragma once

#include "app/EditorWindow.h"
#include "catalog/clsFileType.h"

class QCheckBox;
class QLabel;
class QLineEdit;

namespace mv {

class frmFileTypeChild : public EditorWindow {
  Q_OBJECT
 public:
  frmFileTypeChild();

  // Set by the opener in mode "edit"; the identifier is 0 in mode "new".
  std::int64_t FileTypeId = 0;
  QString Extension;
  QString Description;
  std::string CanDelete = "yes";
  std::string DownloadByDefault = "no";

 protected:
  void initWindow() override;
  bool accept() override;

 private:
  bool extensionIsFree() const;

  clsFileType fileType_;
  QLineEdit* txtFileTypeExtention_;
  QLineEdit* txtFiletypeDescription_;
  QCheckBox* chkDownloadByDefault_;
  QLabel* lblID_;
};

}  // namespace mv
