// The folders of a site: its default folder and the folders of its file types.
#pragma once

#include <cstdint>
#include <string>

#include "store/Id.h"

namespace mv {

class clsPath {
 public:
  Id SiteID = 0;
  std::string Path;  // UTF-8; what checkPath acts on, and the result of GetPathForFileType

  // Makes sure that the folder `Path` exists, missing parents included. A file of that name counts as existing. Raises
  // FileError when the folder cannot be created; any other failure of the look-up is a message box, "createPath".
  void checkPath();

  // The site's own folder for a file type, "none" when there is none. Also put into Path. Raises DatabaseError.
  std::string GetPathForFileType(std::int64_t fileTypeId);

  // Stores `folder` as the site's one folder for the file type, replacing an earlier one. Raises DatabaseError.
  // False, and nothing is stored, when the site or the type is gone.
  bool AddSitePath(const std::string& folder, std::int64_t fileTypeId);

  // Stores `folder` as the site's default folder; no row changes for a site not yet inserted. Raises DatabaseError.
  void AddDefaultPathForSite(const std::string& folder);
};

}  // namespace mv
