#include "catalog_windows/frmFilterManager.h"

#include "app/Settings.h"
#include "base/Text.h"
#include "catalog_windows/frmNewFilter.h"
#include "desktop/Dialogs.h"

namespace mv {

namespace {

constexpr int kWidth = 5500;   // twips
constexpr int kHeight = 3600;  // twips

enum Column { kName, kDescription, kGlobal, kId };

}  // namespace

frmFilterManager::frmFilterManager() : ListWindow("Filter Manager", kWidth, kHeight) {
  setObjectName("frmFilterManager");
  list().setObjectName("lvwFilters");
  list().setColumns({{"Filter", 140}, {"Description", 150}, {"Global", 60}, {"Id", 0, true}});
  list().setMultiSelect(true);
  setIdColumn(kId);
  setKeepChosen(false);
  addRecordButtons("filter");
  list().setDragText([this] { return dragText(); });
  connect(&list(), &ListView::dragStarted, this, &frmFilterManager::dragBegins);
  connect(&list(), &ListView::dragEnded, this, &frmFilterManager::dragEnds);
  load();
}

void frmFilterManager::fillList() {
  for (Recordset rows = gDatabase.query("select id, name, description, global from filter order by id");
       !rows.endOfRows(); rows.moveNext())
    list().addRow({toQString(rows.text("name")), toQString(rows.text("description")), toQString(rows.text("global")),
                   toQString(rows.text("id"))});
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

void frmFilterManager::openNew() {
  auto* editor = new frmNewFilter;
  editor->Mode = "new";
  editor->open();
}

void frmFilterManager::editChosen() {
  if (chosenRow() < 0) return;
  auto* editor = new frmNewFilter;
  editor->Mode = "edit";
  editor->FilterId = chosenId();
  editor->FilterName = chosenText();
  editor->setCaption("Edit: " + chosenText());
  editor->open();
}

void frmFilterManager::deleteChosen() {
  if (chosenRow() < 0) {
    showMessage(this, "No Filter Selected", "Please select a filter to delete. ", MessageIcon::Information);
    return;
  }
  const Literal id = number(chosenId());
  gDatabase.execute("delete from filter where id = " + id);
  gDatabase.execute("delete from site_filter_xref where filter_id = " + id);
  gDatabase.execute("delete from filter_rule_xref where filter_id = " + id);
  buildWorkingLists("init");
}

}  // namespace mv
