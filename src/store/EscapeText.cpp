#include "store/EscapeText.h"

#include <array>

namespace mv {

namespace {

struct Token {
  std::string_view character;
  std::string_view token;
};

constexpr std::array<Token, 5> kTokens{{
    {"'", "&MV1Q"},
    {"\"", "&MV2Q"},
    {"\n", "&LF"},
    {"\r", "&CR"},
    {"|", "&PIPE"},
}};

void replaceAll(std::string& text, std::string_view what, std::string_view by) {
  std::size_t found = text.find(what);
  if (found == std::string::npos) return;
  std::string result;
  std::size_t done = 0;
  for (; found != std::string::npos; found = text.find(what, done)) {
    result.append(text, done, found - done).append(by);
    done = found + what.size();
  }
  text = result.append(text, done);
}

}  // namespace

void escapeText(std::string_view mode, std::string& text) {
  if (mode == kRemoveQuotes)
    for (const Token& token : kTokens) replaceAll(text, token.character, token.token);
  else if (mode == kRestoreQuotes)
    for (const Token& token : kTokens) replaceAll(text, token.token, token.character);
}

}  // namespace mv
