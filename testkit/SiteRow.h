// Rows in gDatabase.
#pragma once

#include <string>
#include <vector>

#include "store/Id.h"

namespace mvtest {

// Inserts rows into "table (column, ...)", every value stored as the text or number that it is.
using RowValues = std::vector<std::string>;
void insert(const std::string& into, const std::vector<RowValues>& rows);

// Inserts a row for each number `i` from `first` to `last`; `values` is an expression in `i` for every column.
void insertNumbered(const std::string& into, long first, long last, const std::string& values);

// Inserts a site with usable limits (0 KB to 24 MB, 50 pages) that fetches files of these types, and returns its id.
mv::Id addSite(const std::string& location, const std::string& downloadPath,
               const std::vector<std::string>& extensions = {});

// The site fetches files of every type.
void allowEveryType(mv::Id site);

// "column = value, ..." for a site's row.
void setSite(mv::Id id, const std::string& assignments);

}  // namespace mvtest
