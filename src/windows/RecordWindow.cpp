#include "windows/RecordWindow.h"

#include <QAction>
#include <QToolButton>
#include <utility>

#include "desktop/Dialogs.h"
#include "desktop/ListColumns.h"
#include "windows/RecordEditor.h"
#include "windows/ToolIcons.h"

namespace mv {

namespace {

QString lowerCase(const char* kind) { return QString::fromLatin1(kind).toLower(); }

}  // namespace

RecordWindow::RecordWindow(Description description)
    : ListWindow(QString("%1 Manager").arg(description.kind), description.width, description.height),
      description_(std::move(description)) {
  setObjectName(description_.windowName);
  list().setObjectName(description_.listName);
  list().setAccessibleName(QString("%1s").arg(description_.kind));
  list().setColumns(description_.columns);
  setIdColumn(static_cast<int>(description_.columns.size()) - 1);
  setKeepSorted(description_.sorted);
  setKeepChosen(description_.keepsChosen);
  if (description_.opensInFreeSpace) setOpens(Opens::InFreeSpace);
  setEmptyText(list(), QString("Press New to describe a first %1.").arg(lowerCase(description_.kind)));
  addButtons();
}

void RecordWindow::addButtons() {
  const auto add = [this](const char* caption, const char* toolTip, const char* icon, auto work) {
    const QString tip = QString(toolTip).arg(lowerCase(description_.kind));
    QToolButton* button = addButton(caption, description_.toolTips ? tip : QString(), toolIcon(icon), work);
    // Without a tool tip the button would be read with its caption twice.
    button->setAccessibleDescription(tip);
    return button;
  };
  add("      New      ", "Create a new %1", "new", [this] { openNew(); });
  edit_ = add("Edit", "Edit the selected %1", "edit", [this] { editChosen(); });
  delete_ = add("Delete", "Delete the selected %1", "delete", [this] { deleteChosen(); });
}

void RecordWindow::setChangeEnabled(bool enabled) {
  for (const QToolButton* button : {edit_, delete_}) button->defaultAction()->setEnabled(enabled);
}

void RecordWindow::openNew() {
  RecordEditor* editor = makeEditor(-1);
  editor->Mode = EditorMode::New;
  editor->open();
}

void RecordWindow::editChosen() {
  const int row = chosenRow();
  if (row < 0) return;
  RecordEditor* editor = makeEditor(row);
  editor->Mode = EditorMode::Edit;
  editor->RecordId = chosenId();
  editor->setCaption(description_.editCaption + chosenText());
  editor->open();
}

void RecordWindow::deleteChosen() {
  const int row = chosenRow();
  if (row < 0) {
    showMessage(this, QString("No %1 Selected").arg(description_.kind),
                QString("Please select a %1 to delete. ").arg(lowerCase(description_.kind)), MessageIcon::Information);
    return;
  }
  if (!mayDelete(row)) return;
  description_.remove(chosenId());
  forgetChosen();
  buildWorkingLists("init");
}

}  // namespace mv
