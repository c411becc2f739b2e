#include "catalog/clsFileType.h"

#include "app/Settings.h"

namespace mv {

void clsFileType::Add() const {
  gDatabase.execute("insert into valid_filetypes (name, description, can_delete, download_by_default) values(" +
                    quoted(Extension) + ", " + quoted(Description) + ", " + quoted(CanDelete) + ", " +
                    quoted(DownloadByDefault) + ")");
}

bool clsFileType::Update(std::int64_t id) const {
  gDatabase.execute("update valid_filetypes set name = " + quoted(Extension) +
                    ", description = " + quoted(Description) + ", can_delete = " + quoted(CanDelete) +
                    ", download_by_default = " + quoted(DownloadByDefault) + " where id = " + number(id));
  return gDatabase.rowsAffected() > 0;
}

}  // namespace mv
