// The login form definitions that the update server has offered, kept in the table `form_def_update`: which are known,
// and which of them have been retrieved. All functions raise DatabaseError.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "database/Database.h"

namespace mv {

struct FormUpdate {
  std::string name;  // told apart by it
  std::string releaseDate;
  std::string url;
};

bool hasFormUpdate(const std::string& name);
// As one that is still to be retrieved.
void insertFormUpdate(const FormUpdate& update);
// Marks every row of that name; the answer is their number.
std::int64_t markFormUpdateRetrieved(const std::string& name);

// Reads those still to be retrieved, one after another: there may be tens of thousands. They are the ones at the moment
// of construction. When the database is closed meanwhile next() raises kNotOpen.
class UnretrievedFormUpdates {
 public:
  UnretrievedFormUpdates();
  // nullopt behind the last.
  std::optional<FormUpdate> next();

 private:
  Recordset rows_;
};

}  // namespace mv
