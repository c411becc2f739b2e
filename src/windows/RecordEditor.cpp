#include "windows/RecordEditor.h"

#include <QLabel>
#include <QTabWidget>
#include <algorithm>

#include "store/Sequence.h"
#include "windows/WindowRegistry.h"

namespace mv {

RecordEditor::RecordEditor(const Description& description)
    : EditorWindow(description.width, description.height), description_(description) {}

// --- loading

void RecordEditor::initWindow() {
  if (firstControl_) firstControl_->setFocus();
  if (isNew())
    drawNumber();
  else
    loadRecord();
  showNumber();
}

void RecordEditor::drawNumber() {
  if (*description_.sequence) RecordId = nextSequenceValue(description_.sequence);
}

void RecordEditor::showNumber() {
  if (!idLabel_ || RecordId == 0) return;
  idLabel_->setText(QString::number(RecordId));
  idLabel_->setAccessibleName("Identifier " + idLabel_->text());
}

// --- OK, Apply, Cancel

void RecordEditor::apply() {
  if (isComplete(Choice::Apply)) save();
}

bool RecordEditor::isComplete(Choice choice) {
  const Checks all = checks(choice);
  const auto failed = std::find_if(all.begin(), all.end(), [](const Check& check) { return check.failed; });
  if (failed == all.end()) return true;
  showMessage(this, failed->title ? QString(failed->title) : applicationTitle(), failed->text, failed->icon);
  if (failed->box && !isUnloaded()) bringTo(failed->box);
  return false;
}

void RecordEditor::bringTo(QWidget* box) {
  for (QWidget* page = box; page != this; page = page->parentWidget())
    // The pages of a tab control stand in a stack of its own.
    if (auto* tabs = qobject_cast<QTabWidget*>(page->parentWidget()->parentWidget()); tabs && tabs->indexOf(page) >= 0)
      tabs->setCurrentWidget(page);
  box->setFocus();
}

bool RecordEditor::save() {
  const bool stored = isNew() ? saveNew() : updateRecord();
  if (stored)
    recordChanged();
  else if (!isNew())
    sayGone();
  return stored;
}

bool RecordEditor::saveNew() {
  if (!description_.numberedByDatabase) {
    if (RecordId == 0) drawNumber();
    if (RecordId == 0) return false;
    showNumber();
  }
  insertRecord();
  if (description_.numberedByDatabase) return true;
  // From here on the row is there: should a later step fail, the next attempt updates it and Cancel takes it back.
  Mode = EditorMode::Edit;
  isCreator_ = true;
  return true;
}

void RecordEditor::sayGone() {
  showMessage(this, applicationTitle(),
              QString("This %1 has been deleted meanwhile. It was not saved.").arg(description_.record),
              MessageIcon::Exclamation);
}

void RecordEditor::cancel() {
  if (!isCreator_) return;
  deleteRecord();
  recordChanged();
}

void RecordEditor::recordChanged() {
  WindowRegistry& windows = WindowRegistry::instance();
  if (description_.rebuildsManager)
    windows.tell(description_.manager, "init");
  else
    windows.markRefreshPending(description_.manager);
}

}  // namespace mv
