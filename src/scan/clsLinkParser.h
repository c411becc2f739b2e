// Turns one link found in a page into a stored row of `link`: resolves, classifies, filters, limits foreign domains,
// rejects duplicates, inserts.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "scan/FilterRules.h"

namespace mv {

class clsLinkParser {
 public:
  std::string Link;       // as found in the page
  std::string BasePath;   // the page's, without scheme
  std::string Domain;     // the site's host
  std::string UserName;   // stored with the link
  std::string Password;
  std::int32_t SiteID = 0;
  std::int64_t LinkID = 0;  // of the last stored link
  std::string URL;          // ProcessLink's answer, AddLinkToDatabase's question; afterwards escaped, without scheme
  std::string LinkType;     // "Document", "Directory", "File" or "Email Address"
  bool Flag = false;        // after AddLinkToDatabase: a new row was inserted
  long DomainHops = 0;      // foreign domains allowed

  // Loads the global and the site's rules; once, when the scan starts. Raises DatabaseError.
  void BuildFilters();
  // Empties the table of foreign domains entered.
  void InitializeDomainHopper();

  // Sets URL from Link, BasePath and Domain. BasePath is shortened by "../" steps.
  void ProcessLink();
  // Stores URL unless it is known, filtered, foreign beyond the limit, or a mail address. Raises DatabaseError.
  void AddLinkToDatabase();

 private:
  void normalizeRelativeLink();
  void classify();
  void applyGlobalFilters();
  void applySiteFilters();
  std::string extractLinkDomain() const;
  void checkDomainHop(const std::string& linkDomain);
  bool domainIsAllowed();
  void insertUnlessKnown();

  std::string fileType_;
  std::string storedType_;  // LinkType, but "Document" for files of an unknown type
  std::vector<std::string> hopDomains_;
  std::vector<FilterRule> globalRules_;
  std::vector<FilterRule> siteRules_;
};

}  // namespace mv
