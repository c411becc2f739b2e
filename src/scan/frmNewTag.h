// The editor of one link-bearing tag.
#pragma once

#include <cstdint>

#include "app/EditorWindow.h"

class QLabel;
class QLineEdit;

namespace mv {

class frmNewTag : public EditorWindow {
  Q_OBJECT
 public:
  frmNewTag();

  std::int64_t TagId = 0;  // set by the opener in mode "edit"; drawn by the editor in mode "new"

 protected:
  void initWindow() override;
  bool accept() override;

 private:
  QLineEdit* txtTagName_;
  QLabel* lblId_;
};

}  // namespace mv
