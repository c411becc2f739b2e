// The list of filters, "Filter Manager". Selected filters can be dragged to the web-site list.
#pragma once

#include <optional>

#include "windows/RecordWindow.h"

namespace mv {

class frmFilterManager : public RecordWindow {
  Q_OBJECT
 public:
  frmFilterManager();

 protected:
  RecordEditor* makeEditor(int row) override;

 private:
  QString dragText();
  void dragBegins();
  void dragEnds();

  std::optional<Busy> dragging_;  // a window that is closed during a drag goes after it
};

}  // namespace mv
