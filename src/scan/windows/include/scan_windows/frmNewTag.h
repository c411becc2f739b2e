// The editor of one link-bearing tag. The opener chooses the caption.
#pragma once

#include <cstdint>

#include "windows/EditorWindow.h"

class QLabel;

namespace mv {

class EntryBox;

class frmNewTag : public EditorWindow {
  Q_OBJECT
 public:
  frmNewTag();

  std::int64_t TagId = 0;  // set by the opener in mode "edit"; drawn by the editor in mode "new"

 protected:
  void initWindow() override;
  bool accept() override;

 private:
  void buildFields();
  bool save(const std::string& tag);

  EntryBox* txtTagName_;
  QLabel* lblId_;
};

}  // namespace mv
