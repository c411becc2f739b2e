// The link store: every statement on the table `link`. All run on gDatabase and raise DatabaseError, unless something
// else is said.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "database/Database.h"
#include "store/EscapedAddress.h"
#include "store/Id.h"

namespace mv {

// What `link.link_type` holds.
inline constexpr std::string_view kDocumentLink = "Document";
inline constexpr std::string_view kDirectoryLink = "Directory";
inline constexpr std::string_view kFileLink = "File";
inline constexpr std::string_view kEmailLink = "Email Address";

struct LinkRow {
  std::int64_t id = 0;
  Id siteId = 0;
  EscapedAddress url;    // without scheme
  std::string linkType;  // one of those above
  std::string userName;  // of the site when the link was found
  std::string password;
  std::string fileType;  // "" for links that are no file
};

// The sequence of link ids gives no id, for a reason that does not pass: further links would fare no better.
class NoLinkId : public DatabaseError {
 public:
  explicit NoLinkId(const DatabaseError& reason) : DatabaseError(reason) {}
};

// Links of a site in the engine's order, as they were at the moment of the question, read one by one. Must not outlive
// the database's closing.
class LinkRows {
 public:
  // The next link; none behind the last.
  std::optional<LinkRow> next();
  bool atEnd() const { return rows_.endOfRows(); }

 private:
  friend LinkRows waitingPages(Id siteId);
  friend LinkRows unfinishedFiles(Id siteId);
  using Reader = LinkRow (*)(const Recordset&);
  LinkRows(Recordset rows, Reader read) : rows_(std::move(rows)), read_(read) {}

  Recordset rows_;
  Reader read_;
};

// Pages that no scan has fetched yet: `id` and `url` are read.
LinkRows waitingPages(Id siteId);
// Files that no download has taken up to the end: `linkType` and `siteId` are not read.
LinkRows unfinishedFiles(Id siteId);

// Is the address stored, for whichever site?
bool isLinkStored(const EscapedAddress& url);
// Stores a link that waits, under the next id of the sequence "link_id", which is returned; `link.id` is not read. Id
// and row become durable together; an id that the table refuses is used up. Raises NoLinkId too.
std::int64_t insertLink(const LinkRow& link);
// The link is fetched, or given up: it is not taken up again.
void markLinkDone(std::int64_t id);
// All of them or, raising, none.
void markLinksDone(const std::vector<std::int64_t>& ids);

// Stays the same as long as every address that was stored is certain to be there still. None when that cannot be told:
// whoever reads or writes next will learn why. Raises nothing.
std::optional<std::int64_t> linkLossMark();

// For clearing. The oldest and the newest id, 0 in an empty table.
std::int64_t oldestLink();
std::int64_t newestLink();
// Deletes links of the site up to id `newest`, at most `most`; how many they were.
std::int64_t deleteLinks(Id siteId, std::int64_t newest, std::int64_t most);
// The same for links of sites that are not stored. As quick as there are few sites.
std::int64_t deleteOrphanedLinks(std::int64_t newest, std::int64_t most);
void deleteAllLinks();
// Like deleteLinks(), of whichever site, the oldest first.
std::int64_t deleteOldestLinks(std::int64_t newest, std::int64_t most);

}  // namespace mv
