#include "BasePath.h"

#include "net/Address.h"

namespace mv {

namespace {

// The whole when there is no "/".
std::string_view beforeLastSlash(std::string_view path) { return path.substr(0, path.rfind('/')); }

bool isNamedLikeAPage(std::string_view path) {
  return path.ends_with(".htm") || path.ends_with(".html") || path.ends_with(".shtml");
}

}  // namespace

std::string endedBySlash(std::string_view path) {
  std::string result(path);
  if (!result.ends_with('/')) result += '/';
  return result;
}

std::string basePathOf(std::string_view address, std::string_view domain, bool alternateMatchpath) {
  const std::string_view base = address.empty() ? domain : address;
  std::string_view path = base;
  if (path.ends_with('/')) path.remove_suffix(1);
  path = beforeLastSlash(path);
  if (path == domain) path = base;
  if (alternateMatchpath && isNamedLikeAPage(path)) path = beforeLastSlash(path);
  return endedBySlash(path);
}

std::string folderOf(std::string_view address) {
  address = withoutScheme(address);
  return endedBySlash(beforeLastSlash(address.substr(0, address.find_first_of("?#"))));
}

}  // namespace mv
