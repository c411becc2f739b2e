// The editor of one link-bearing tag. The opener chooses the caption of an existing one.
#pragma once

#include <memory>

#include "windows/RecordEditor.h"

namespace mv {

struct Tag;
namespace Ui {
class frmNewTag;
}

class frmNewTag : public RecordEditor {
  Q_OBJECT
 public:
  frmNewTag();
  ~frmNewTag() override;

  Id& TagId = RecordId;

 protected:
  void loadRecord() override;
  Checks checks(Choice choice) const override;
  void insertRecord() override;
  bool updateRecord() override;

 private:
  Tag record() const;

  std::unique_ptr<Ui::frmNewTag> ui_;
};

}  // namespace mv
