// The file-type editor. The opener chooses the caption.
#pragma once

#include <memory>

#include "catalog/clsFileType.h"
#include "windows/RecordEditor.h"

namespace mv {

namespace Ui {
class frmFileTypeChild;
}

class frmFileTypeChild : public RecordEditor {
  Q_OBJECT
 public:
  frmFileTypeChild();
  ~frmFileTypeChild() override;

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
  void discardPastedPeriods(const QString& typed);
  bool extensionIsTaken() const;
  // Takes over what the controls show.
  const clsFileType& record();

  std::unique_ptr<Ui::frmFileTypeChild> ui_;
  clsFileType fileType_;
};

}  // namespace mv
