// The foot of the main window: on the left what would otherwise be silent, for a while; on the right what all sites
// have done since the program was started.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>
#include <cstdint>
#include <memory>

#include "windows/Totals.h"

namespace mv {

namespace Ui {
class StatusFoot;
}

class StatusFoot : public QWidget {
  Q_OBJECT
 public:
  explicit StatusFoot(QWidget* parent);
  ~StatusFoot() override;

  void say(const QString& line);

 private:
  void showTotals();
  // Bytes a second, of the last moments.
  double rate(std::int64_t bytes);

  std::unique_ptr<Ui::StatusFoot> ui_;
  QTimer refresh_;
  QTimer forget_;
  QElapsedTimer sinceRefresh_;
  std::int64_t bytesBefore_ = 0;
  double rate_ = 0;
};

// "2 sites run, 45 files wait, 378 saved (12.3 MB, 340 kB/s), 2 failed."
QString totalsText(const Totals& totals, double bytesPerSecond);

}  // namespace mv
