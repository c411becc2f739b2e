// What a window shows only in part: controls, tabs, titles and texts that are clipped, elided or scrolled away.
#pragma once

#include <QStringList>
#include <QWidget>

namespace mvtest {

// A line for each, with the control's name. The window is shown, and no other stands before it. Every page of its tabs
// is looked at.
QStringList cutControls(QWidget& window);

}  // namespace mvtest
