#include "ContentsSize.h"

#include <QLayout>
#include <QTreeView>
#include <algorithm>
#include <utility>
#include <vector>

#include "desktop/ListColumns.h"

namespace mv {

namespace {

// While one lives the lists of a window ask for the width of all their columns. Left to themselves they ask for little,
// because a list scrolls in a window that the user has made small.
class FullLists {
 public:
  explicit FullLists(const QWidget& window) {
    for (QTreeView* list : window.findChildren<QTreeView*>()) {
      before_.emplace_back(list, list->minimumWidth());
      list->setMinimumWidth(std::max(list->minimumWidth(), columnsWidth(*list)));
    }
  }
  ~FullLists() {
    for (const auto& [list, width] : before_) list->setMinimumWidth(width);
  }
  FullLists(const FullLists&) = delete;
  FullLists& operator=(const FullLists&) = delete;

 private:
  std::vector<std::pair<QTreeView*, int>> before_;
};

}  // namespace

QSize neededSize(QWidget& window, int width) {
  const QLayout* contents = window.layout();
  if (!contents) return {};
  const FullLists lists(window);
  // What the layouts remember of their parts is told anew up to the window only in later events. A form computes some
  // of it before its texts are set.
  for (QWidget* part : window.findChildren<QWidget*>()) part->updateGeometry();
  for (QLayout* layout : window.findChildren<QLayout*>()) layout->invalidate();
  width = std::max(width, contents->totalSizeHint().width());
  const bool wraps = contents->hasHeightForWidth();
  return {width, wraps ? contents->totalHeightForWidth(width) : contents->totalSizeHint().height()};
}

}  // namespace mv
