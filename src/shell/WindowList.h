// The open child windows as entries of a menu.
#pragma once

class QMdiArea;
class QMenu;

namespace mv {

// From now on `menu` ends, every time it is opened, with a separator and an entry for each child window of `area` that
// is in view, the active one checked; choosing one brings it forward. Without such windows nothing is added.
void listOpenWindows(QMenu& menu, QMdiArea& area);

}  // namespace mv
