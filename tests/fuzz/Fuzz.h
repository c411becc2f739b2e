// What the fuzz targets share. A target is a source of this folder that defines fuzzOne(); scripts/fuzz builds and runs
// it under libFuzzer with AddressSanitizer and UndefinedBehaviorSanitizer.
#pragma once

#include <string_view>

namespace mvfuzz {

// One input. Anything may stand in it. An exception that escapes is a finding.
void fuzzOne(std::string_view input);

// Ends the run as a finding unless `holds`; `promise` says what was broken.
void require(bool holds, const char* promise);

// Cuts the part up to the next record separator (0x1E) off the front of `rest`; without one, all of it.
std::string_view takePart(std::string_view& rest);

// Well-formed UTF-8 throughout.
bool isUtf8(std::string_view text);

}  // namespace mvfuzz
