// The site store: every statement by which a site and what belongs to it is read, written and deleted. All run on
// gDatabase, one after another, and raise DatabaseError; statements before a failing one stay applied.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "store/BuiltInForms.h"
#include "store/Id.h"

namespace mv {

// A row as the web-site list shows it.
struct SiteListRow {
  std::int32_t id = 0;
  std::string name;
  std::string autoScan;
  std::string domain;
  long hops = 0;
  std::string uniqueNames;
  std::string baseName;
};

// Column values as the site editor writes them. The four limits are runs of digits.
struct SiteValues {
  std::string name;
  std::string upperLimit;
  std::string lowerLimit;
  std::string pagesToScan;
  std::string filesToDownload;
  std::string downloadPath;
  std::string autoScan;
  std::string domain;
  std::string alternateMatchpath;
  long hops = 0;
  std::string uniqueNames;
  std::string baseName;
};

struct SiteNaming {
  std::string uniqueNames;
  std::string baseName;
};

struct SiteFieldValue {
  std::int64_t id = 0;
  std::int64_t fieldId = 0;
  std::string value;
};

struct SiteFilter {
  std::int64_t id = 0;
  std::string name;
  std::string global;
};

// Reading.
std::vector<SiteListRow> listSites();
std::vector<SiteListRow> loadSiteRow(std::int32_t siteId);
std::optional<SiteValues> loadSite(std::int32_t siteId);  // domain and naming are not read
std::optional<SiteNaming> loadSiteNaming(std::int32_t siteId);
std::int32_t siteLoginForm(std::int32_t siteId);  // 0 when there is none
std::vector<SiteFieldValue> loadSiteFieldValues(std::int32_t siteId);
std::vector<NamedId> loadSiteFileTypes(std::int32_t siteId);
std::vector<NamedId> loadDefaultFileTypes();
std::vector<SiteFilter> loadSiteFilters(std::int32_t siteId);
// What a site can be given: all file types; the filters of all sites, or those that a site can be given.
std::vector<NamedId> listFileTypes();
std::vector<SiteFilter> listFilters(bool global);

// Writing. Limits that are no run of digits raise DatabaseError before anything is written.
void insertSite(std::int32_t siteId, const SiteValues& values);
void updateSite(std::int32_t siteId, const SiteValues& values);
// Each replaces all of the site's rows of one table.
void saveSiteFileTypes(std::int32_t siteId, const std::vector<std::int64_t>& fileTypeIds);
void saveSiteFilters(std::int32_t siteId, const std::vector<std::pair<std::int64_t, std::string>>& filterIdsAndGlobal);
void saveSiteForm(std::int32_t siteId, std::int32_t formId);
void saveSiteFieldValues(std::int32_t siteId,
                         const std::vector<std::pair<std::int64_t, std::string>>& fieldIdsAndValues);
// `text`: filter identifiers, one a line, lines ended by CR LF.
void addDroppedFilters(std::int32_t siteId, const std::string& text);

// Deleting. Of very many links the first go at once and the rest in later events (LinkCleaner). deleteSite(0) is a
// message. discardNewSite takes back what Apply of a new site wrote.
void deleteSite(std::int32_t siteId);
void discardNewSite(std::int32_t siteId);
void clearLinkCache(std::int32_t siteId);

// Derivations of the editor. A leading "http://", exactly so written, is dropped; the domain is the text before the
// first "/"; hops are 0 to 100; a base name is 1 to 199 characters, else "NewFile".
std::string siteLocation(std::string_view typed);
std::string siteDomain(std::string_view location);
long siteHops(std::string_view typed);
std::string siteBaseName(const std::string& typed);

}  // namespace mv
