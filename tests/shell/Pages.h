// The pages of a window's tabs.
#pragma once

#include <QWidget>
#include <functional>

namespace mvtest {

// Runs `look` once for every page that the window's tabs can show, tabs within tabs too; once when it has none.
void lookAtPages(QWidget& window, const std::function<void()>& look);

}  // namespace mvtest
