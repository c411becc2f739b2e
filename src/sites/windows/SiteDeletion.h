// Deletes web sites one by one, in later events where they are many: when that lasts, the please-wait window counts,
// and can stop it between two of them. Meanwhile their list is drawn now and then only.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <deque>
#include <functional>

#include "store/Id.h"

namespace mv {

class frmPleaseWait;

class SiteDeletion : public QObject {
 public:
  // `deleteOne` deletes a site, and tells whether to go on with the next. `list` owns the SiteDeletion.
  SiteDeletion(QWidget& list, std::function<bool(Id)> deleteOne);
  ~SiteDeletion() override;

  // Behind those that are under way.
  void begin(const std::deque<Id>& sites);
  void stop();

 private:
  void deleteSome();
  void showProgress();

  QWidget& list_;
  std::function<bool(Id)> deleteOne_;
  std::deque<Id> left_;
  std::size_t asked_ = 0;
  QElapsedTimer lasting_;
  QElapsedTimer drawn_;
  QPointer<frmPleaseWait> wait_;
};

}  // namespace mv
