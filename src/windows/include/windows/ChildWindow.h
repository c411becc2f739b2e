// Base of every child window of the main frame.
//
// Life: constructing one loads it (it is in the WindowRegistry, hidden, at its default place); showChild() shows it;
// unload() ends it. A child window owns itself: create it with `new`, never delete it, end it with unload().
// The close box asks queryUnload(), like unload(). Needs a MainFrame.
#pragma once

#include <QWidget>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/Events.h"
#include "app/ReportError.h"
#include "desktop/Twips.h"
#include "windows/FirstSize.h"

namespace mv {

class ChildWindow : public QWidget {
  Q_OBJECT
 public:
  ~ChildWindow() override;

  QString caption() const { return windowTitle(); }
  void setCaption(const QString& caption);
  // The name under which the window's place is kept, and by which other windows find it: the caption, unless the
  // caption changes.
  virtual QString positionKey() const { return caption(); }
  // The caption, or the one that comes back when it only tells for a while how far something has got.
  virtual QString settledCaption() const { return caption(); }

  // Shows the window and brings it to the front.
  void showChild();
  void hideChild();
  bool isChildVisible() const;
  bool isMinimised() const;

  // Asks queryUnload(); when that allows it, calls unloading(), takes the window out of the registry, hides it and
  // deletes it as soon as its own code has returned. False when the window stays. A second call does nothing.
  bool unload();

  // Command words of other windows; an unknown word does nothing.
  virtual void buildWorkingLists(const std::string& command, long id = 0);
  // A list window rebuilds its list when it is activated next.
  bool RefreshPending = false;

  // The place of the window with its frame, in twips; of a minimised or maximised window the one it comes back to. A
  // place outside the frame's area is moved back until its title bar can be reached. A width or height that is one of
  // the window's own is shown as large as the contents need (FirstSize), and stays what it is until the user changes
  // it.
  TwipRect place() const;
  void setPlace(const TwipRect& place);
  // Back to the size of its own, where it stands.
  void returnToOwnSize();

  // Called by the frame window's close box.
  void closeRequested();

 protected:
  // `width` and `height` in twips, frame included: the size of its own. It opens as large, or larger where its contents
  // need it.
  ChildWindow(int width, int height);

  // Where a window opens that has been given no place: at the top left; where the title bars of the windows opened
  // before stay in reach; where it covers no other window, or least of them when there is no such place.
  enum class Opens { AtTopLeft, Cascaded, InFreeSpace };
  void setOpens(Opens where) { opens_ = where; }
  // Windows of its size that will want to stand below it: it opens where there is room for them, too.
  virtual int windowsToFollow() const { return 0; }
  // The window that it stands below if that place is free.
  virtual const ChildWindow* standsBelow() const { return nullptr; }
  // Other windows that open in free space keep clear of this one.
  virtual bool keepsItsPlace() const { return isChildVisible() && !isMinimised(); }
  // What the contents need, without the frame, when they are `width` wide at least; pixels.
  virtual QSize contentsSize(int width);
  // What a window is called by assistive programs while it has no caption.
  void setSpokenName(const QString& name);
  // Another height of its own from now on, in twips, taken at once.
  void setOwnHeight(int height);
  // A further size that is the program's, not the user's: what the shipped database has, in twips.
  void addOwnSize(int width, int height) { size_.addOwn({width, height}); }

  // While one stands on the stack the window is not deleted: a message box runs events, among them an unload of the
  // very window whose code shows it. Every entry that may show a box or unload the window holds one, most simply by
  // run().
  class Busy {
   public:
    explicit Busy(ChildWindow& window) : window_(window) { ++window_.busy_; }
    ~Busy() { window_.leaveBusy(); }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

   private:
    ChildWindow& window_;
  };
  // Runs a slot's work: guarded, with the window's class as source, and Busy. True when it succeeded.
  template <class Work>
  bool run(Work&& work) {
    const Busy busy(*this);
    return guarded(sourceName().c_str(), std::forward<Work>(work));
  }
  bool isUnloaded() const { return unloaded_; }
  // Runs `work` with the data of every event of the kind `which` from now on, as a slot, until the window is unloaded.
  template <class Event, class Work>
  void listenTo(Event which, Work work) {
    connect(&events(), which, this, [this, work](const auto&... values) {
      if (!unloaded_) run([&] { work(values...); });
    });
  }

  // May the window unload now? Called by unload() and the close box. A window that only hides does so here and answers
  // false.
  virtual bool queryUnload() { return true; }
  // Last call before the window goes.
  virtual void unloading() {}
  // False while code of the window is still running below us on the stack: deletion then waits for readyToDelete().
  virtual bool canDeleteNow() const { return true; }
  void readyToDelete();
  // The window became the active child: first shown, or chosen after another child was active. Not called when a dialog
  // closes or the user comes back from another program. Runs guarded.
  virtual void activated() {}

  // The stored place under positionKey(), when there is one. True when it was applied. Raises DatabaseError.
  bool restorePosition();
  // Stores the place, unless the window is minimised or the database has gone. Raises DatabaseError.
  void savePosition();
  void closeEvent(QCloseEvent* event) override;
  // Escape is the close box.
  void keyPressEvent(QKeyEvent* event) override;

 private:
  class Frame;

  std::string sourceName() const;
  void leaveBusy();
  void deleteWhenIdle();
  void becomeActive();
  // The size in pixels, frame included, that a size in twips is shown with.
  QSize shownSize(const QSize& twips);
  void openFirst();
  QPoint firstPoint(const QSize& size) const;
  std::vector<QRect> placesOfOthers() const;
  QPoint pointAmongOthers(const QSize& size) const;
  int titleBar() const;  // pixels
  QPoint cascadedPoint() const;
  QPoint within(const QPoint& place, const QSize& size) const;

  Frame* frame_;
  FirstSize size_;
  Opens opens_ = Opens::AtTopLeft;
  bool opened_ = false;                                     // has been shown
  bool placed_ = false;                                     // has been given a place
  std::optional<std::pair<QPoint, QPoint>> movedIntoView_;  // from, to
  int busy_ = 0;
  bool unloaded_ = false;
};

}  // namespace mv
