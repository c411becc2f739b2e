// Base of every child window of the main frame.
//
// Life: constructing one loads it (it is in the WindowRegistry, hidden, at its default place); showChild() shows it;
// unload() ends it. A child window owns itself: create it with `new`, never delete it, end it with unload().
// The close box asks queryUnload(), like unload().
#pragma once

#include <QPointer>
#include <QWidget>
#include <string>

#include "platform/Twips.h"

class QMdiSubWindow;

namespace mv {

class ChildWindow : public QWidget {
  Q_OBJECT
 public:
  ~ChildWindow() override;

  QString caption() const { return windowTitle(); }
  void setCaption(const QString& caption);
  // The name under which the window's place is kept, and by which other windows find it: the caption, unless the caption
  // changes.
  virtual QString positionKey() const { return caption(); }

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

  // The place of the window with its frame, in twips. A place outside the frame's area is moved back into view.
  TwipRect place() const;
  void setPlace(const TwipRect& place);

  // Called by the frame window's close box.
  void closeRequested();

 protected:
  // `width` and `height` in twips, frame included; placed at the top left.
  ChildWindow(int width, int height);

  // May the window unload now? Called by unload() and the close box. A window that only hides does so here and answers
  // false.
  virtual bool queryUnload() { return true; }
  // Last call before the window goes.
  virtual void unloading() {}
  // False while code of the window is still running below us on the stack: deletion then waits for readyToDelete().
  virtual bool canDeleteNow() const { return true; }
  void readyToDelete();
  // The window became the active child: first shown, or chosen after another child was active. Not called when a dialog
  // closes or the user comes back from another program.
  virtual void activated() {}

  // The stored place under positionKey(), when there is one. True when it was applied. Raises DatabaseError.
  bool restorePosition();
  // Stores the place, unless the window is minimised. Raises DatabaseError.
  void savePosition();
  void setFrameSize(int width, int height);  // twips, frame included

 private:
  friend class WindowRegistry;
  QPointer<QMdiSubWindow> frame_;
  bool unloaded_ = false;
};

}  // namespace mv
