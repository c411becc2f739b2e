// The picture viewer: shows a picture file, steps through the pictures of its folder, follows the files that downloads
// save, and deletes the shown file after a question. Left and Right step, Delete deletes, Escape closes.
#pragma once

#include <QString>
#include <memory>

#include "shell/PictureFolder.h"
#include "windows/ChildWindow.h"

namespace mv {

namespace Ui {
class frmPictureViewer;
}

class frmPictureViewer : public ChildWindow {
  Q_OBJECT
 public:
  // `lastSaved`: full path of the file that a download saved last, which is shown first; "" when there is none.
  explicit frmPictureViewer(const QString& lastSaved = {});
  ~frmPictureViewer() override;

  // Shows a file, a damaged or missing one as a short text; "" shows none.
  void showPicture(const QString& path);

 protected:
  void activated() override;
  void unloading() override;

 private:
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

  std::unique_ptr<Ui::frmPictureViewer> ui_;
  QString path_;          // full path of the shown file; "" when none
  QString lastSaved_;     // that of the file saved last
  int stepWanted_ = 0;    // a step that waits for the folder
  bool replace_ = false;  // the shown file has been deleted: a neighbour on either side will do
  PictureFolder pictures_;
};

}  // namespace mv
