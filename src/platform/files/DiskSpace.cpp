#include "files/DiskSpace.h"

#include <filesystem>
#include <system_error>

namespace mv {
namespace {

std::optional<std::uint64_t> fixedSpace;

}  // namespace

std::uint64_t freeDiskSpace(const std::string& folder) {
  if (fixedSpace) return *fixedSpace;
  // A folder that is still to be made lies on the drive of its nearest parent.
  std::error_code error;
  for (std::filesystem::path existing = std::filesystem::absolute(folder, error);; existing = existing.parent_path()) {
    const std::filesystem::space_info drive = std::filesystem::space(existing, error);
    if (!error) return drive.available;
    if (existing == existing.parent_path()) return 0;
  }
}

void setFreeDiskSpace(std::optional<std::uint64_t> bytes) { fixedSpace = bytes; }

}  // namespace mv
