// Free space on drives.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace mv {

// Free space, in bytes, that the drive holding `folder` (UTF-8) offers this user; 0 when it cannot be told.
std::uint64_t freeDiskSpace(const std::string& folder);
// For tests: what every drive has free; nullopt brings the real drives back.
void setFreeDiskSpace(std::optional<std::uint64_t> bytes);

}  // namespace mv
