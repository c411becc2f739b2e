// The file-type editor. The opener chooses the caption.
#pragma once

#include <cstdint>

#include "catalog/clsFileType.h"
#include "windows/EditorWindow.h"

class QCheckBox;
class QLabel;
class QLineEdit;

namespace mv {

class frmFileTypeChild : public EditorWindow {
  Q_OBJECT
 public:
  frmFileTypeChild();

  // Set by the opener in mode "edit"; in mode "new" the editor uses "yes", "no" and empty texts.
  std::int64_t FileTypeId = 0;
  QString Extension;
  QString Description;
  std::string CanDelete = "yes";
  std::string DownloadByDefault = "no";

 protected:
  void initWindow() override;
  bool accept() override;

 private:
  void buildFields();
  void discardPastedPeriods(const QString& typed);
  bool extensionIsTaken() const;
  bool save();

  clsFileType fileType_;
  QLineEdit* txtFileTypeExtention_;
  QLineEdit* txtFiletypeDescription_;
  QCheckBox* chkDownloadByDefault_;
  QLabel* lblID_;
};

}  // namespace mv
