#include "store/SiteStore.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "LeadingNumber.h"
#include "ReadAll.h"
#include "app/Settings.h"
#include "store/BuiltInForms.h"
#include "store/LinkCleaner.h"
#include "store/SiteDerivations.h"

namespace mv {

namespace {

constexpr char kDeleteFileTypes[] = "delete from site_filetype_xref where site_id = ";
constexpr char kDeleteFilters[] = "delete from site_filter_xref where site_id = ";
constexpr char kDeleteForm[] = "delete from site_form_xref where site_id = ";
constexpr char kDeleteFieldValues[] = "delete from site_field_xref where site_id = ";

SiteListRow readListRow(const Recordset& row) {
  SiteListRow site;
  site.id = row.number("id");
  site.name = row.text("name");
  site.autoScan = isYes(row.text("auto_scan"));
  site.domain = row.text("domain");
  site.hops = row.number("hops");
  site.uniqueNames = isYes(row.text("unique_names"));
  site.baseName = row.text("base_name");
  return site;
}

SiteFilter readFilter(const Recordset& row) { return {row.number("id"), row.text("name"), isYes(row.text("global"))}; }

std::vector<SiteFilter> filtersWhereGlobalIs(const char* yesOrNo) {
  return readAll(
      gDatabase.query("select id, name, global from filter where global = " + quoted(yesOrNo) + " order by id"),
      readFilter);
}

void loadNaming(Site& site) {
  const Recordset row = gDatabase.query("select unique_names, base_name from site where id = " + number(site.id));
  if (row.endOfRows()) return;
  site.uniqueNames = isYes(row.text("unique_names"));
  site.baseName = siteBaseName(row.text("base_name"));
}

}  // namespace

// ---- sites ----

std::vector<SiteListRow> listSites() {
  return readAll(
      gDatabase.query("select id, name, auto_scan, domain, hops, unique_names, base_name from site order by id"),
      readListRow);
}

std::vector<std::string> listOtherSiteNames(Id siteId) {
  return readAll(gDatabase.query("select name from site where id <> " + number(siteId)),
                 [](const Recordset& row) { return row.text("name"); });
}

std::vector<SiteListRow> loadSiteRow(Id siteId) {
  return readAll(
      gDatabase.query("select id, name, auto_scan, domain, hops, unique_names, base_name  from site  where id = " +
                      number(siteId) + " order by id"),
      readListRow);
}

std::optional<Site> loadSite(Id siteId) {
  const Recordset row = gDatabase.query(
      "select name, upper_limit, lower_limit, pages_to_scan, files_to_download, download_path, auto_scan, hops, "
      "alternate_matchpath from site where id = " +
      number(siteId));
  if (row.endOfRows()) return std::nullopt;
  Site site;
  site.id = siteId;
  site.name = row.text("name");
  site.upperLimit = row.number("upper_limit");
  site.lowerLimit = row.number("lower_limit");
  site.pagesToScan = row.number("pages_to_scan");
  site.filesToDownload = row.number("files_to_download");
  site.downloadPath = row.text("download_path");
  site.autoScan = isYes(row.text("auto_scan"));
  site.hops = row.number("hops");
  site.alternateMatchPath = isYes(row.text("alternate_matchpath"));
  loadNaming(site);
  return site;
}

void insertSite(const Site& site) {
  gDatabase.execute(
      "insert into site (id, name, upper_limit, lower_limit, pages_to_scan, files_to_download, download_path, "
      "auto_scan, domain, alternate_matchpath, hops, unique_names, base_name) values (" +
      number(site.id) + ", " + quoted(site.name) + ", " + number(site.upperLimit) + ", " + number(site.lowerLimit) +
      ", " + number(site.pagesToScan) + ", " + number(site.filesToDownload) + ", " + quoted(site.downloadPath) + ", " +
      quoted(yesNo(site.autoScan)) + ", " + quoted(siteDomain(site.name)) + ", " +
      quoted(yesNo(site.alternateMatchPath)) + ", " + number(site.hops) + ", " + quoted(yesNo(site.uniqueNames)) +
      ", " + quoted(site.baseName) + ")");
}

bool updateSite(const Site& site) {
  gDatabase.execute("update site set name = " + quoted(site.name) + ", upper_limit = " + number(site.upperLimit) +
                    ", lower_limit = " + number(site.lowerLimit) + ", pages_to_scan = " + number(site.pagesToScan) +
                    ", files_to_download = " + number(site.filesToDownload) +
                    ", download_path = " + quoted(site.downloadPath) + ", auto_scan = " + quoted(yesNo(site.autoScan)) +
                    ", domain = " + quoted(siteDomain(site.name)) +
                    ", alternate_matchpath = " + quoted(yesNo(site.alternateMatchPath)) +
                    ", unique_names = " + quoted(yesNo(site.uniqueNames)) + ", base_name = " + quoted(site.baseName) +
                    ", hops = " + number(site.hops) + "  where id = " + number(site.id));
  return gDatabase.rowsAffected() > 0;
}

bool deleteSite(Id siteId) {
  if (siteId == 0) return false;
  discardNewSite(siteId);
  gDatabase.execute(kDeleteForm + number(siteId));
  gDatabase.execute(kDeleteFieldValues + number(siteId));
  clearLinkCache(siteId);
  return true;
}

void discardNewSite(Id siteId) {
  gDatabase.execute("delete from site where id = " + number(siteId));
  gDatabase.execute("delete from site_paths where site_id = " + number(siteId));
  gDatabase.execute(kDeleteFileTypes + number(siteId));
  gDatabase.execute(kDeleteFilters + number(siteId));
}

void clearLinkCache(Id siteId) { LinkCleaner::instance().clear(siteId); }

// ---- file types ----

std::vector<NamedId> loadSiteFileTypes(Id siteId) {
  return readAll(gDatabase.query("select vf.id, vf.name from valid_filetypes vf, site_filetype_xref sfx "
                                 " where vf.id = sfx.file_type_id"
                                 " and sfx.site_id = " +
                                 number(siteId)),
                 namedId);
}

std::vector<NamedId> loadDefaultFileTypes() {
  return readAll(gDatabase.query("select id, name from valid_filetypes where download_by_default = " + quoted("yes") +
                                 " order by id"),
                 namedId);
}

std::vector<NamedId> listFileTypes() {
  return readAll(gDatabase.query("select id, name from valid_filetypes order by id"), namedId);
}

std::optional<std::string> findFileTypeDescription(Id fileTypeId) {
  return readFirst(gDatabase.query("select description from valid_filetypes where id = " + number(fileTypeId)),
                   [](const Recordset& row) { return row.text("description"); });
}

void saveSiteFileTypes(Id siteId, const std::vector<Id>& fileTypeIds) {
  gDatabase.execute(kDeleteFileTypes + number(siteId));
  for (const Id fileType : fileTypeIds)
    gDatabase.execute("insert into site_filetype_xref (site_id, file_type_id) values (" + number(siteId) + ", " +
                      number(fileType) + ")");
}

// ---- filters ----

std::vector<SiteFilter> loadSiteFilters(Id siteId) {
  return readAll(gDatabase.query("select f.id, f.name,  f.global from filter f, site_filter_xref sfx "
                                 " where f.id = sfx.filter_id"
                                 " and sfx.site_id = " +
                                 number(siteId)),
                 readFilter);
}

std::vector<SiteFilter> listGlobalFilters() { return filtersWhereGlobalIs("yes"); }
std::vector<SiteFilter> listAssignableFilters() { return filtersWhereGlobalIs("no"); }

void saveSiteFilters(Id siteId, const std::vector<SiteFilter>& filters) {
  gDatabase.execute(kDeleteFilters + number(siteId));
  for (const SiteFilter& filter : filters)
    if (!filter.global)
      gDatabase.execute("insert into site_filter_xref (site_id, filter_id) values (" + number(siteId) + ", " +
                        number(filter.id) + ")");
}

void addDroppedFilters(Id siteId, const std::string& text) {
  constexpr std::string_view kLineEnd = "\r\n";
  for (std::string_view rest = text; !rest.empty();) {
    const std::size_t end = rest.find(kLineEnd);
    gDatabase.execute("insert into site_filter_xref(site_id, filter_id) values (" + number(siteId) + "," +
                      number(leadingNumber(rest.substr(0, end))) + ")");
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + kLineEnd.size());
  }
}

// ---- the login ----

Id siteLoginForm(Id siteId) {
  const auto forms = readAll(gDatabase.query("select form_id from site_form_xref where site_id = " + number(siteId)),
                             [](const Recordset& row) { return row.number("form_id"); });
  return forms.empty() ? 0 : forms.back();
}

void saveSiteForm(Id siteId, Id formId) {
  gDatabase.execute(kDeleteForm + number(siteId));
  if (formId == kNoLoginForm || formId == 0)
    gDatabase.execute(kDeleteFieldValues + number(siteId));
  else
    gDatabase.execute("insert into site_form_xref (site_id, form_id) values (" + number(siteId) + ", " +
                      number(formId) + ")");
}

std::vector<SiteFieldValue> loadSiteFieldValues(Id siteId) {
  auto rows =
      readAll(gDatabase.query("select id, site_id, field_id, field_value from site_field_xref where site_id = " +
                              number(siteId)),
              [](const Recordset& row) {
                return std::pair(row.number("id"), SiteFieldValue{row.number("field_id"), row.text("field_value")});
              });
  // The engine hands them out in the order of an index.
  std::sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<SiteFieldValue> values;
  values.reserve(rows.size());
  for (auto& [id, value] : rows) values.push_back(std::move(value));
  return values;
}

void saveSiteFieldValues(Id siteId, const std::vector<SiteFieldValue>& values) {
  if (values.empty()) return;
  gDatabase.execute(kDeleteFieldValues + number(siteId));
  for (const SiteFieldValue& each : values)
    gDatabase.execute("insert into site_field_xref (site_id, field_id, field_value) values ( " + number(siteId) + ", " +
                      number(each.fieldId) + ", " + quoted(each.value) + ")");
}

}  // namespace mv
