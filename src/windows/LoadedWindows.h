// The loaded child windows, in the order of their creation: what ChildWindow writes and WindowRegistry reads.
#pragma once

#include <vector>

namespace mv {

class ChildWindow;

inline std::vector<ChildWindow*>& loadedWindows() {
  static std::vector<ChildWindow*> windows;
  return windows;
}

}  // namespace mv
