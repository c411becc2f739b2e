// The file-type editor. The opener chooses the caption.
#pragma once

#include "catalog/clsFileType.h"
#include "windows/RecordEditor.h"

class QCheckBox;
class QLineEdit;

namespace mv {

class frmFileTypeChild : public RecordEditor {
  Q_OBJECT
 public:
  frmFileTypeChild();

  // Set by the opener in mode "edit"; in mode "new" the editor uses "yes", "no" and empty texts.
  Id& FileTypeId = RecordId;
  QString Extension;
  QString Description;
  std::string CanDelete = "yes";
  std::string DownloadByDefault = "no";

 protected:
  void initWindow() override;
  Checks checks(Choice choice) const override;
  void insertRecord() override;
  bool updateRecord() override;

 private:
  void buildFields();
  void discardPastedPeriods(const QString& typed);
  bool extensionIsTaken() const;
  // Takes over what the controls show.
  const clsFileType& record();

  clsFileType fileType_;
  QLineEdit* txtFileTypeExtention_;
  QLineEdit* txtFiletypeDescription_;
  QCheckBox* chkDownloadByDefault_;
};

}  // namespace mv
