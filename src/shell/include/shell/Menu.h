// The menu bar of the main window as data: whoever puts the program together says what stands in it and what it does.
#pragma once

#include <QKeySequence>
#include <QString>
#include <functional>
#include <string>
#include <vector>

namespace mv {

class frmDownloadManager;

// What choosing an entry does, in the main window that it stands in. What it raises is reported.
using MenuWork = std::function<void(frmDownloadManager&)>;

struct MenuItem {
  std::string name;      // object name, and source of errors
  QString caption = {};  // "": a separator
  MenuWork work = {};    // without one the entry is there, disabled
  QKeySequence shortcut = {};
};

struct Menu {
  std::string name;  // object name
  QString caption;
  std::vector<MenuItem> items;
  bool listsWindows = false;  // ends with the open child windows
};

// Entries that the main window turns on and off as the active child window needs them; a menu may lack them.
inline constexpr const char* kCutItem = "mnuEditCut";
inline constexpr const char* kCopyItem = "mnuEditCopy";
inline constexpr const char* kPasteItem = "mnuEditPaste";
inline constexpr const char* kDeleteWebSiteItem = "mnuEditDeleteWebSite";

}  // namespace mv
