#include "catalog/clsPath.h"

#include <filesystem>
#include <string_view>
#include <system_error>

#include "app/UserNotice.h"
#include "files/AtomicFile.h"
#include "store/PathStore.h"

namespace mv {

namespace {

// Failures of the look-up that mean "there is no such folder yet". A name that is too long is among them: making the
// folder then fails with a description of its own, which reaches the caller.
bool meansMissing(const std::error_code& error) {
  return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory ||
         error == std::errc::invalid_argument || error == std::errc::filename_too_long;
}

void makeFolder(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (!error && !std::filesystem::exists(folder, error) && !error) error = make_error_code(std::errc::invalid_argument);
  if (error) throw FileError(error.value(), "The folder " + folder + " cannot be created: " + error.message());
}

}  // namespace

void clsPath::checkPath() {
  std::error_code error;
  const std::filesystem::file_status found = std::filesystem::status(Path, error);
  if (std::filesystem::exists(found)) return;
  if (!error || meansMissing(error)) {
    makeFolder(Path);
    return;
  }
  const std::string text = "createPath\r\n\r\n" + std::to_string(error.value()) + " - " + error.message();
  notifyUser({{}, text, NoticeIcon::None});
}

std::string clsPath::GetPathForFileType(std::int64_t fileTypeId) {
  Path = findSitePath(SiteID, fileTypeId).value_or("none");
  return Path;
}

bool clsPath::AddSitePath(const std::string& folder, std::int64_t fileTypeId) {
  return saveSitePath(SiteID, fileTypeId, folder);
}

void clsPath::AddDefaultPathForSite(const std::string& folder) { saveDefaultSitePath(SiteID, folder); }

}  // namespace mv
