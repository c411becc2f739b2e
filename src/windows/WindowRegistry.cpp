#include "windows/WindowRegistry.h"

#include <QScopeGuard>
#include <algorithm>

#include "app/Settings.h"
#include "windows/ChildWindow.h"

namespace mv {

WindowRegistry& WindowRegistry::instance() {
  static WindowRegistry registry;
  return registry;
}

bool WindowRegistry::isLoaded(const ChildWindow* window) const {
  return std::find(windows_.begin(), windows_.end(), window) != windows_.end();
}

ChildWindow* WindowRegistry::findByCaption(const QString& caption) const {
  const auto match = std::find_if(windows_.begin(), windows_.end(),
                                  [&](const ChildWindow* window) { return window->caption() == caption; });
  return match == windows_.end() ? nullptr : *match;
}

ChildWindow* WindowRegistry::findByKey(const QString& key) const {
  const auto match = std::find_if(windows_.begin(), windows_.end(),
                                  [&](const ChildWindow* window) { return window->positionKey() == key; });
  return match == windows_.end() ? nullptr : *match;
}

// By key: while a process window fills its list its caption says so instead.
std::vector<ChildWindow*> processWindows() {
  std::vector<ChildWindow*> found = WindowRegistry::instance().windows();
  std::erase_if(found, [](const ChildWindow* window) {
    return !window->positionKey().startsWith(kScanTitle) && !window->positionKey().startsWith(kDownloadTitle);
  });
  return found;
}

bool closeProcess(const QString& key) {
  ChildWindow* window = WindowRegistry::instance().findByKey(key);
  if (!window) return false;
  {
    // A process window that is asked to unload only hides, except now.
    gClosingProcesses = true;
    const auto closed = qScopeGuard([] { gClosingProcesses = false; });
    window->unload();
  }
  WindowRegistry::instance().tell(kProcessManager, "init");
  return true;
}

void WindowRegistry::tell(const QString& key, const std::string& command, long id) {
  if (ChildWindow* window = findByKey(key)) window->buildWorkingLists(command, id);
}

void WindowRegistry::markRefreshPending(const QString& key) {
  if (ChildWindow* window = findByKey(key)) window->RefreshPending = true;
}

}  // namespace mv
