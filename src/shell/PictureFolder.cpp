#include "shell/PictureFolder.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QImageReader>
#include <algorithm>
#include <utility>

namespace mv {

namespace {

QDateTime lastChange(const QString& folder) { return QFileInfo(folder).lastModified(); }

std::vector<QString> pictureNames(const QString& folder) {
  std::vector<QString> names;
  QDirIterator files(folder, QDir::Files | QDir::Hidden);
  while (files.hasNext())
    if (PictureFolder::isPicture(files.next())) names.push_back(files.fileName());
  std::sort(names.begin(), names.end(), NameOrder());
  return names;
}

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
  folder_ = folder;
  changed_ = lastChange(folder);
  reading_ = true;
  work_.start([folder] { return pictureNames(folder); },
              [this](std::vector<QString> names) {
                names_ = std::move(names);
                reading_ = false;
                Q_EMIT listed();
              });
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
