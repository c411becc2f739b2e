// What every list in report view does, whatever it shows: how wide its columns are together, widths that last, tool
// tips for what does not fit, a text where there is no row.
#pragma once

#include <QString>

class QTreeView;

namespace mv {

// Pixels that a text of so many characters takes in the list's font, margins included; more where the title of the
// column, with an arrow beside it, needs more.
int columnWidth(const QTreeView& list, int column, int characters);
// From now on `column` is at least as wide as it is now, and takes the room that the others leave.
void giveRoom(QTreeView& list, int column);
// The width in pixels at which no column of `list` is scrolled, with its frame and a scroll bar for the rows; without
// the room that a column has been given beyond what it needs.
int columnsWidth(const QTreeView& list);

// From now on a cell whose text is cut shows it in a tool tip.
void tellCutCells(QTreeView& list);

// What stands in the middle of a list without rows from now on.
void setEmptyText(QTreeView& list, const QString& text);

// Gives `list` the widths that the user gave it last under that name, and keeps those that the user gives it from now
// on, in the user's settings.
void keepColumnWidths(QTreeView& list, const QString& name);

}  // namespace mv
