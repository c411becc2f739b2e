// The Edit menu's clipboard commands, acting on the control that has the keyboard focus. A control without selected
// text, or one that cannot be changed, makes a command do nothing.
#pragma once

namespace mv {

// From now on a text box keeps its selection while the menu bar has the keyboard, as it does while a menu is open: what
// is chosen there by key is to act on it.
void keepSelectionsUnderMenus();

void cutToClipboard();
void copyToClipboard();
void pasteFromClipboard();

}  // namespace mv
