// The drop-down of the toolbar button "Connections": how many sites may be at work at a time.
#pragma once

#include <functional>

class QToolButton;
class QWidget;

namespace mv {

// The button gets a menu of numbers, each of which is handed to `set`, with an entry that `ask`s for another; Down
// opens it.
void offerConnections(QToolButton& button, const std::function<void(long)>& set, const std::function<void()>& ask);

// The number typed into a box; `current` stands there first. 1 when the answer is none, or when there is no answer.
long askForConnections(QWidget* owner, long current);
// Tells that there is one now, and where to set more.
void tellOneConnection(QWidget* owner);

}  // namespace mv
