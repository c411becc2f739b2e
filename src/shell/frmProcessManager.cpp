#include "shell/frmProcessManager.h"

#include "desktop/ListColumns.h"
#include "windows/ListHelpers.h"
#include "windows/ToolIcons.h"
#include "windows/WindowRegistry.h"

namespace mv {

namespace {

constexpr int kWidth = 3050;   // twips
constexpr int kHeight = 3600;  // twips
constexpr const char* kProcessManager = "Process Manager";

}  // namespace

frmProcessManager::frmProcessManager() : ListWindow(kProcessManager, kWidth, kHeight) {
  setObjectName("frmProcessManager");
  list().setObjectName("lvwProcesses");
  list().setAccessibleName("Processes");
  list().setColumns({{"Process and Site Name"}});
  setEmptyText(list(), "No site is running. Start one in the Web Sites window.");
  addButton("    Expand    ", "Show the window of the selected process", toolIcon("expand"), [this] { editChosen(); });
  addButton("Delete", "End the selected process", toolIcon("delete"), [this] { deleteChosen(); });
  listenTo(&Events::processesChanged, [this] { buildWorkingLists("init"); });
  load();
}

std::vector<QStringList> frmProcessManager::readRows() {
  list().sortAscending(0);
  return rowsOf(processWindows(), [](const ChildWindow* window) { return QStringList(window->positionKey()); });
}

QString frmProcessManager::chosenKey() const { return chosenRow() < 0 ? QString() : chosenText(); }

void frmProcessManager::editChosen() {
  const QString key = chosenKey();
  for (ChildWindow* window : processWindows())
    if (window->positionKey() == key) window->showChild();
}

void frmProcessManager::deleteChosen() {
  if (!closeProcess(chosenKey())) buildWorkingLists("init");
}

void frmProcessManager::activated() {
  buildWorkingLists("init");
  ListWindow::activated();
}

}  // namespace mv
