// Base of the scan and the download window: shows a Process, collapses and expands its details, hides instead of
// closing while the program goes on, and goes only when its process has come to rest.
#pragma once

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTreeView>

#include "app/ChildWindow.h"
#include "process/ElidedLabel.h"
#include "process/Process.h"

class QGroupBox;
class QVBoxLayout;

namespace mv {

inline constexpr int kProcessWidth = 4800;     // twips
inline constexpr int kCollapsedHeight = 1600;  // twips
inline constexpr int kExpandedHeight = 5175;   // twips

class ProcessWindow : public ChildWindow {
  Q_OBJECT
 public:
  // Collapsed: only the upper lines; expanded: the details too.
  bool DetailsCollapsed() const { return collapsed_; }
  void toggleDetails();

 protected:
  // `process` is not owned here: the subclass makes it before this constructor runs and drops it in its own destructor.
  explicit ProcessWindow(Process& process);

  // The area below the always visible lines, shown when expanded; it has a vertical layout.
  QWidget& details() { return *details_; }
  // The always visible lines: those that subclasses add here, then one with the progress bar and the details button.
  QVBoxLayout& summary() { return *summary_; }
  QProgressBar& progressBar() { return *pbarSave_; }
  // The work list. A click on a column header sorts it, ascending and descending by turns, one flag for all columns.
  QTreeView& linkView() { return *lvwLinks_; }
  // "Last Error Logged" with its four labels, object names as given.
  QGroupBox* makeErrorPanel(const QString& frame, const QString& subject, const QString& reason, const QString& time,
                            const QString& count, const std::string& subjectCaption = "File:");

  // Expands or collapses.
  void setDetailsShown(bool shown);
  // Restores the stored place; expanded when the stored height is kExpandedHeight, else collapsed.
  void restoreProcessPosition();
  // Copies the process's texts into the controls; subclasses call this first.
  virtual void refresh();

  bool queryUnload() override;
  void unloading() override;
  bool canDeleteNow() const override;
  void activated() override;

 private:
  void buildLinkView();
  void buildSummary();
  void buildDetails();
  void wire();
  void sortLinks(int column);
  void showRow(int row);
  void showErrorPanel();

  Process& process_;
  bool collapsed_ = true;
  bool sortDescending_ = false;
  QVBoxLayout* summary_ = nullptr;
  QWidget* details_ = nullptr;
  QProgressBar* pbarSave_ = nullptr;
  QPushButton* btnDetails_ = nullptr;
  QTreeView* lvwLinks_ = nullptr;
  ElidedLabel* errorSubject_ = nullptr;
  ElidedLabel* errorReason_ = nullptr;
  ElidedLabel* errorTime_ = nullptr;
  ElidedLabel* errorCount_ = nullptr;
};

}  // namespace mv
