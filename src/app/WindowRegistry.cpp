#include "app/WindowRegistry.h"

#include <algorithm>

#include "app/ChildWindow.h"

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

void WindowRegistry::tell(const QString& key, const std::string& command, long id) {
  if (ChildWindow* window = findByKey(key)) window->buildWorkingLists(command, id);
}

void WindowRegistry::markRefreshPending(const QString& key) {
  if (ChildWindow* window = findByKey(key)) window->RefreshPending = true;
}

}  // namespace mv
