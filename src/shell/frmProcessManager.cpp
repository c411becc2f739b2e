#include "shell/frmProcessManager.h"

#include "app/ToolIcons.h"
#include "app/WindowRegistry.h"

namespace mv {

namespace {

constexpr int kWidth = 3050;   // twips
constexpr int kHeight = 3600;  // twips

}  // namespace

frmProcessManager::frmProcessManager() : ListWindow(kProcessManager, kWidth, kHeight) {
  setObjectName("frmProcessManager");
  list().setObjectName("lvwProcesses");
  list().setAccessibleName(kProcessManager);
  list().setColumns({{"Process and Site Name"}});
  addButton("    Expand    ", "Show the window of the selected process", toolIcon("expand"), [this] { editChosen(); });
  addButton("Delete", "End the selected process", toolIcon("delete"), [this] { deleteChosen(); });
  load();
}

void frmProcessManager::fillList() {
  list().sortAscending(0);
  for (const ChildWindow* window : processWindows()) list().addRow({window->positionKey()});
}

void frmProcessManager::editChosen() {
  for (ChildWindow* window : processWindows())
    if (window->positionKey() == chosenText()) window->showChild();
}

void frmProcessManager::deleteChosen() {
  closeProcess(chosenText());
  buildWorkingLists("init");
}

void frmProcessManager::activated() {
  buildWorkingLists("init");
  ListWindow::activated();
}

}  // namespace mv
