// The folders of a site: its default folder, and those of its file types, kept in the table `site_paths`. Folders are
// full paths in UTF-8. All functions raise DatabaseError.
#pragma once

#include <optional>
#include <set>
#include <string>

#include "store/Id.h"

namespace mv {

// The site's own folder for a file type.
std::optional<std::string> findSitePath(Id siteId, Id fileTypeId);
// Replaces the site's folder for the file type, or gives it one. False, and nothing is stored, when the site or the
// type is gone: the row would belong to whatever gets that number next.
[[nodiscard]] bool saveSitePath(Id siteId, Id fileTypeId, const std::string& folder);
// Every folder that a site saves files to, each once.
std::set<std::string> allSitePaths();
// Sets the default folder of a stored site; of any other nothing is stored.
void saveDefaultSitePath(Id siteId, const std::string& folder);

}  // namespace mv
