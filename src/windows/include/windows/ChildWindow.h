// Base of every child window of the main frame.
//
// Life: constructing one loads it (it is in the WindowRegistry, hidden, at its default place); showChild() shows it;
// unload() ends it. A child window owns itself: create it with `new`, never delete it, end it with unload().
// The close box asks queryUnload(), like unload(). Needs a MainFrame.
#pragma once

#include <QWidget>
#include <string>
#include <utility>

#include "app/Events.h"
#include "app/ReportError.h"
#include "desktop/Twips.h"

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
  // place outside the frame's area is moved back until its title bar can be reached.
  TwipRect place() const;
  void setPlace(const TwipRect& place);

  // Called by the frame window's close box.
  void closeRequested();

 protected:
  // `width` and `height` in twips, frame included; placed at the top left.
  ChildWindow(int width, int height);

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
  void setFrameSize(int width, int height);  // twips, frame included
  // Moves the window from the top left to a place where the title bars of the windows opened before stay in reach.
  void placeCascaded();

  void closeEvent(QCloseEvent* event) override;
  // Escape is the close box.
  void keyPressEvent(QKeyEvent* event) override;

 private:
  class Frame;

  std::string sourceName() const;
  void leaveBusy();
  void deleteWhenIdle();
  void becomeActive();

  Frame* frame_;
  int busy_ = 0;
  bool unloaded_ = false;
};

}  // namespace mv
