// The site store: the rows of `site`, and what a site is given in the tables `site_filetype_xref`, `site_filter_xref`,
// `site_form_xref` and `site_field_xref`. Its folders (`site_paths`) are kept elsewhere, but go with it.
//
// All statements run on gDatabase, one after another, and raise DatabaseError; those before a failing one stay applied.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "store/Id.h"

namespace mv {

// A site as its editor shows and saves it. Its domain is derived from the name whenever it is written.
struct Site {
  Id id = 0;
  std::string name;             // the location without "http://"; what the site is called by, too
  std::int64_t upperLimit = 0;  // megabytes
  std::int64_t lowerLimit = 0;  // kilobytes
  std::int64_t pagesToScan = 0;
  std::int64_t filesToDownload = 0;
  std::string downloadPath;
  bool autoScan = false;
  bool alternateMatchPath = false;
  std::int64_t hops = 0;
  bool uniqueNames = false;
  std::string baseName;
};

// A site as the web-site list shows and starts it.
struct SiteListRow {
  Id id = 0;
  std::string name;
  bool autoScan = false;
  std::string domain;
  std::int64_t hops = 0;
  bool uniqueNames = false;
  std::string baseName;
};

// A global filter applies to every site, and is given to none.
struct SiteFilter {
  Id id = 0;
  std::string name;
  bool global = false;
};

// The site's value of a field of its login form.
struct SiteFieldValue {
  Id fieldId = 0;
  std::string value;
};

// Sites, in the order of their ids.
std::vector<SiteListRow> listSites();
// The names of all sites but one.
std::vector<std::string> listOtherSiteNames(Id siteId);
// One row, or none when the site is gone.
std::vector<SiteListRow> loadSiteRow(Id siteId);
// nullopt when it is gone. Base names that are empty or too long read "NewFile".
std::optional<Site> loadSite(Id siteId);

void insertSite(const Site& site);
// False when it is gone.
[[nodiscard]] bool updateSite(const Site& site);

// Deletes the site with everything that belongs to it; false for 0, which stands for no site. Of very many links the
// first go at once and the rest in later events (LinkCleaner).
[[nodiscard]] bool deleteSite(Id siteId);
// Takes back what a new site's Apply wrote; login, field values and links are left.
void discardNewSite(Id siteId);
// Forgets the site's links.
void clearLinkCache(Id siteId);

// File types: those of a site, those that a new site is given, all. The last two in the order of their ids.
std::vector<NamedId> loadSiteFileTypes(Id siteId);
std::vector<NamedId> loadDefaultFileTypes();
std::vector<NamedId> listFileTypes();
std::optional<std::string> findFileTypeDescription(Id fileTypeId);
// Replaces those of the site.
void saveSiteFileTypes(Id siteId, const std::vector<Id>& fileTypeIds);

// Filters: those of a site; those that apply to every site; those that a site can be given. The last two in the order
// of their ids.
std::vector<SiteFilter> loadSiteFilters(Id siteId);
std::vector<SiteFilter> listGlobalFilters();
std::vector<SiteFilter> listAssignableFilters();
// Replaces those of the site by the ones that are not global; names do not matter.
void saveSiteFilters(Id siteId, const std::vector<SiteFilter>& filters);
// Adds the filters of a drop: `text` has their ids, one a line, lines ended by CR LF. What a site has already is added
// once more.
void addDroppedFilters(Id siteId, const std::string& text);

// The login form; 0 when there is none.
Id siteLoginForm(Id siteId);
// 0 and kNoLoginForm take the field values away, too.
void saveSiteForm(Id siteId, Id formId);
// In the order in which they were saved.
std::vector<SiteFieldValue> loadSiteFieldValues(Id siteId);
// Replaces the site's values, unless there are none to be saved.
void saveSiteFieldValues(Id siteId, const std::vector<SiteFieldValue>& values);

}  // namespace mv
