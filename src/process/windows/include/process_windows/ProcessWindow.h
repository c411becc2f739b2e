// Base of the scan and the download window: shows a Process, collapses and expands its details, hides instead of
// closing while the program goes on, and goes only when its process has come to rest.
#pragma once

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QTreeView>

#include "process/Process.h"
#include "store/Id.h"
#include "windows/ChildWindow.h"
#include "windows/CommandMenu.h"
#include "windows/ElidedLabel.h"
#include "windows/Totals.h"

class QLineEdit;

namespace mv {

inline constexpr int kProcessWidth = 4800;     // twips
inline constexpr int kCollapsedHeight = 1600;  // twips
inline constexpr int kExpandedHeight = 5175;   // twips

class ProcessWindow : public ChildWindow, public Counted {
  Q_OBJECT
 public:
  // Collapsed: only the upper lines; expanded: the details too.
  bool DetailsCollapsed() const { return collapsed_; }
  void toggleDetails();

 protected:
  // `process` is not owned here: the subclass makes it before this constructor runs and drops it in its own destructor.
  explicit ProcessWindow(Process& process);

  // What the subclass's form has of a process window.
  struct Controls {
    QLabel* siteId;  // never shown
    QProgressBar* progress;
    QPushButton* detailsButton;
    QWidget* details;  // below the lines that are always there; shown when expanded
    QTreeView* links;  // the work list
    ElidedLabel* state;
    ElidedLabel* errorSubject;  // "Last Error Logged"
    ElidedLabel* errorReason;
    ElidedLabel* errorTime;
    ElidedLabel* errorCount;
  };
  // Makes them work, in the subclass's constructor. A click on a column header sorts the work list, ascending and
  // descending by turns, one flag for all columns.
  void connectControls(const Controls& controls);
  // Of a text of any length, to be read and copied only, its start.
  static void showLine(QLineEdit& line, const std::string& text);

  // Before the process starts: keeps the site's id in the hidden `lblSiteId` and restores the stored place, expanded
  // when the stored height is kExpandedHeight, else collapsed.
  void prepareFor(Id siteId);
  // The line in the foot: what came of the process, and what it waits for.
  virtual std::string stateText() const = 0;
  // What is offered for a row of the work list.
  virtual Commands commandsOf(int row);
  // What is offered beside the rows: the list holds those of this round only.
  virtual Commands commandsOfList() { return {}; }
  // A double click on a row, or Enter.
  virtual void openRow(int) {}
  // Brings the controls up to the process's state; subclasses call this first.
  virtual void refresh();

  // Hidden, too: the user brings it back where it was.
  bool keepsItsPlace() const override { return !isMinimised(); }
  bool queryUnload() override;
  void unloading() override;
  bool canDeleteNow() const override;
  void activated() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void setUpLinks();
  void wire();
  void setDetailsShown(bool shown);
  void sortLinks(int column);
  void showTakenRow();
  void showErrorPanel();
  void markErrors();

  Process& process_;
  bool collapsed_ = true;
  bool sortDescending_ = false;
  long errorsSeen_ = 0;  // when the details were open last
  QPersistentModelIndex shownRow_;
  QTimer handsOff_;  // runs while the user is at the list
  Controls controls_{};
};

}  // namespace mv
