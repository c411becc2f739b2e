// What assistive programs are told of tabs.
#pragma once

namespace mv {

// From now on, for every bar of tabs that is made. Left to itself a bar bears the name of the tab that is chosen, which
// is read behind it a second time.
void describeTabs();

}  // namespace mv
