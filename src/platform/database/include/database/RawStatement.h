// Statements from texts that are known at run time only: for tests, benches and tools. The program itself has no use
// for it, because whatever stands in such a text is read as SQL.
#pragma once

#include <string>

#include "database/Statement.h"

namespace mv {

Statement rawStatement(std::string sql);

}  // namespace mv
