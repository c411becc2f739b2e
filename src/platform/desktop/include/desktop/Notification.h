// A word to the user on the desktop, outside the program's windows.
#pragma once

#include <QString>
#include <functional>

namespace mv {

// Has the desktop's notification service (the D-Bus interface org.freedesktop.Notifications) show `title` and `text`,
// both plain. A click on it runs `clicked`, as long as the program runs. Does not wait; without such a service nothing
// happens.
void notifyDesktop(const QString& title, const QString& text, std::function<void()> clicked);

}  // namespace mv
