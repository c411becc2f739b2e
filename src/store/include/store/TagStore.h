// The strings that mark a link in a page, kept in the table `valid_tag`. All functions raise DatabaseError.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "store/Id.h"

namespace mv {

struct Tag {
  Id id = 0;         // given by the database
  std::string text;  // exactly as typed
};

// In the order of their identifiers.
std::vector<Tag> listTags();
std::optional<Tag> findTag(Id id);
void insertTag(const Tag& tag);
// False: it is gone.
bool updateTag(const Tag& tag);
void deleteTag(Id id);

}  // namespace mv
