// Base of the scan and the download window: shows a Process, collapses and expands its details, hides instead of
// closing while the program goes on, and goes only when its process has come to rest.
#pragma once

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTreeView>

#include "process/Process.h"
#include "store/Id.h"
#include "windows/ChildWindow.h"
#include "windows/ElidedLabel.h"

class QGroupBox;
class QLineEdit;
class QVBoxLayout;

namespace mv {

inline constexpr int kProcessWidth = 4800;     // twips
inline constexpr int kCollapsedHeight = 1600;  // twips
inline constexpr int kExpandedHeight = 5175;   // twips

// A collapsed window has room for three lines below its title bar, and not a pixel more.
inline constexpr QMargins kTightMargins(4, 2, 4, 2);
inline constexpr int kTightSpacing = 2;

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
  // The always visible lines above the one with the progress bar and the details button.
  void addSummary(QWidget* line, QWidget* leftCounter, QWidget* rightCounter);
  // The work list. A click on a column header sorts it, ascending and descending by turns, one flag for all columns.
  QTreeView& linkView() { return *lvwLinks_; }
  // "Last Error Logged" with its four labels, object names as given.
  QGroupBox* makeErrorPanel(const QString& frame, const QString& subject, const QString& reason, const QString& time,
                            const QString& count, const std::string& subjectCaption = "File:");
  // A text of any length, to be read and copied only; showLine shows its start.
  static QLineEdit* makeReadOnlyLine(const QString& name, const QString& accessibleName, const std::string& text);
  static void showLine(QLineEdit& line, const std::string& text);

  // Before the process starts: keeps the site's id in the hidden `lblSiteId` and restores the stored place, expanded
  // when the stored height is kExpandedHeight, else collapsed.
  void prepareFor(Id siteId);
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
  void buildLinkView();
  void buildControls();
  void layOut();
  void wire();
  void setDetailsShown(bool shown);
  void sortLinks(int column);
  void showTakenRow();
  void showErrorPanel();

  Process& process_;
  bool collapsed_ = true;
  bool sortDescending_ = false;
  QPersistentModelIndex shownRow_;
  QLabel* lblSiteId_ = nullptr;
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
