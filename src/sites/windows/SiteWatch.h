// Watches a running site until nothing of it is left to fetch, and says so once, on the desktop.
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

namespace mv {

class frmDownload;
class frmScan;

class SiteWatch : public QObject {
 public:
  // A pair of windows is watched once. The watch ends with the download window.
  static void begin(frmScan& scan, frmDownload& download);

 private:
  SiteWatch(frmScan& scan, frmDownload& download);
  void look();
  void speak();

  QPointer<frmScan> scan_;
  frmDownload& download_;
  QTimer timer_;
  int quietLooks_ = 0;
};

}  // namespace mv
