#include "store/SiteStore.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "app/Settings.h"
#include "app/UserNotice.h"
#include "store/LinkCleaner.h"

namespace mv {

namespace {

constexpr std::string_view kScheme = "http://";
constexpr long kMostHops = 100;
constexpr std::size_t kBaseNameLimit = 200;
constexpr const char* kDefaultBaseName = "NewFile";

using Id = std::int64_t;

// The leading number of a text, 0 when there is none; the largest number for a larger one.
Id leadingNumber(std::string_view digits) {
  while (!digits.empty() && (digits.front() == ' ' || digits.front() == '\t')) digits.remove_prefix(1);
  Id value = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return read.ec == std::errc::result_out_of_range ? std::numeric_limits<Id>::max() : value;
}

std::size_t characterCount(std::string_view utf8) {
  return static_cast<std::size_t>(
      std::count_if(utf8.begin(), utf8.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }));
}

bool isDigits(std::string_view value) {
  return !value.empty() && std::all_of(value.begin(), value.end(), [](char c) { return c >= '0' && c <= '9'; });
}

void checkLimits(const SiteValues& values) {
  const std::pair<const char*, const std::string*> limits[] = {
      {"upper limit", &values.upperLimit},
      {"lower limit", &values.lowerLimit},
      {"number of pages to scan", &values.pagesToScan},
      {"number of files to download", &values.filesToDownload}};
  for (const auto& [name, value] : limits)
    if (!isDigits(*value))
      throw DatabaseError(DatabaseError::kInvalidArgument,
                          std::string("The site's ") + name + " is not a whole number.", "SiteStore");
}

// The column's integer affinity makes a number of the digits, however many they are.
Literal limit(const std::string& digits) { return quoted(digits); }

SiteListRow siteListRow(const Recordset& rows) {
  SiteListRow row;
  row.id = static_cast<std::int32_t>(rows.number("id"));
  row.name = rows.text("name");
  row.autoScan = rows.text("auto_scan");
  row.domain = rows.text("domain");
  row.hops = static_cast<long>(rows.number("hops"));
  row.uniqueNames = rows.text("unique_names");
  row.baseName = rows.text("base_name");
  return row;
}

// Every row of a query, each made by `make`.
template <class Make>
auto readAll(const Statement& sql, Make make) {
  std::vector<decltype(make(std::declval<const Recordset&>()))> result;
  for (Recordset rows = gDatabase.query(sql); !rows.endOfRows(); rows.moveNext()) result.push_back(make(rows));
  return result;
}

NamedId namedId(const Recordset& rows) { return {rows.number("id"), rows.text("name")}; }

SiteFilter siteFilter(const Recordset& rows) { return {rows.number("id"), rows.text("name"), rows.text("global")}; }

void deleteFrom(SqlText table, Id siteId, SqlText column = "site_id") {
  gDatabase.execute("delete from " + table + " where " + column + " = " + number(siteId));
}

}  // namespace

// ---- reading ----

std::vector<SiteListRow> listSites() {
  return readAll("select id, name, auto_scan, domain, hops, unique_names, base_name from site order by id",
                 siteListRow);
}

std::vector<SiteListRow> loadSiteRow(std::int32_t siteId) {
  return readAll("select id, name, auto_scan, domain, hops, unique_names, base_name  from site  where id = " +
                     number(siteId) + " order by id",
                 siteListRow);
}

std::optional<SiteValues> loadSite(std::int32_t siteId) {
  const Recordset rows = gDatabase.query(
      "select name, upper_limit, lower_limit, pages_to_scan, files_to_download, download_path, auto_scan, hops, "
      "alternate_matchpath from site where id = " +
      number(siteId));
  if (rows.endOfRows()) return std::nullopt;
  SiteValues values;
  values.name = rows.text("name");
  values.upperLimit = rows.text("upper_limit");
  values.lowerLimit = rows.text("lower_limit");
  values.pagesToScan = rows.text("pages_to_scan");
  values.filesToDownload = rows.text("files_to_download");
  values.downloadPath = rows.text("download_path");
  values.autoScan = rows.text("auto_scan");
  values.hops = static_cast<long>(rows.number("hops"));
  values.alternateMatchpath = rows.text("alternate_matchpath");
  return values;
}

std::optional<SiteNaming> loadSiteNaming(std::int32_t siteId) {
  const auto rows =
      readAll("select unique_names, base_name from site where id = " + number(siteId), [](const Recordset& row) {
        return SiteNaming{row.text("unique_names"), row.text("base_name")};
      });
  if (rows.empty()) return std::nullopt;
  return rows.back();
}

std::int32_t siteLoginForm(std::int32_t siteId) {
  const auto forms = readAll("select form_id from site_form_xref where site_id = " + number(siteId),
                             [](const Recordset& row) { return static_cast<std::int32_t>(row.number("form_id")); });
  return forms.empty() ? 0 : forms.back();
}

std::vector<SiteFieldValue> loadSiteFieldValues(std::int32_t siteId) {
  return readAll("select id, site_id, field_id, field_value from site_field_xref where site_id = " + number(siteId),
                 [](const Recordset& row) {
                   return SiteFieldValue{row.number("id"), row.number("field_id"), row.text("field_value")};
                 });
}

std::vector<NamedId> loadSiteFileTypes(std::int32_t siteId) {
  return readAll(
      "select vf.id, vf.name from valid_filetypes vf, site_filetype_xref sfx "
      " where vf.id = sfx.file_type_id"
      " and sfx.site_id = " +
          number(siteId),
      namedId);
}

std::vector<NamedId> loadDefaultFileTypes() {
  return readAll("select id, name from valid_filetypes where download_by_default = " + quoted("yes") + " order by id",
                 namedId);
}

std::vector<SiteFilter> loadSiteFilters(std::int32_t siteId) {
  return readAll(
      "select f.id, f.name,  f.global from filter f, site_filter_xref sfx "
      " where f.id = sfx.filter_id"
      " and sfx.site_id = " +
          number(siteId),
      siteFilter);
}

std::vector<NamedId> listFileTypes() { return readAll("select id, name from valid_filetypes order by id", namedId); }

std::vector<SiteFilter> listFilters(bool global) {
  return readAll("select id, name, global from filter where global = " + quoted(yesNo(global)) + " order by id",
                 siteFilter);
}

// ---- writing ----

void insertSite(std::int32_t siteId, const SiteValues& values) {
  checkLimits(values);
  gDatabase.execute(
      "insert into site (id, name, upper_limit, lower_limit, pages_to_scan, files_to_download, download_path, "
      "auto_scan, domain, alternate_matchpath, hops, unique_names, base_name) values (" +
      number(siteId) + ", " + quoted(values.name) + ", " + limit(values.upperLimit) + ", " + limit(values.lowerLimit) +
      ", " + limit(values.pagesToScan) + ", " + limit(values.filesToDownload) + ", " + quoted(values.downloadPath) +
      ", " + quoted(values.autoScan) + ", " + quoted(values.domain) + ", " + quoted(values.alternateMatchpath) + ", " +
      number(values.hops) + ", " + quoted(values.uniqueNames) + ", " + quoted(values.baseName) + ")");
}

void updateSite(std::int32_t siteId, const SiteValues& values) {
  checkLimits(values);
  gDatabase.execute("update site set name = " + quoted(values.name) + ", upper_limit = " + limit(values.upperLimit) +
                    ", lower_limit = " + limit(values.lowerLimit) + ", pages_to_scan = " + limit(values.pagesToScan) +
                    ", files_to_download = " + limit(values.filesToDownload) +
                    ", download_path = " + quoted(values.downloadPath) + ", auto_scan = " + quoted(values.autoScan) +
                    ", domain = " + quoted(values.domain) +
                    ", alternate_matchpath = " + quoted(values.alternateMatchpath) +
                    ", unique_names = " + quoted(values.uniqueNames) + ", base_name = " + quoted(values.baseName) +
                    ", hops = " + number(values.hops) + "  where id = " + number(siteId));
}

void saveSiteFileTypes(std::int32_t siteId, const std::vector<std::int64_t>& fileTypeIds) {
  deleteFrom("site_filetype_xref", siteId);
  for (const Id fileType : fileTypeIds)
    gDatabase.execute("insert into site_filetype_xref (site_id, file_type_id) values (" + number(siteId) + ", " +
                      number(fileType) + ")");
}

void saveSiteFilters(std::int32_t siteId, const std::vector<std::pair<std::int64_t, std::string>>& filterIdsAndGlobal) {
  deleteFrom("site_filter_xref", siteId);
  for (const auto& [filter, global] : filterIdsAndGlobal)
    if (!isYes(global))
      gDatabase.execute("insert into site_filter_xref (site_id, filter_id) values (" + number(siteId) + ", " +
                        number(filter) + ")");
}

void saveSiteForm(std::int32_t siteId, std::int32_t formId) {
  deleteFrom("site_form_xref", siteId);
  if (formId == kNoLoginForm || formId == 0)
    deleteFrom("site_field_xref", siteId);
  else
    gDatabase.execute("insert into site_form_xref (site_id, form_id) values (" + number(siteId) + ", " +
                      number(formId) + ")");
}

void saveSiteFieldValues(std::int32_t siteId,
                         const std::vector<std::pair<std::int64_t, std::string>>& fieldIdsAndValues) {
  if (fieldIdsAndValues.empty()) return;
  deleteFrom("site_field_xref", siteId);
  for (const auto& [field, value] : fieldIdsAndValues)
    gDatabase.execute("insert into site_field_xref (site_id, field_id, field_value) values ( " + number(siteId) + ", " +
                      number(field) + ", " + quoted(value) + ")");
}

void addDroppedFilters(std::int32_t siteId, const std::string& lines) {
  constexpr std::string_view kLineEnd = "\r\n";
  for (std::string_view rest = lines; !rest.empty();) {
    const std::size_t end = rest.find(kLineEnd);
    gDatabase.execute("insert into site_filter_xref(site_id, filter_id) values (" + number(siteId) + "," +
                      number(leadingNumber(rest.substr(0, end))) + ")");
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + kLineEnd.size());
  }
}

// ---- deleting ----

void deleteSite(std::int32_t siteId) {
  if (siteId == 0) {
    notifyUser({"No Site Selected", "Please select a web site to delete. ", NoticeIcon::Information});
    return;
  }
  discardNewSite(siteId);
  deleteFrom("site_form_xref", siteId);
  deleteFrom("site_field_xref", siteId);
  clearLinkCache(siteId);
}

void discardNewSite(std::int32_t siteId) {
  deleteFrom("site", siteId, "id");
  deleteFrom("site_paths", siteId);
  deleteFrom("site_filetype_xref", siteId);
  deleteFrom("site_filter_xref", siteId);
}

void clearLinkCache(std::int32_t siteId) { LinkCleaner::instance().clear(siteId); }

// ---- derivations ----

std::string siteLocation(std::string_view typed) {
  return std::string(typed.substr(0, kScheme.size()) == kScheme ? typed.substr(kScheme.size()) : typed);
}

std::string siteDomain(std::string_view location) { return std::string(location.substr(0, location.find('/'))); }

long siteHops(std::string_view typed) { return static_cast<long>(std::clamp<Id>(leadingNumber(typed), 0, kMostHops)); }

std::string siteBaseName(const std::string& typed) {
  return !typed.empty() && characterCount(typed) < kBaseNameLimit ? typed : kDefaultBaseName;
}

}  // namespace mv
