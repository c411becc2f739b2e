// The picture files of one folder, in the order of their names. A folder is read off the user-interface thread; until
// it has been read the list of the folder before is the one that counts.
#pragma once

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QStringList>
#include <vector>

#include "base/BackgroundWork.h"

namespace mv {

// Without regard to case first.
struct NameOrder {
  bool operator()(const QString& left, const QString& right) const;
};

class PictureFolder : public QObject {
  Q_OBJECT
 public:
  // The endings of the files that can be shown, lower case, without the period.
  static const QStringList& suffixes();
  static bool isPicture(const QString& path);

  // Reads `folder`; listed() says when it is done. Reading that is under way is dropped.
  void list(const QString& folder);
  // The list is that of `folder` as it is now: nothing was added or removed since.
  bool isCurrent(const QString& folder) const;
  // The folder that was asked for last.
  const QString& folder() const { return folder_; }
  bool isReading() const { return reading_; }

  int count() const { return static_cast<int>(names_.size()); }
  // Place of a name in the list, from 0; -1 when it is not there.
  int indexOf(const QString& name) const;
  // The first name after `name`, or with `step` below 0 the last one before it, whether `name` itself is there or not;
  // "" when there is none.
  QString neighbour(const QString& name, int step) const;

 Q_SIGNALS:
  void listed();

 private:
  QString folder_;
  QDateTime changed_;  // when the folder was changed last, as it was read
  std::vector<QString> names_;
  bool reading_ = false;
  BackgroundWork work_;
};

}  // namespace mv
