#include "app/EndProgram.h"

#include <cstdlib>
#include <utility>

#include "app/Events.h"
#include "app/Settings.h"

namespace mv {

namespace {

std::function<void()>& installedEnd() {
  static std::function<void()> end;
  return end;
}

}  // namespace

void endProgramNow() {
  Q_EMIT events().programEnding();
  if (installedEnd()) {
    installedEnd()();
    return;
  }
  try {
    gDatabase.close();
  } catch (...) {
    // The journal is recovered at the next start; nothing here may hold the end.
  }
  // No destructors: they would run the closing steps of windows that are still open.
  std::_Exit(EXIT_SUCCESS);
}

void setEndProgram(std::function<void()> end) { installedEnd() = std::move(end); }

}  // namespace mv
