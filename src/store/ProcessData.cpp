#include "store/ProcessData.h"

#include "ReadAll.h"
#include "app/Settings.h"

namespace mv {

namespace {

constexpr char kRuleCount[] = "SELECT count(*) as outCount ";
constexpr char kRuleColumns[] = "SELECT r.name, r.search_value, r.operator, vf.name, vr.name ";
constexpr char kOfFilters[] = "FROM filter AS f, ";
constexpr char kOfSite[] = "site_filter_xref AS sfx, ";
constexpr char kTheirRules[] =
    "filter_rule_xref AS frx, rule AS r, valid_field AS vf, valid_rule AS vr WHERE frx.rule_id=r.id AND "
    "frx.filter_id=f.id AND r.valid_field_id=vf.id AND r.valid_rule_type_id = vr.id and ";

FilterRule filterRule(const Recordset& row) {
  return {row.text("vf.name"), row.text("Operator"), row.text("vr.name"), row.text("r.name"), row.text("search_value")};
}

// `from`: the statement behind its select list.
template <class Statement>
std::vector<FilterRule> loadRules(const Statement& from) {
  if (gDatabase.count(kRuleCount + from) <= 0) return {};
  return readAll(gDatabase.query(kRuleColumns + from), filterRule);
}

// A field without a value of the site's keeps its default.
void takeSiteValue(LoginField& field, std::int64_t fieldId, Id siteId) {
  const Recordset rows = gDatabase.query("select field_value from site_field_xref where site_id = " + number(siteId) +
                                         " and field_id=" + number(fieldId));
  if (!rows.endOfRows()) field.value = rows.text("field_value");
}

LoginField loginField(const Recordset& row, Id siteId) {
  LoginField field;
  field.name = row.text("name");
  field.searchString = row.text("search_string");
  field.suppliedByUser = isYes(row.text("supplied_by_user"));
  field.parameter = row.text("field_name");
  field.value = row.text("field_value");
  if (field.suppliedByUser) takeSiteValue(field, row.number("id"), siteId);
  return field;
}

}  // namespace

bool isSiteStored(Id siteId) {
  return gDatabase.count("select count(*) as outCount from site where id = " + number(siteId)) != 0;
}

ScanLimits loadScanLimits(Id siteId) {
  const Recordset site =
      gDatabase.query("select pages_to_scan, alternate_matchpath from site where id = " + number(siteId));
  return {site.number("pages_to_scan"), isYes(site.text("alternate_matchpath"))};
}

DownloadLimits loadDownloadLimits(Id siteId) {
  const Recordset site = gDatabase.query(
      "select upper_limit, lower_limit, files_to_download, download_path from site where id = " + number(siteId));
  const Recordset queue = gDatabase.query("select pages_to_scan from site where id = " + number(siteId));
  return {site.number("upper_limit"), site.number("lower_limit"), queue.number("pages_to_scan"),
          site.text("download_path")};
}

std::string loadSitePath(Id siteId, std::string_view fileType) {
  std::string path;
  Recordset rows =
      gDatabase.query("select sp.path from site_paths sp, valid_filetypes vf where sp.site_id = " + number(siteId) +
                      " and (vf.id = sp.filetype_id and vf.name = " + quoted(fileType) + ")");
  for (; !rows.endOfRows(); rows.moveNext()) path = rows.text("sp.path");
  return path;
}

std::string loadSiteField(Id siteId, Id fieldId) {
  const Recordset rows = gDatabase.query("select field_value from site_field_xref where field_id = " + number(fieldId) +
                                         " and site_id = " + number(siteId));
  return rows.endOfRows() ? std::string() : rows.text("field_value");
}

std::vector<LoginField> loadLoginFields(Id formId, Id siteId) {
  const auto ofForm = " from field_info where form_id = " + number(formId);
  if (gDatabase.count("select count(*) as outCount" + ofForm) <= 0) return {};
  // The number is kept as text: without the sum 10 would come before 2.
  return readAll(
      gDatabase.query(
          "select field_name, field_value, logical_number, name, prompt, search_string, supplied_by_user, id" + ofForm +
          " order by logical_number + 0"),
      [siteId](const Recordset& row) { return loginField(row, siteId); });
}

std::vector<std::string> loadTags() {
  if (gDatabase.count("select count(*) as outCount from valid_tag") <= 0) return {};
  return readAll(gDatabase.query("select tag from valid_tag"), [](const Recordset& row) { return row.text("Tag"); });
}

FileTypeUse loadFileTypeUse(Id siteId, std::string_view fileType) {
  const auto named = " from valid_filetypes where name = " + quoted(fileType);
  if (gDatabase.count("select count(*) as outCount" + named) == 0) return FileTypeUse::Unknown;
  const Recordset type = gDatabase.query("select id" + named);
  const bool ofTheSite =
      type.endOfRows() || gDatabase.count("select count(*) as outCount from site_filetype_xref where site_id = " +
                                          number(siteId) + " and file_type_id = " + number(type.number("id"))) > 0;
  return ofTheSite ? FileTypeUse::OfTheSite : FileTypeUse::NotOfTheSite;
}

std::vector<FilterRule> loadGlobalRules() {
  return loadRules(kOfFilters + (kTheirRules + ("f.global=" + quoted("yes"))));
}

std::vector<FilterRule> loadSiteRules(Id siteId) {
  return loadRules(kOfFilters +
                   (kOfSite + (kTheirRules + ("f.id = sfx.filter_id and sfx.site_id = " + number(siteId)))));
}

}  // namespace mv
