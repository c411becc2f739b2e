// The names of files on their way to their final one, where they cannot do without: a file system without unnamed
// files, or a file that is to be replaced.
#pragma once

#include <string>
#include <string_view>

namespace mv {

// A path in `folder` that this program has not used yet, short enough to fit wherever the final name does.
std::string temporaryPath(const std::string& folder);
// Is `name`, without its folder, one of those, of whichever run?
bool isTemporaryName(std::string_view name);

}  // namespace mv
