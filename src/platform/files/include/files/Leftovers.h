// What killed runs have left in the folders that files are saved to.
#pragma once

#include <string>

namespace mv {

// Deletes the temporary files in `folder` that no running program works on, this one included. A folder that is missing
// or refuses is passed over. Takes as long as listing the folder does.
void removeLeftovers(const std::string& folder);

}  // namespace mv
