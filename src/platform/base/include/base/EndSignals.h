// The operating system's requests to end: SIGTERM, SIGINT and SIGHUP.
#pragma once

#include <functional>

namespace mv {

// Runs `work` on the event loop of the calling thread when a request arrives. One receiver at a time.
void onEndSignal(std::function<void()> work);

}  // namespace mv
