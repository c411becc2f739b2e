// What assistive programs are told of the frame around a child window.
#pragma once

namespace mv {

// From now on, for every frame that is made. Left to itself a frame of which a part lies outside the main window is
// said not to be showing, and its parent is not the one that lists it as a child. The name is the caption, or the
// frame's accessible name while there is none.
void describeFrames();

}  // namespace mv
