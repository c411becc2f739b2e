// What other windows need of the main window. Implemented by frmDownloadManager; a test has a frame of its own.
#pragma once

#include <QString>

class QMdiArea;
class QWidget;

namespace mv {

class MainFrame {
 public:
  // The area that child windows live in.
  virtual QMdiArea& mdiArea() = 0;
  // The main window itself, owner of message boxes.
  virtual QWidget* window() = 0;
  // Cut, Copy and Paste of the Edit menu, together.
  virtual void setClipboardItemsEnabled(bool enabled) = 0;
  virtual void setDeleteWebSiteEnabled(bool enabled) = 0;
  // The picture and label that say what an online check is doing.
  virtual void hideStatusIndicators() = 0;
  // A line in the foot of the main window, for a while: what would otherwise be silent.
  virtual void say(const QString& line) = 0;

  // The one main window; nullptr before it exists.
  static MainFrame* current();

 protected:
  MainFrame();
  virtual ~MainFrame();
};

// The one main window says it; nothing happens before there is one.
void sayInFoot(const QString& line);

}  // namespace mv
