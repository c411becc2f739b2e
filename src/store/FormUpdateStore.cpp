#include "store/FormUpdateStore.h"

#include "app/Settings.h"

namespace mv {

bool hasFormUpdate(const std::string& name) {
  return gDatabase.count("select count(*) as outCount from form_def_update where name = " + quoted(name)) > 0;
}

void insertFormUpdate(const FormUpdate& update) {
  gDatabase.execute("insert into form_def_update (name,release_date,retrieved,url) values (" + quoted(update.name) +
                    ", " + quoted(update.releaseDate) + ", " + quoted("no") + ", " + quoted(update.url) + ")");
}

std::int64_t markFormUpdateRetrieved(const std::string& name) {
  gDatabase.execute("update form_def_update set retrieved = " + quoted("yes") + " where name = " + quoted(name));
  return gDatabase.rowsAffected();
}

UnretrievedFormUpdates::UnretrievedFormUpdates()
    : rows_(gDatabase.query("select name, release_date, url from form_def_update where retrieved= " + quoted("no"))) {}

std::optional<FormUpdate> UnretrievedFormUpdates::next() {
  if (rows_.endOfRows()) return std::nullopt;
  FormUpdate update{rows_.text("name"), rows_.text("release_date"), rows_.text("url")};
  rows_.moveNext();
  return update;
}

}  // namespace mv
