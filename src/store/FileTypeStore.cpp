#include "store/FileTypeStore.h"

#include "ReadAll.h"
#include "app/Settings.h"

namespace mv {

std::vector<FileType> listFileTypesByName() {
  return readAll(
      gDatabase.query(
          "select id, name, description, can_delete, download_by_default from valid_filetypes order by name"),
      [](const Recordset& rows) {
        return FileType{rows.number("id"), rows.text("name"), rows.text("description"),
                        unlessNo(rows.text("can_delete")), unlessNo(rows.text("download_by_default"))};
      });
}

std::vector<Id> fileTypesNamed(const std::string& extension) {
  return readAll(gDatabase.query("select id from valid_filetypes where name = " + quoted(extension)),
                 [](const Recordset& rows) { return rows.number("id"); });
}

void insertFileType(const FileType& fileType) {
  gDatabase.execute("insert into valid_filetypes (name, description, can_delete, download_by_default) values(" +
                    quoted(fileType.extension) + ", " + quoted(fileType.description) + ", " +
                    quoted(yesNo(fileType.canDelete)) + ", " + quoted(yesNo(fileType.downloadByDefault)) + ")");
}

bool updateFileType(const FileType& fileType) {
  gDatabase.execute(
      "update valid_filetypes set name = " + quoted(fileType.extension) +
      ", description = " + quoted(fileType.description) + ", can_delete = " + quoted(yesNo(fileType.canDelete)) +
      ", download_by_default = " + quoted(yesNo(fileType.downloadByDefault)) + " where id = " + number(fileType.id));
  return gDatabase.rowsAffected() > 0;
}

void deleteFileType(Id id) {
  gDatabase.execute("delete from valid_filetypes where id = " + number(id));
  gDatabase.execute("delete from site_filetype_xref where file_type_id = " + number(id));
  gDatabase.execute("delete from site_paths where filetype_id = " + number(id));
}

}  // namespace mv
