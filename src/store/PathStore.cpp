#include "store/PathStore.h"

#include "ReadAll.h"
#include "app/Settings.h"

namespace mv {

std::optional<std::string> findSitePath(Id siteId, Id fileTypeId) {
  return readFirst(gDatabase.query("select path from site_paths where filetype_id = " + number(fileTypeId) +
                                   " and site_id = " + number(siteId)),
                   [](const Recordset& rows) { return rows.text("path"); });
}

std::set<std::string> allSitePaths() {
  std::set<std::string> folders;
  for (Recordset rows = gDatabase.query("select download_path as path from site union select path from site_paths");
       !rows.endOfRows(); rows.moveNext())
    folders.insert(rows.text("path"));
  folders.erase("");
  return folders;
}

bool saveSitePath(Id siteId, Id fileTypeId, const std::string& folder) {
  const bool bothAreThere =
      gDatabase.count("select count(*) as outCount from site, valid_filetypes as vf where site.id = " + number(siteId) +
                      " and vf.id = " + number(fileTypeId)) > 0;
  if (!bothAreThere) return false;
  gDatabase.execute("delete from site_paths where site_id = " + number(siteId) +
                    " and filetype_id = " + number(fileTypeId));
  gDatabase.execute("insert into site_paths (site_id, filetype_id, path) values(" + number(siteId) + ", " +
                    number(fileTypeId) + ", " + quoted(folder) + ") ");
  return true;
}

void saveDefaultSitePath(Id siteId, const std::string& folder) {
  gDatabase.execute("update site set download_path = " + quoted(folder) + " where id = " + number(siteId));
}

}  // namespace mv
