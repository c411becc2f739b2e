// Turns one link found in a page into a stored row of `link`: resolves, classifies, filters, limits foreign domains,
// rejects duplicates, inserts.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "database/Database.h"
#include "scan/FilterRules.h"
#include "scan/KnownLinks.h"

namespace mv {

// The sequence of link ids gave no id; the user has been told.
class NoLinkId : public std::runtime_error {
 public:
  NoLinkId() : std::runtime_error("no id for a new link") {}
};

class clsLinkParser {
 public:
  std::string Link;      // as found in the page
  std::string BasePath;  // the page's, without scheme
  std::string Domain;    // the site's host
  std::string UserName;  // stored with the link
  std::string Password;
  std::int32_t SiteID = 0;
  std::int64_t LinkID = 0;  // of the last stored link
  std::string URL;          // ProcessLink's answer, AddLinkToDatabase's question; afterwards escaped, without scheme
  std::string LinkType;     // "Document", "Directory", "File" or "Email Address"
  bool Flag = false;        // after AddLinkToDatabase: a new row was inserted
  long DomainHops = 0;      // foreign domains allowed

  // While one lives, what is read about a file type or a stored address is kept for the links that follow. For links
  // that are handled one after the other without the event loop, where the user could change what is stored.
  class Stretch {
   public:
    explicit Stretch(clsLinkParser& parser) : parser_(parser) { parser_.beginStretch(); }
    ~Stretch() { parser_.endStretch(); }
    Stretch(const Stretch&) = delete;
    Stretch& operator=(const Stretch&) = delete;

   private:
    clsLinkParser& parser_;
  };

  // Ends the stretch before its time: a message box may stand open.
  void endStretch();

  // Loads the global and the site's rules; once, when the scan starts. Raises DatabaseError.
  void BuildFilters();
  // Empties the table of foreign domains entered.
  void InitializeDomainHopper();

  // Sets URL from Link, BasePath and Domain. BasePath is shortened by "../" steps.
  void ProcessLink();
  // Stores URL unless it is known, filtered, foreign beyond the limit, or a mail address. Raises DatabaseError, and
  // NoLinkId.
  void AddLinkToDatabase();

 private:
  // Link without its leading steps; BasePath goes up with them.
  std::string_view normalizeRelativeLink();
  void beginStretch();
  enum class FileType { Unknown, NotOfTheSite, OfTheSite };

  void classify();
  FileType fileType();
  FileType readFileType() const;
  // True when the link's type, were it a file, is one the site takes. Turns files of unknown types into documents.
  bool typeIsWanted();
  void applyGlobalFilters();
  void applySiteFilters();
  bool passesFilters();
  std::string extractLinkDomain() const;
  void checkDomainHop(const std::string& linkDomain);
  bool passesDomainHopper();
  void insertUnlessKnown();
  // `url` as a literal. Ends the transaction in which the row's id was drawn.
  void insertRow(const Literal& url, Transaction& idAndRow);

  bool inStretch_ = false;
  std::unordered_map<std::string, FileType> fileTypes_;  // by extension
  KnownLinks knownLinks_;
  std::string fileType_;                        // extension of a file, "" for anything else
  std::string storedType_;                      // LinkType, but "Document" for files of an unknown type
  std::unordered_set<std::string> hopDomains_;  // foreign domains entered, at most DomainHops
  RuleSet globalRules_;
  RuleSet siteRules_;
};

}  // namespace mv
