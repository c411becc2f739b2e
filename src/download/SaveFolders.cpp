#include "download/SaveFolders.h"

#include <set>
#include <string>

#include "app/Settings.h"
#include "base/BackgroundWork.h"
#include "files/Leftovers.h"
#include "store/PathStore.h"

namespace mv {

void clearSaveFolders() {
  // Its work shares nothing, so nobody waits for it.
  static BackgroundWork clearing;
  std::set<std::string> folders = allSitePaths();
  folders.insert(gDownloadFolder);
  clearing.start([folders = std::move(folders)] {
    for (const std::string& folder : folders) removeLeftovers(folder);
  });
}

}  // namespace mv
