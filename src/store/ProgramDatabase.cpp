#include "store/ProgramDatabase.h"

#include <filesystem>
#include <system_error>

#include "app/ReportError.h"
#include "app/Settings.h"
#include "database/CompactCopy.h"

namespace mv {

namespace {

// Tables that every layout of the program's database has had.
const Database::TableNames kTables{"site",
                                   "link",
                                   "valid_filetypes",
                                   "site_filetype_xref",
                                   "site_paths",
                                   "filter",
                                   "rule",
                                   "site_filter_xref",
                                   "filter_rule_xref",
                                   "valid_rule",
                                   "valid_field",
                                   "valid_tag",
                                   "valid_sid",
                                   "form",
                                   "field_info",
                                   "site_form_xref",
                                   "site_field_xref",
                                   "form_def_update",
                                   "help_info",
                                   "pref",
                                   "win_pos"};

constexpr SqlText kIndexes[] = {
    "create index if not exists link_url on link (url)",
    "create index if not exists link_site_status_type on link (site_id, status, link_type)",
    "create index if not exists win_pos_name on win_pos (wname)",
    "create index if not exists form_def_update_name on form_def_update (name)",
    "create index if not exists help_info_id on help_info (id)",
};

bool lacksUniqueNames() {
  try {
    gDatabase.query("select unique_names from site").recordCount();
  } catch (const DatabaseError& error) {
    constexpr long kUnknownColumnInOlderEngines = 3065;
    return error.number() == DatabaseError::kUnknownColumn || error.number() == kUnknownColumnInOlderEngines;
  }
  return false;
}

// False when the column is there already.
bool addColumn(SqlText statement) {
  try {
    gDatabase.execute(statement);
    return true;
  } catch (const DatabaseError& error) {
    if (error.number() != DatabaseError::kAlreadyExists) throw;
    return false;
  }
}

bool hasFileNumbers() {
  return gDatabase.count("select count(*) as outCount from valid_sid where sid_name = \"filename_id\"") > 0;
}

}  // namespace

void openProgramDatabase(const std::string& path) { gDatabase.open(path, kTables); }

void openProgramDatabase(const std::string& path, const std::string& tempPath) {
  std::error_code error;
  if (!std::filesystem::exists(path, error) && CompactCopy::isWhole(tempPath, kTables)) {
    // A journal without its database would be taken for one of the new file's.
    CompactCopy::removeFiles(path);
    std::filesystem::rename(tempPath, path, error);
  }
  openProgramDatabase(path);
  CompactCopy::removeFiles(tempPath);
}

void closeProgramDatabase() { gDatabase.close(); }

void upgradeDatabase() {
  if (!lacksUniqueNames()) return;
  // Half an upgrade would pass for a whole one at the next start.
  Transaction upgrade(gDatabase);
  addColumn("alter table [site] add column [unique_names] text(3)");
  const bool baseNameIsNew = addColumn("alter table [site] add column [base_name] text(200)");
  if (!hasFileNumbers()) gDatabase.execute("insert into valid_sid (sid_name, next_value) values (\"filename_id\",1)");
  gDatabase.execute("update site set unique_names = \"no\"");
  if (baseNameIsNew) gDatabase.execute("update site set base_name = \"NewFile\"");
  gDatabase.execute("update site set alternate_matchpath = \"no\" where alternate_matchpath <> \"yes\"");
  upgrade.commit();
}

void ensureIndexes() {
  for (const SqlText statement : kIndexes) gDatabase.execute(statement);
}

}  // namespace mv
