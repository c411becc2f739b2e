// Arranging the child windows of the frame. Hidden and minimised ones are left alone.
#pragma once

class QMdiArea;

namespace mv {

void cascadeWindows(QMdiArea& area);
// One above the other, each over the whole width.
void tileHorizontally(QMdiArea& area);
// Side by side, each over the whole height.
void tileVertically(QMdiArea& area);

}  // namespace mv
