// Base of the scan and the download window: shows a Process, collapses and expands its details, hides instead of closing
// while the program goes on, and goes only when its process has come to rest.
#pragma once

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTreeView>

#include "app/ChildWindow.h"
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
  // `process` is not owned here but must live as long as the window: a member of the subclass.
  explicit ProcessWindow(Process& process);

  // The area below the always visible lines, shown when expanded.
  QWidget& details() { return *details_; }
  QVBoxLayout& summary() { return *summary_; }  // the always visible lines
  QProgressBar& progressBar() { return *pbarSave_; }
  QTreeView& linkView() { return *lvwLinks_; }
  // "Last Error Logged" with its four labels, object names as given.
  QGroupBox* makeErrorPanel(const QString& frame, const QString& subject, const QString& reason, const QString& time,
                            const QString& count);

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
  Process& process_;
  bool collapsed_ = true;
  QVBoxLayout* summary_;
  QWidget* details_;
  QProgressBar* pbarSave_;
  QPushButton* btnDetails_;
  QTreeView* lvwLinks_;
  QLabel* errorSubject_ = nullptr;
  QLabel* errorReason_ = nullptr;
  QLabel* errorTime_ = nullptr;
  QLabel* errorCount_ = nullptr;
};

}  // namespace mv
