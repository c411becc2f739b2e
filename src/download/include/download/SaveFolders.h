// The folders that files are saved to.
#pragma once

namespace mv {

// Removes what killed runs have left in the folders of all sites, off the thread. Raises DatabaseError.
void clearSaveFolders();

}  // namespace mv
