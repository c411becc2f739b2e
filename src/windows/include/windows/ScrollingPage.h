// A page that scrolls when its window is smaller than it.
#pragma once

class QWidget;

namespace mv {

// Fills `window`, which has no layout yet, with a page as large as the window, but never smaller than its own contents
// need. Returns the page, owned by `window`, for the caller to lay out.
QWidget* makeScrollingPage(QWidget* window);

}  // namespace mv
