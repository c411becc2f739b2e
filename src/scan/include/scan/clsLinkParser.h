// Turns one link found in a page into a stored row of `link`: resolves, classifies, filters, limits foreign domains,
// rejects duplicates, inserts.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "scan/FilterRules.h"
#include "scan/KnownLinks.h"
#include "store/Id.h"
#include "store/LinkStore.h"
#include "store/ProcessData.h"

namespace mv {

// What may still be added to the table, in bytes of the addresses stored.
struct AddressRoom {
  std::int64_t bytes = std::numeric_limits<std::int64_t>::max();
  std::int64_t leftOut = 0;  // addresses that were new and had no room
};

class clsLinkParser {
 public:
  std::string Link;      // as found in the page
  std::string BasePath;  // the page's, without scheme
  std::string Domain;    // the site's host; others are foreign, compared by hostOf
  std::string UserName;  // stored with the link
  std::string Password;
  Id SiteID = 0;
  std::int64_t LinkID = 0;  // of the last stored link
  std::string URL;          // ProcessLink's answer, AddLinkToDatabase's question; afterwards escaped, without scheme
  std::string LinkType;     // "Document", "Directory", "File" or "Email Address"
  bool Flag = false;        // after AddLinkToDatabase: a new row was inserted
  long DomainHops = 0;      // foreign domains allowed
  AddressRoom Room;

  // While one lives, what is read about a file type or a stored address is cached for the links that follow. For links
  // that are handled one after the other without the event loop, where the user could change what is stored.
  class CachedLookups {
   public:
    explicit CachedLookups(clsLinkParser& parser) : parser_(parser) { parser_.cacheLookups(); }
    ~CachedLookups() { parser_.forgetLookups(); }
    CachedLookups(const CachedLookups&) = delete;
    CachedLookups& operator=(const CachedLookups&) = delete;

   private:
    clsLinkParser& parser_;
  };

  // The links that were handled since the caching began last are not stored after all: foreign domains that they have
  // entered and room that they have taken are free again.
  void takeBack();

  // Loads the global and the site's rules; once, when the scan starts. Raises DatabaseError.
  void BuildFilters();
  // Empties the table of foreign domains entered.
  void InitializeDomainHopper();

  // The host, as hostOf gives it, that answers for the site's own and counts as that too; "" for none.
  void setAnsweringHost(const std::string& host) { answeringHost_ = host; }

  // Sets URL from Link, BasePath and Domain. BasePath is shortened by "../" steps.
  void ProcessLink();
  // While lookups are cached: this very link, with this URL, has been found in the table or put there by
  // AddLinkToDatabase, which would do nothing. False says nothing.
  bool isKnown();
  // Stores URL unless it is known, filtered, foreign beyond the limit, a mail address, or without room. Raises
  // DatabaseError, and NoLinkId.
  void AddLinkToDatabase();
  // URL as AddLinkToDatabase leaves it.
  const EscapedAddress& storedAddress() const { return link_.url; }
  // Links that filters have kept out so far.
  long linksKeptOut() const { return linksKeptOut_; }

 private:
  // Link without its leading steps; BasePath goes up with them.
  std::string_view normalizeRelativeLink();
  void cacheLookups();
  void forgetLookups();

  void classify();
  FileTypeUse fileTypeUse();
  // True when the link's type, were it a file, is one the site takes. Turns files of unknown types into documents.
  bool typeIsWanted();
  void applyGlobalFilters();
  void applySiteFilters();
  bool passesFilters();
  std::string extractLinkDomain() const;
  bool isOwnHost(const std::string& host);
  void checkDomainHop(const std::string& linkDomain);
  bool passesDomainHopper();
  void rememberHttpsHost();
  // What KnownLinks knows it by: all that AddLinkToDatabase looks at and that differs from link to link.
  std::string spelling() const;
  // False: it has no room.
  bool insert();

  bool lookupsCached_ = false;
  long linksKeptOut_ = 0;
  std::unordered_map<std::string, FileTypeUse> fileTypes_;  // by extension
  KnownLinks knownLinks_;
  LinkRow link_;  // as it is to be stored: a file of an unknown type as a document
  std::string answeringHost_;
  std::string domainOfHost_;  // whose host is the next one
  std::string ownHost_;
  std::unordered_set<std::string> hopDomains_;  // foreign domains entered, at most DomainHops
  std::string httpsHost_;                       // of the last absolute https link
  std::vector<std::string> newHops_;            // of them, since the caching began
  AddressRoom roomBefore_;                      // when the caching began
  long keptOutBefore_ = 0;                      // likewise
  RuleSet globalRules_;
  RuleSet siteRules_;
};

}  // namespace mv
