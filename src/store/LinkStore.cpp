#include "store/LinkStore.h"

#include <utility>

#include "app/Settings.h"
#include "store/NoneOf.h"
#include "store/Sequence.h"

namespace mv {

namespace {

// What runs for every link.
constexpr FixedStatement kFind("select count(*) as outCount from link where url = \1");
constexpr FixedStatement kInsert(
    "insert into link (site_id,url,link_type,username,password,id,status,file_type) values (\1, \1, \1, \1, \1, \1, "
    "\"False\", \1)");
constexpr FixedStatement kMarkDone("update link set status = \"Done\" where id = \1");

LinkRow readPage(const Recordset& row) {
  LinkRow link;
  link.id = row.number("id");
  link.url = EscapedAddress::read(row);
  return link;
}

LinkRow readFile(const Recordset& row) {
  LinkRow link = readPage(row);
  link.userName = row.text("username");
  link.password = row.text("password");
  link.fileType = row.text("file_type");
  return link;
}

std::int64_t drawLinkId() {
  try {
    return drawSequenceValue("link_id");
  } catch (const DatabaseError& error) {
    if (error.mayPass()) throw;
    throw NoLinkId(error);
  }
}

void insertRow(const LinkRow& link, std::int64_t id) {
  gDatabase.execute(kInsert,
                    {link.siteId, link.url.text(), link.linkType, link.userName, link.password, id, link.fileType});
}

// Those up to the link `newest`, at most `most`; how many they were.
std::int64_t deleteWhere(const Statement& condition, std::int64_t newest, std::int64_t most) {
  gDatabase.execute("delete from link where id in (select id from link where " + condition +
                    " and id <= " + number(newest) + " limit " + number(most) + ")");
  return gDatabase.rowsAffected();
}

}  // namespace

std::optional<LinkRow> LinkRows::next() {
  if (atEnd()) return std::nullopt;
  LinkRow link = read_(rows_);
  rows_.moveNext();
  return link;
}

// Walking past the finished links would cost every round of an old site a million rows: hence the condition on the
// status, and noneOf.
LinkRows waitingPages(Id siteId) {
  return {gDatabase.query("select id, status, site_id, url, link_type  from link where site_id = " + number(siteId) +
                          " and " +
                          noneOf("link_type", {kFileLink, kEmailLink}, "link",
                                 "site_id = " + number(siteId) + " and status = \"False\"") +
                          " and status = \"False\""),
          readPage};
}

LinkRows unfinishedFiles(Id siteId) {
  return {gDatabase.query("select id, status, site_id, link_type, url, username, password, file_type from link where "
                          "site_id = " +
                          number(siteId) + " and link_type = \"File\" and " +
                          noneOf("status", {"Done"}, "link", "site_id = " + number(siteId))),
          readFile};
}

bool isLinkStored(const EscapedAddress& url) { return gDatabase.count(kFind, {url.text()}) != 0; }

std::int64_t insertLink(const LinkRow& link) {
  Transaction idAndRow(gDatabase);
  try {
    const std::int64_t id = drawLinkId();
    insertRow(link, id);
    idAndRow.commit();
    return id;
  } catch (const DatabaseError& error) {
    // The id is made durable even when its row is refused: it must not be drawn again.
    if (!error.mayPass()) idAndRow.commit();
    throw;
  }
}

void markLinkDone(std::int64_t id) { gDatabase.execute(kMarkDone, {id}); }

void markLinksDone(const std::vector<std::int64_t>& ids) {
  Transaction together(gDatabase);
  for (const std::int64_t id : ids) markLinkDone(id);
  together.commit();
}

std::optional<std::int64_t> linkLossMark() {
  try {
    return gDatabase.invalidationCount("link", "url");
  } catch (const DatabaseError&) {
    return std::nullopt;
  }
}

std::int64_t oldestLink() { return gDatabase.query("select min(id) as oldest from link").number("oldest"); }

std::int64_t newestLink() { return gDatabase.query("select max(id) as newest from link").number("newest"); }

std::int64_t deleteLinks(Id siteId, std::int64_t newest, std::int64_t most) {
  return deleteWhere("site_id = " + number(siteId), newest, most);
}

// The ids are compared where they are stored: one that is no 32-bit integer, or none at all, is not taken for another.
// From one site's links to the next one's by the index.
std::int64_t deleteOrphanedLinks(std::int64_t newest, std::int64_t most) {
  return deleteWhere(
      "site_id in (with recursive present (value) as (select min(site_id) from link where site_id > -1 union all "
      "select (select min(site_id) from link where site_id > value) from present where value is not null) select value "
      "from present where value not in (select id from site))",
      newest, most);
}

std::int64_t deleteOldestLinks(std::int64_t newest, std::int64_t most) {
  return deleteWhere("id is not null", newest, most);
}

void deleteAllLinks() { gDatabase.execute("delete from link"); }

}  // namespace mv
