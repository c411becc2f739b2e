#include "store/TagStore.h"

#include "ReadAll.h"
#include "app/Settings.h"

namespace mv {

namespace {

Tag tagOf(const Recordset& rows) { return {rows.number("id"), rows.text("tag")}; }

}  // namespace

std::vector<Tag> listTags() { return readAll(gDatabase.query("select id, tag from valid_tag order by id"), tagOf); }

std::optional<Tag> findTag(Id id) {
  return readFirst(gDatabase.query("select id, tag from valid_tag where id = " + number(id)), tagOf);
}

void insertTag(const Tag& tag) { gDatabase.execute("insert into valid_tag (tag) values (" + quoted(tag.text) + ") "); }

bool updateTag(const Tag& tag) {
  gDatabase.execute("update valid_tag set tag = " + quoted(tag.text) + " where id = " + number(tag.id));
  return gDatabase.rowsAffected() > 0;
}

void deleteTag(Id id) { gDatabase.execute("delete from valid_tag where id = " + number(id)); }

}  // namespace mv
