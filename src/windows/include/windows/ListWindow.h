// Base of the list windows: a toolbar of text buttons, below it one list over the rest of the window, the
// row last chosen, rebuilding on activation, the remembered place.
//
// A subclass sets its columns and buttons in its constructor, then calls load(). It implements readRows(), and what its
// buttons do. Delete, Enter, F2 and double click work in every list, Ctrl+A where several rows can be selected.
#pragma once

#include <QIcon>
#include <QString>
#include <functional>
#include <vector>

#include "desktop/ListView.h"
#include "windows/ChildWindow.h"

class QToolBar;
class QToolButton;

namespace mv {

class ListWindow : public ChildWindow {
  Q_OBJECT
 public:
  // "init" rebuilds the list; other words do nothing here.
  void buildWorkingLists(const std::string& command, long id = 0) override;

 protected:
  ListWindow(const QString& caption, int width, int height);

  ListView& list() { return *list_; }
  const ListView& list() const { return *list_; }
  // Adds a toolbar button; `work` runs guarded. The accessible name and object name are the trimmed caption.
  QToolButton* addButton(const QString& caption, const QString& toolTip, const QIcon& icon, std::function<void()> work);

  // Restores the place and fills the list: the end of every subclass's constructor.
  void load();
  // The texts of the rows, in the order of the list's columns. Raises DatabaseError; the list then stays as it is.
  virtual std::vector<QStringList> readRows() = 0;
  // Opens the chosen row; double click, Enter and F2 come here. Runs guarded.
  virtual void editChosen() {}
  // Runs guarded.
  virtual void deleteChosen() {}
  // The Delete key comes here. Runs guarded.
  virtual void deleteByKey() { deleteChosen(); }

  // Whether a rebuild ends with the rows in the order of the list's sort column and direction (the default), or in the
  // order in which readRows() has them; a click on a header then sorts what is there.
  void setKeepSorted(bool on) { list_->setSorting(on); }
  // Whether a rebuild marks the row last chosen again (the default). Otherwise nothing is marked and nothing is chosen:
  // Delete must not act on a row that is not marked.
  void setKeepChosen(bool on) { keepChosen_ = on; }
  // The identifier column, -1 when there is none: remembers the id of the row last chosen.
  void setIdColumn(int column) { idColumn_ = column; }
  // Id and text of the row last chosen; 0 and "" when none, or when it is gone after a rebuild.
  long chosenId() const { return chosenId_; }
  QString chosenText() const { return chosenText_; }
  // The list row of chosenId(), -1 when there is none, or when the user has unmarked it.
  int chosenRow() const;
  void forgetChosen();

  void activated() override;
  void unloading() override;

 private:
  void rebuild();
  void choose(int row);
  int rememberedRow() const;
  void showNewRow(const std::vector<QString>& before);
  QString rowKey(int row) const;
  std::vector<QString> rowKeys() const;

  QToolBar* toolbar_;
  ListView* list_;
  bool keepChosen_ = true;
  int idColumn_ = -1;
  long chosenId_ = 0;
  QString chosenText_;
};

}  // namespace mv
