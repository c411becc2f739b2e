#include "store/FilterStore.h"

#include "ReadAll.h"
#include "app/Settings.h"

namespace mv {

namespace {

Filter filterOf(const Recordset& rows) {
  return {rows.number("id"), rows.text("name"), rows.text("description"), unlessNo(rows.text("global"))};
}

void writeRules(Id filter, const std::vector<Id>& rules) {
  gDatabase.execute("delete from filter_rule_xref where filter_id = " + number(filter));
  for (const Id rule : rules)
    gDatabase.execute("insert into filter_rule_xref (filter_id, rule_id) values (" + number(filter) + ", " +
                      number(rule) + ")");
}

}  // namespace

std::vector<Filter> listFilters() {
  return readAll(gDatabase.query("select id, name, description, global from filter order by id"), filterOf);
}

std::optional<Filter> findFilter(Id id) {
  return readFirst(gDatabase.query("select id, name, description, global from filter where id = " + number(id)),
                   filterOf);
}

void insertFilter(const Filter& filter, const std::vector<Id>& rules) {
  Transaction rowAndRules(gDatabase);
  gDatabase.execute("insert into filter (id, name, global, description) values (" + number(filter.id) + ", " +
                    quoted(filter.name) + ", " + quoted(yesNo(filter.global)) + ", " + quoted(filter.description) +
                    ")");
  writeRules(filter.id, rules);
  rowAndRules.commit();
}

bool updateFilter(const Filter& filter, const std::vector<Id>& rules) {
  Transaction rowAndRules(gDatabase);
  gDatabase.execute("update filter set name = " + quoted(filter.name) + ", global = " + quoted(yesNo(filter.global)) +
                    ", description = " + quoted(filter.description) + " where id = " + number(filter.id));
  if (gDatabase.rowsAffected() == 0) return false;
  writeRules(filter.id, rules);
  rowAndRules.commit();
  return true;
}

void deleteFilter(Id id) {
  gDatabase.execute("delete from filter where id = " + number(id));
  gDatabase.execute("delete from site_filter_xref where filter_id = " + number(id));
  gDatabase.execute("delete from filter_rule_xref where filter_id = " + number(id));
}

}  // namespace mv
