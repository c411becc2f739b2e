// What a window tells assistive programs, and where the Tab key leads in it.
#pragma once

#include <QStringList>
#include <QWidget>

namespace mvtest {

// What is wrong with what is told of `window` and of all that it shows, on every page of its tabs; a line each: no
// name, no role, the name of something else, a text that is read twice, a window that is not said to be showing.
QStringList accessibilityFaults(QWidget& window);

// The controls of every page that Tab does not reach, and its steps against the order in which a page is read. The
// window is shown and can have the focus.
QStringList tabFaults(QWidget& window);

}  // namespace mvtest
