#include "catalog/clsFileType.h"

#include "app/Settings.h"
#include "store/FileTypeStore.h"

namespace mv {

namespace {

FileType recordOf(const clsFileType& type, std::int64_t id) {
  return {id, type.Extension, type.Description, isYes(type.CanDelete), isYes(type.DownloadByDefault)};
}

}  // namespace

void clsFileType::Add() const { insertFileType(recordOf(*this, 0)); }

bool clsFileType::Update(std::int64_t id) const { return updateFileType(recordOf(*this, id)); }

}  // namespace mv
