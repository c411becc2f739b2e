// Arranging the child windows of the frame. Hidden and minimised ones are left alone.
#pragma once

class QMdiArea;

namespace mv {

// Each in the size of its own.
void cascadeWindows(QMdiArea& area);
// One above the other, each over the whole width; more than three in a grid.
void tileHorizontally(QMdiArea& area);
// Side by side, each over the whole height; more than three in a grid.
void tileVertically(QMdiArea& area);

}  // namespace mv
