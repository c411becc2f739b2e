#include "FileName.h"

#include <QCryptographicHash>
#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <filesystem>
#include <system_error>

#include "base/Text.h"

namespace mv {

namespace {

constexpr std::size_t kLongestName = 255;      // bytes, the limit of the common file systems
constexpr std::size_t kLongestExtension = 32;  // what follows the last dot of a longer one is no extension

constexpr qsizetype kHashBytes = 6;  // of a cut name; twice as many characters

bool isUnusable(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 || byte == 0x7f || c == '/' || c == '\\';
}

// The length of the character that turns the direction of a text at the begin of `text`; 0 when none stands there.
std::size_t turningLength(std::string_view text) {
  constexpr std::array<std::string_view, 12> kTurning{"\u061c", "\u200e", "\u200f", "\u202a", "\u202b", "\u202c",
                                                      "\u202d", "\u202e", "\u2066", "\u2067", "\u2068", "\u2069"};
  for (const std::string_view character : kTurning)
    if (text.starts_with(character)) return character.size();
  return 0;
}

std::string withoutTurning(std::string_view name) {
  std::string kept;
  for (std::size_t at = 0; at < name.size();) {
    const std::size_t turning = turningLength(name.substr(at));
    if (turning == 0) kept += name[at];
    at += std::max<std::size_t>(turning, 1);
  }
  return kept.empty() && !name.empty() ? "_" : kept;
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

// What tells a cut name from others that begin alike.
std::string mark(std::string_view wholeName) {
  const QByteArray hash = QCryptographicHash::hash(
      QByteArrayView(wholeName.data(), static_cast<qsizetype>(wholeName.size())), QCryptographicHash::Sha256);
  return "~" + hash.first(kHashBytes).toHex().toStdString();
}

std::string shortenedName(std::string_view name, std::string_view wholeName) {
  if (name.size() <= kLongestName) return std::string(name);
  const std::size_t dot = name.rfind('.');
  std::string_view extension;
  if (dot != std::string_view::npos && dot > 0 && name.size() - dot <= kLongestExtension) extension = name.substr(dot);
  const std::string end = mark(wholeName).append(extension);
  const std::string_view stem = name.substr(0, name.size() - extension.size());
  return std::string(wholeCharacters(stem, kLongestName - end.size())).append(end);
}

}  // namespace

std::string cleanFileName(std::string_view name) {
  std::string clean(name);
  // Bytes on both sides of a removed character, pieces of broken ones, may make another.
  for (std::string before; before != clean;) {
    before = clean;
    clean = withoutTurning(before);
  }
  std::replace_if(clean.begin(), clean.end(), isUnusable, '_');
  if (clean == "." || clean == ".." || isDeviceName(clean)) clean.insert(0, 1, '_');
  return shortenedName(clean, name);
}

std::string filePath(const std::string& folder, std::string_view name) {
  return (std::filesystem::path(folder) / cleanFileName(name)).string();
}

bool fileExists(const std::string& path) {
  std::error_code error;
  const std::filesystem::file_status found = std::filesystem::status(path, error);
  return std::filesystem::exists(found) && !std::filesystem::is_directory(found);
}

}  // namespace mv
