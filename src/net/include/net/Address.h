// Rules of addresses as the program keeps them: with or without scheme, perhaps with user information.
#pragma once

#include <string>
#include <string_view>

namespace mv {

// `address` without a leading "http://" or "https://" (exactly so written).
std::string_view withoutScheme(std::string_view address);

// The part behind the last "/"; "" when there is none.
std::string_view lastSegment(std::string_view address);

// "http://" + user + ":" + password + "@" + address (without scheme and without user information of its own). In user
// and password every byte but the letters, digits and "-._~" is percent-encoded, so that neither ends the part it
// stands in.
std::string withCredentials(std::string_view address, std::string_view user, std::string_view password);

// For narrow labels: more than 40 characters become the first 18, "..." and the last 18. Never cuts a character.
std::string shortened(std::string_view address);

}  // namespace mv
