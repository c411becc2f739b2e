#include "catalog_windows/frmFilterManager.h"

#include "app/Settings.h"
#include "base/Text.h"
#include "catalog_windows/frmNewFilter.h"
#include "store/FilterStore.h"
#include "windows/ListHelpers.h"

namespace mv {

namespace {

enum Column { kName, kDescription, kGlobal, kId };

QStringList textsOf(const Filter& filter) {
  return {toQString(filter.name), toQString(filter.description), toQString(yesNo(filter.global)),
          QString::number(filter.id)};
}

}  // namespace

frmFilterManager::frmFilterManager()
    : RecordWindow({.kind = "Filter",
                    .width = 5500,
                    .height = 3600,
                    .windowName = "frmFilterManager",
                    .listName = "lvwFilters",
                    .columns = {{"Filter", 18}, {"Description", 22}, {"Global", 4}, {"Id", 0, true}},
                    .opensInFreeSpace = true,
                    .editCaption = "Edit: ",
                    .readRows = [] { return rowsOf(listFilters(), textsOf); },
                    .remove = deleteFilter}) {
  list().setMultiSelect(true);
  list().setDragText([this] { return dragText(); });
  connect(&list(), &ListView::dragStarted, this, &frmFilterManager::dragBegins);
  connect(&list(), &ListView::dragEnded, this, &frmFilterManager::dragEnds);
  load();
}

RecordEditor* frmFilterManager::makeEditor(int row) {
  auto* editor = new frmNewFilter;
  editor->FilterName = list().cell(row, kName);
  return editor;
}

// The identifiers of the selected filters, each ended by CR LF.
QString frmFilterManager::dragText() {
  QString text;
  for (const int row : list().selectedRows()) text += list().cell(row, kId) + "\r\n";
  return text;
}

void frmFilterManager::dragBegins() {
  gDragKind = kDropFilter;
  dragging_.emplace(*this);
}

void frmFilterManager::dragEnds() {
  // Dropped elsewhere or given up, nothing else clears it.
  gDragKind.clear();
  dragging_.reset();
}

}  // namespace mv
