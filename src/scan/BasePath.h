// Where a page's relative links are placed. All answers end with "/" and have no scheme, unless a base href has one.
#pragma once

#include <string>
#include <string_view>

namespace mv {

// `path`, ended by "/".
std::string endedBySlash(std::string_view path);

// Of the page at `address` (without scheme; "": the site's start page, `domain` itself). With `alternateMatchpath` a
// folder that is named like a page is left too.
std::string basePathOf(std::string_view address, std::string_view domain, bool alternateMatchpath);

// The folder in which the page of `address` lies.
std::string folderOf(std::string_view address);

}  // namespace mv
