// The Edit menu's clipboard commands, acting on the control that has the keyboard focus. A control without selected
// text, or one that cannot be changed, makes a command do nothing.
#pragma once

namespace mv {

void cutToClipboard();
void copyToClipboard();
void pasteFromClipboard();

}  // namespace mv
