// The texts of the update server, each read by every format.
#include <string>

#include "Fuzz.h"
#include "help/FeedParsers.h"

namespace {

void readOverview(std::string_view overview) {
  mv::holdsEndMark(overview);
  for (std::string_view rest = overview;;) {
    const std::size_t before = rest.size();
    const auto line = mv::takeOverviewLine(rest);
    if (!line) break;
    mvfuzz::require(rest.size() < before, "an overview's line is taken off");
    if (const auto entry = mv::readDefinitionEntry(*line))
      mvfuzz::require(!entry->name.empty(), "a definition has a name");
    mv::readTopicEntry(*line);
  }
}

void readDefinition(const std::string& text) {
  std::string_view rest = text;
  for (std::size_t before = rest.size(); mv::takeDefinitionRecord(rest); before = rest.size())
    mvfuzz::require(rest.size() < before, "a definition's record is taken off");
}

}  // namespace

void mvfuzz::fuzzOne(std::string_view input) {
  const std::string text = mv::crLfEnds(input);
  require(mv::crLfEnds(text) == text, "line ends are put in order once");
  readOverview(text);
  readDefinition(text);
  mv::readHelpTopic(text);
  if (const auto news = mv::readNewsMessage(text))
    require(news->text.size() <= 4 * text.size() + 4, "a message's length");
  mv::whyRefused({input}, text);
}
