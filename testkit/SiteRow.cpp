#include "testkit/SiteRow.h"

#include "app/Settings.h"
#include "database/RawStatement.h"

namespace mvtest {

void insert(const std::string& into, const std::vector<RowValues>& rows) {
  for (const RowValues& row : rows) {
    mv::Statement statement = mv::rawStatement("insert into " + into);
    mv::SqlText separator = " values (";
    for (const std::string& value : row) {
      statement += separator + mv::quoted(value);
      separator = ", ";
    }
    mv::gDatabase.execute(statement + ")");
  }
}

void insertNumbered(const std::string& into, long first, long last, const std::string& values) {
  mv::gDatabase.execute(mv::rawStatement("insert into " + into) + " with recursive n(i) as (select " +
                        mv::number(first) + " union all select i + 1 from n where i < " + mv::number(last) +
                        ") select " + mv::rawStatement(values) + " from n");
}

mv::Id addSite(const std::string& location, const std::string& downloadPath,
               const std::vector<std::string>& extensions) {
  const mv::Id id =
      mv::gDatabase.query("select next_value from valid_sid where sid_name = 'site_id'").number("next_value");
  const std::string key = std::to_string(id);
  mv::gDatabase.execute("update valid_sid set next_value = next_value + 1 where sid_name = 'site_id'");
  insert(
      "site (id, name, upper_limit, lower_limit, pages_to_scan, files_to_download, download_path, auto_scan, domain, "
      "alternate_matchpath, hops, unique_names, base_name)",
      {{key, location, "24", "0", "50", "1000", downloadPath, "no", location.substr(0, location.find('/')), "no", "0",
        "no", "NewFile"}});
  for (const std::string& extension : extensions)
    mv::gDatabase.execute("insert into site_filetype_xref (site_id, file_type_id) select " + mv::number(id) +
                          ", id from valid_filetypes where name = " + mv::quoted(extension));
  return id;
}

void allowEveryType(mv::Id site) {
  mv::gDatabase.execute("insert into site_filetype_xref (site_id, file_type_id) select " + mv::number(site) +
                        ", id from valid_filetypes");
}

void setSite(mv::Id id, const std::string& assignments) {
  mv::gDatabase.execute("update site set " + mv::rawStatement(assignments) + " where id = " + mv::number(id));
}

}  // namespace mvtest
