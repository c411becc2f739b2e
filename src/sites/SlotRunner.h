// How a panel of a window runs the work of its slots: the window owns the panel, and guards the work as it does its
// own.
#pragma once

#include <functional>

namespace mv {

using SlotRunner = std::function<void(const std::function<void()>& work)>;

}  // namespace mv
