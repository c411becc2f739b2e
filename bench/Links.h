// A link table as years of harvests leave it.
#pragma once

#include <cstdint>
#include <string>

#include "store/Id.h"

namespace mvbench {

// Stores `rows` links of the site in the open database, behind those that are there: files and pages, all of them
// handled. Indexes are dropped; ensureIndexes() makes them anew.
void storeHandledLinks(mv::Id site, const std::string& host, std::int64_t rows);

}  // namespace mvbench
