// Long work of many on the user-interface thread, a piece each: whoever goes on later takes a turn behind all that wait
// already, so that nobody's long work keeps another's waiting for more than a piece of everyone's.
#pragma once

#include <functional>

class QObject;

namespace mv {

// Runs `piece`, which must not throw, in a later iteration of the event loop, one an iteration. Dropped when `owner`
// has gone by then. What is enqueued from within a piece comes last.
void takeTurn(QObject* owner, std::function<void()> piece);

}  // namespace mv
