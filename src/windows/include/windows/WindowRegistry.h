// The loaded child windows, in the order of their creation. Windows find one another here by title, by position key or
// by class. A command word for a window that is not loaded is passed over.
#pragma once

#include <QString>
#include <string>
#include <vector>

namespace mv {

class ChildWindow;

class WindowRegistry {
 public:
  static WindowRegistry& instance();

  // A copy: the loop over it may load and unload windows. Members may have died meanwhile, see isLoaded.
  std::vector<ChildWindow*> windows() const;
  bool isLoaded(const ChildWindow* window) const;

  // First loaded window whose caption equals `caption` exactly, or nullptr.
  ChildWindow* findByCaption(const QString& caption) const;
  // First loaded window with that position key, or nullptr. The web-site list's caption changes, its key does not.
  ChildWindow* findByKey(const QString& key) const;
  // First loaded window of a class, or nullptr: for windows of which there is only one.
  template <class Window>
  Window* find() const {
    for (ChildWindow* window : windows())
      if (auto* match = dynamic_cast<Window*>(window)) return match;
    return nullptr;
  }

  // Sends a command word to the window with that position key.
  void tell(const QString& key, const std::string& command, long id = 0);
  // Sets RefreshPending of the window with that position key.
  void markRefreshPending(const QString& key);
};

// The loaded scan and download windows, hidden ones too, in the order of their creation.
std::vector<ChildWindow*> processWindows();
// Ends a process window, which its close box would only hide, and tells Events.
void closeProcess(ChildWindow& window);
// The same for the first one with that position key. False when there is no such window; then nothing happens.
bool closeProcess(const QString& key);

// Shows the one window of a class: made on first use, of these arguments, brought forward afterwards.
template <class Window, class... Arguments>
Window* showSingle(const Arguments&... arguments) {
  auto* window = WindowRegistry::instance().find<Window>();
  if (!window) window = new Window(arguments...);
  window->showChild();
  return window;
}

}  // namespace mv
