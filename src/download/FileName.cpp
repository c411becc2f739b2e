#include "FileName.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>

#include "base/Text.h"

namespace mv {

namespace {

constexpr std::size_t kLongestName = 255;      // bytes, the limit of the common file systems
constexpr std::size_t kLongestExtension = 32;  // what follows the last dot of a longer one is no extension

bool isUnusable(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 || byte == 0x7f || c == '/' || c == '\\';
}

// Does a file system take this name for a device, whatever its extension is?
bool isDeviceName(std::string_view name) {
  std::string stem(name.substr(0, name.find('.')));
  while (!stem.empty() && stem.back() == ' ') stem.pop_back();
  std::transform(stem.begin(), stem.end(), stem.begin(),
                 [](char c) { return static_cast<char>(std::toupper(static_cast<unsigned char>(c))); });
  constexpr std::array<std::string_view, 4> kDevices{"CON", "PRN", "AUX", "NUL"};
  if (std::find(kDevices.begin(), kDevices.end(), stem) != kDevices.end()) return true;
  return stem.size() == 4 && (stem.starts_with("COM") || stem.starts_with("LPT")) && stem[3] >= '1' && stem[3] <= '9';
}

// The first bytes of `text`, at most `length`, with no UTF-8 character cut in two.
std::string_view wholeCharacters(std::string_view text, std::size_t length) {
  if (text.size() <= length) return text;
  std::size_t end = length;
  while (end > 0 && length - end < 3 && continuesCharacter(text[end])) --end;
  return text.substr(0, continuesCharacter(text[end]) ? length : end);  // no UTF-8 at all: any byte is a boundary
}

std::string shortenedName(std::string_view name) {
  if (name.size() <= kLongestName) return std::string(name);
  const std::size_t dot = name.rfind('.');
  std::string_view extension;
  if (dot != std::string_view::npos && dot > 0 && name.size() - dot <= kLongestExtension) extension = name.substr(dot);
  const std::string_view stem = name.substr(0, name.size() - extension.size());
  return std::string(wholeCharacters(stem, kLongestName - extension.size())).append(extension);
}

}  // namespace

std::string cleanFileName(std::string_view name) {
  std::string clean(name);
  std::replace_if(clean.begin(), clean.end(), isUnusable, '_');
  if (clean == "." || clean == ".." || isDeviceName(clean)) clean.insert(0, 1, '_');
  return shortenedName(clean);
}

}  // namespace mv
