// Context menus: a right click or the menu key offers what can be done with a row, or with a control.
#pragma once

#include <QString>
#include <functional>
#include <vector>

class QAbstractItemView;
class QWidget;

namespace mv {

struct Command {
  const char* name;  // object name of the entry
  QString caption;   // "": a separator
  std::function<void()> work = {};
  bool enabled = true;
};
using Commands = std::vector<Command>;

// `commandsOf` answers what is offered for a row, which has been selected, `elsewhere` what is where no row is; asked
// whenever the menu opens. None: no menu.
void offerCommands(
    QAbstractItemView& list, std::function<Commands(int row)> commandsOf,
    std::function<Commands()> elsewhere = [] { return Commands(); });
void offerCommands(QWidget& control, std::function<Commands()> commands);

}  // namespace mv
