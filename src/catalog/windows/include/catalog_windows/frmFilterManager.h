// The list of filters, "Filter Manager". Selected filters can be dragged to the web-site list.
#pragma once

#include <optional>

#include "windows/ListWindow.h"

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
  void dragBegins();
  void dragEnds();

  std::optional<Busy> dragging_;  // a window that is closed during a drag goes after it
};

}  // namespace mv
