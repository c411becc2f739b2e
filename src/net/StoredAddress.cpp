#include "net/StoredAddress.h"

#include <algorithm>

#include "decoding/Encoding.h"

namespace mv {

namespace {

constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

bool isPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<signed char>(c) > 0; });
}

void replaceNuls(std::string& text) {
  for (auto at = text.find('\0'); at != std::string::npos; at = text.find('\0', at))
    text.replace(at, 1, kReplacementCharacter);
}

}  // namespace

std::string storedAddress(std::string address, std::string_view encoding) {
  if (isPlain(address)) return address;
  replaceNuls(address);
  const auto query = address.find('?');
  if (query == std::string::npos) return address;
  const auto end = std::min(address.find('#', query), address.size());
  const std::string encoded = encodedForQuery(std::string_view(address).substr(query, end - query), encoding);
  return address.replace(query, end - query, encoded);
}

}  // namespace mv
