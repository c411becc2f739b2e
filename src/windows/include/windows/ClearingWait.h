// The please-wait window before the clearing of a link cache.
#pragma once

#include <functional>

class QObject;

namespace mv {

// Runs `then` when LinkCleaner has done all its work: at once, or in a later event, until which the please-wait window
// stands before all others and counts. Not when it has failed, nor when `owner` has gone by then.
void whenLinksAreCleared(QObject* owner, const std::function<void()>& then);

}  // namespace mv
