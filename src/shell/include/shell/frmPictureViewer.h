// The picture viewer: shows a picture file, steps through the pictures of its folder, follows the files that downloads
// save, and deletes the shown file after a question. Left and Right step, Delete deletes, Escape closes.
#pragma once

#include <QString>

#include "shell/PictureFolder.h"
#include "windows/ChildWindow.h"

class QCheckBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace mv {

class PictureDisplay;

class frmPictureViewer : public ChildWindow {
  Q_OBJECT
 public:
  // `lastSaved`: full path of the file that a download saved last, which is shown first; "" when there is none.
  explicit frmPictureViewer(const QString& lastSaved = {});

  // Shows a file, a damaged or missing one as a short text; "" shows none.
  void showPicture(const QString& path);

 protected:
  void activated() override;
  void unloading() override;

 private:
  void buildControls();
  QHBoxLayout* makeButtons();
  void wire();

  void chooseFile();
  // One picture on (1) or back (-1); when the folder has changed, as soon as it has been read again.
  void step(int direction);
  void takeStep();
  void deleteShown();
  // While "Follow" is ticked, shows the file saved last when it is a picture.
  void followLastSaved();
  void folderListed();
  void updateControls();
  QString positionText() const;
  QString folder() const;
  QString name() const;

  QString path_;          // full path of the shown file; "" when none
  QString lastSaved_;     // that of the file saved last
  int stepWanted_ = 0;    // a step that waits for the folder
  bool replace_ = false;  // the shown file has been deleted: a neighbour on either side will do
  PictureFolder pictures_;
  PictureDisplay* display_ = nullptr;
  QLineEdit* txtPicture_ = nullptr;
  QLabel* lblPosition_ = nullptr;
  QPushButton* cmdOpen_ = nullptr;
  QPushButton* cmdPrevious_ = nullptr;
  QPushButton* cmdNext_ = nullptr;
  QPushButton* cmdDelete_ = nullptr;
  QCheckBox* chkFollow_ = nullptr;
};

}  // namespace mv
