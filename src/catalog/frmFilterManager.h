// The list of filters, "Filter Manager". Selected filters can be dragged to the web-site list.
#pragma once

#include "app/ListWindow.h"

namespace mv {

class frmFilterManager : public ListWindow {
  Q_OBJECT
 public:
  frmFilterManager();

 protected:
  void fillList() override;
  void openNew() override;
  void editChosen() override;
  void deleteChosen() override;

 private:
  QString dragText();
};

}  // namespace mv
