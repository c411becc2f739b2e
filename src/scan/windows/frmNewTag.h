// The editor of one link-bearing tag. The opener chooses the caption of an existing one.
#pragma once

#include "windows/RecordEditor.h"

namespace mv {

class EntryBox;
struct Tag;

class frmNewTag : public RecordEditor {
  Q_OBJECT
 public:
  frmNewTag();

  Id& TagId = RecordId;

 protected:
  void loadRecord() override;
  Checks checks(Choice choice) const override;
  void insertRecord() override;
  bool updateRecord() override;

 private:
  Tag record() const;

  EntryBox* txtTagName_;
};

}  // namespace mv
