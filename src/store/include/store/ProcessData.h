// What a scan and a download read of the tables besides links: the site's limits, user name and password, its login
// form, file types and folders, the filters' rules, the tags. All run on gDatabase and raise DatabaseError.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "store/Id.h"

namespace mv {

// False when the site was deleted, or taken back.
bool isSiteStored(Id siteId);

struct ScanLimits {
  std::int64_t pagesToScan = 0;  // pages a round
  bool alternateMatchpath = false;
};
ScanLimits loadScanLimits(Id siteId);

struct DownloadLimits {
  std::int64_t upperMegabytes = 0;
  std::int64_t lowerKilobytes = 0;
  std::int64_t queueSize = 0;  // files a round
  std::string folder;          // for files whose type has none of its own
};
DownloadLimits loadDownloadLimits(Id siteId);

// The site's folder for files of a type, "" when it has none.
std::string loadSitePath(Id siteId, std::string_view fileType);

// What the user entered for a field of the site's login form, "" when nothing.
std::string loadSiteField(Id siteId, Id fieldId);

// One field of a login form's definition. Of the first one, `searchString` tells the form from others and `value` is
// the address of the request.
struct LoginField {
  std::string name;
  std::string searchString;  // found in lower-cased text only when it is in lower case itself
  bool suppliedByUser = false;
  std::string parameter;
  std::string value;  // of a field supplied by the user: the site's, else the definition's default
};
// The fields of `formId` in the order of the request, with the values of the site.
std::vector<LoginField> loadLoginFields(Id formId, Id siteId);

// The strings that mark a link in a page, in the engine's order.
std::vector<std::string> loadTags();

enum class FileTypeUse { Unknown, NotOfTheSite, OfTheSite };
FileTypeUse loadFileTypeUse(Id siteId, std::string_view fileType);

// A rule as it is stored.
struct FilterRule {
  std::string fieldName;  // "Link", "Domain" or "Filetype"; any other is skipped
  std::string op;         // one of kRuleOperators; any other is skipped
  std::string ruleType;
  std::string ruleName;
  std::string searchValue;
};
// The rules of all global filters, and of the filters assigned to a site.
std::vector<FilterRule> loadGlobalRules();
std::vector<FilterRule> loadSiteRules(Id siteId);

}  // namespace mv
