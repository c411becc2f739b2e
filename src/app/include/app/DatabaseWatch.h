// Notices within seconds that the database file was moved, deleted or replaced while gDatabase has it open: whatever is
// stored from then on would be lost.
#pragma once

#include <QObject>
#include <QTimer>

namespace mv {

class DatabaseWatch : public QObject {
  Q_OBJECT
 public:
  DatabaseWatch();

 Q_SIGNALS:
  // Once. gDatabase is still open, on the file that is no longer in its place.
  void lost();

 private:
  void look();

  QTimer timer_;
  int missed_ = 0;  // looks in a row that did not find the file
};

}  // namespace mv
