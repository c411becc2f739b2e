// What is derived from the texts that a user types for a site.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace mv {

// Drops a leading "http://", exactly so written.
std::string siteLocation(std::string_view typed);
// The text before the first "/".
std::string siteDomain(std::string_view location);
// The leading number, 0 when there is none; never more than 100.
std::int64_t siteHops(std::string_view typed);
// `typed` when it has 1 to 199 characters, else "NewFile".
std::string siteBaseName(const std::string& typed);

}  // namespace mv
