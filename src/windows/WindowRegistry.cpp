#include "windows/WindowRegistry.h"

#include <QScopeGuard>
#include <algorithm>

#include "LoadedWindows.h"
#include "app/Events.h"
#include "app/Settings.h"
#include "windows/ChildWindow.h"

namespace mv {

WindowRegistry& WindowRegistry::instance() {
  static WindowRegistry registry;
  return registry;
}

namespace {

template <class Is>
ChildWindow* firstWindow(Is is) {
  const auto match = std::find_if(loadedWindows().begin(), loadedWindows().end(), is);
  return match == loadedWindows().end() ? nullptr : *match;
}

}  // namespace

std::vector<ChildWindow*> WindowRegistry::windows() const { return loadedWindows(); }

bool WindowRegistry::isLoaded(const ChildWindow* window) const {
  return firstWindow([&](const ChildWindow* loaded) { return loaded == window; }) != nullptr;
}

ChildWindow* WindowRegistry::findByCaption(const QString& caption) const {
  return firstWindow([&](const ChildWindow* window) { return window->caption() == caption; });
}

ChildWindow* WindowRegistry::findByKey(const QString& key) const {
  return firstWindow([&](const ChildWindow* window) { return window->positionKey() == key; });
}

// By key: while a process window fills its list its caption says so instead.
std::vector<ChildWindow*> processWindows() {
  std::vector<ChildWindow*> found = WindowRegistry::instance().windows();
  std::erase_if(found, [](const ChildWindow* window) {
    return !window->positionKey().startsWith(kScanTitle) && !window->positionKey().startsWith(kDownloadTitle);
  });
  return found;
}

void closeProcess(ChildWindow& window) {
  {
    // A process window that is asked to unload only hides, except now.
    gClosingProcesses = true;
    const auto closed = qScopeGuard([] { gClosingProcesses = false; });
    window.unload();
  }
  Q_EMIT events().processesChanged();
}

bool closeProcess(const QString& key) {
  ChildWindow* window = WindowRegistry::instance().findByKey(key);
  if (window) closeProcess(*window);
  return window;
}

void WindowRegistry::tell(const QString& key, const std::string& command, long id) {
  if (ChildWindow* window = findByKey(key)) window->buildWorkingLists(command, id);
}

void WindowRegistry::markRefreshPending(const QString& key) {
  if (ChildWindow* window = findByKey(key)) window->RefreshPending = true;
}

}  // namespace mv
