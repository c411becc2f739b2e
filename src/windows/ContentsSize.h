// What a laid out window needs, so that nothing in it is cut, scrolled or wrapped away.
#pragma once

#include <QSize>

class QWidget;

namespace mv {

// The size of the contents of `window` when they are `width` pixels wide at least. Lists count with all their columns.
QSize neededSize(QWidget& window, int width);

}  // namespace mv
