#include "shell/PictureFolder.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QImageReader>
#include <algorithm>
#include <utility>

namespace mv {

namespace {

constexpr int kSliceMs = 8;

QDateTime lastChange(const QString& folder) { return QFileInfo(folder).lastModified(); }

}  // namespace

bool NameOrder::operator()(const QString& left, const QString& right) const {
  const int order = QString::compare(left, right, Qt::CaseInsensitive);
  return order == 0 ? left < right : order < 0;
}

const QStringList& PictureFolder::suffixes() {
  static const QStringList all = [] {
    QStringList found;
    for (const QByteArray& format : QImageReader::supportedImageFormats()) found << QString::fromLatin1(format);
    return found;
  }();
  return all;
}

bool PictureFolder::isPicture(const QString& path) {
  return suffixes().contains(path.mid(path.lastIndexOf('.') + 1), Qt::CaseInsensitive);
}

void PictureFolder::list(const QString& folder) {
  const bool scheduled = isReading();
  folder_ = folder;
  changed_ = lastChange(folder);
  found_.clear();
  sorted_.clear();
  reading_ = std::make_unique<QDirIterator>(folder, QDir::Files | QDir::Hidden);
  if (!scheduled) QMetaObject::invokeMethod(this, &PictureFolder::readSome, Qt::QueuedConnection);
}

void PictureFolder::takeName(const QString& path) {
  if (isPicture(path)) found_.insert(reading_->fileName());
}

void PictureFolder::readSome() {
  QElapsedTimer clock;
  clock.start();
  while (reading_->hasNext() || !found_.empty()) {
    if (clock.hasExpired(kSliceMs)) {
      QMetaObject::invokeMethod(this, &PictureFolder::readSome, Qt::QueuedConnection);
      return;
    }
    if (reading_->hasNext())
      takeName(reading_->next());
    else
      sorted_.push_back(std::move(found_.extract(found_.begin()).value()));
  }
  names_ = std::exchange(sorted_, {});
  reading_.reset();
  Q_EMIT listed();
}

bool PictureFolder::isCurrent(const QString& folder) const {
  return !reading_ && folder == folder_ && lastChange(folder) == changed_;
}

int PictureFolder::indexOf(const QString& name) const {
  const auto place = std::lower_bound(names_.begin(), names_.end(), name, NameOrder());
  return place != names_.end() && *place == name ? static_cast<int>(place - names_.begin()) : -1;
}

QString PictureFolder::neighbour(const QString& name, int step) const {
  if (step < 0) {
    const auto place = std::lower_bound(names_.begin(), names_.end(), name, NameOrder());
    return place == names_.begin() ? QString() : *std::prev(place);
  }
  const auto place = std::upper_bound(names_.begin(), names_.end(), name, NameOrder());
  return place == names_.end() ? QString() : *place;
}

}  // namespace mv
