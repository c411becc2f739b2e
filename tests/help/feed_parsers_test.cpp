// The feeds' texts, as they are meant to be and as a bad server or a broken line delivers them.

#include <gtest/gtest.h>

#include <vector>

#include "help/FeedParsers.h"

namespace {

using namespace mv;
using Strings = std::vector<std::string>;

std::string shown(const DefinitionRecord& record) {
  if (const auto* form = std::get_if<FormRecord>(&record))
    return "form " + form->name + "|" + form->description + "|" + form->formType;
  const auto& f = std::get<FieldRecord>(record);
  return "field " + f.name + "|" + f.logicalNumber + "|" + f.searchString + "|" + f.suppliedByUser + "|" + f.prompt +
         "|" + f.fieldName + "|" + f.fieldValue;
}

// Every line of an overview up to its end mark.
Strings overviewLines(const std::string& overview) {
  const std::string text = withCrLf(overview);
  std::string_view rest = text;
  Strings lines;
  while (const auto line = takeOverviewLine(rest)) lines.emplace_back(*line);
  return lines;
}

// The records, and "..." when something is left that is none.
Strings records(const std::string& update) {
  const std::string text = withCrLf(update);
  std::string_view rest = text;
  Strings found;
  while (const auto record = takeDefinitionRecord(rest)) found.push_back(shown(*record));
  if (!rest.empty()) found.emplace_back("...");
  return found;
}

TEST(FeedParsers, LineEnds) {
  EXPECT_EQ(withCrLf("a\nb\n"), "a\r\nb\r\n");
  EXPECT_EQ(withCrLf("a\r\nb\nc"), "a\r\nb\nc") << "a feed with CR LF keeps its other line feeds";
  EXPECT_EQ(crLfEnds("\na\r\nb\n\n\r"), "\r\na\r\nb\r\n\r\n\r");
  EXPECT_EQ(withCrLf(""), "");
}

TEST(FeedParsers, AnOverviewEndsAtItsMark) {
  const std::pair<std::string, Strings> cases[] = {
      {"a\r\nb\r\n---END---\r\nbehind\r\n", {"a", "b"}},
      {"a\nb\n---END---\n", {"a", "b"}},
      {"a\r\n\r\n---END---", {"a", ""}},
      {"a ---END---\r\nb", {"a ---END---", "b"}},
      {"---END---", {}},
      {"", {}},
  };
  for (const auto& [overview, lines] : cases) EXPECT_EQ(overviewLines(overview), lines) << overview;
  EXPECT_TRUE(holdsEndMark("x ---END--- y"));
  EXPECT_FALSE(holdsEndMark("<html>---END--</html>"));
}

TEST(FeedParsers, DefinitionEntries) {
  const std::string longName(100'000, 'n');
  const std::pair<std::string, std::string> cases[] = {
      {"Forum,2001-02-03,http://h/f,x.txt", "Forum|2001-02-03|http://h/f,x.txt"},
      {"Forum,,", "Forum||"},
      {longName + ",d,u", longName + "|d|u"},
      {"\"); drop table form; --,\",\"", "\"); drop table form; --|\"|\""},
      {",d,u", ""},
      {"Forum,2001", ""},
      {"", ""},
  };
  for (const auto& [line, expected] : cases) {
    const auto entry = readDefinitionEntry(line);
    EXPECT_EQ(entry ? entry->name + "|" + entry->releaseDate + "|" + entry->url : "", expected);
  }
}

TEST(FeedParsers, TopicEntriesCutTheAddressByThePlaceOfTheComment) {
  const std::pair<std::string, std::string> cases[] = {
      {"12, http://h/t12.txt--Starting", "12|http://h/t12.txt"},
      {"12, http://h/t12.txt--", "12|http://h/t12.txt"},
      {"12, http://h/a--b.txt--Two", "12|http://h/a"},
      {"7, http://h/t7.txt--One digit", "7|http://h/t7.tx"},
      {"123, http://h/t.txt--Three digits", "123|http://h/t.txt-"},
      {"12, http://h/t12.txt", ""},
      {"1x, http://h/t.txt--No number", ""},
      {"1 or 1=1, http://h/t.txt--No number", ""},
      {"99999999999, http://h/t.txt--Too large", ""},
      {"12 http://h/t.txt--No comma", ""},
      {"--", ""},
      {"12,--", ""},
      {"1,--", ""},
      {"", ""},
  };
  for (const auto& [line, expected] : cases) {
    const auto entry = readTopicEntry(line);
    EXPECT_EQ(entry ? std::to_string(entry->id) + "|" + entry->url : "", expected) << line;
  }
}

TEST(FeedParsers, HelpTopics) {
  const std::pair<std::string, std::string> cases[] = {
      {"12\r\nSites\r\nStarting\r\nLine one\r\n\r\nline two", "12|Sites|Starting|Line one\r\n\r\nline two"},
      {"12\nSites\nStarting\nLine one\n", "12|Sites|Starting|Line one\r\n"},
      {"12\nSites\nStarting", "12|Sites|Starting|"},
      {"12\n\n\n", "12|||"},
      {"12\nSites\n", ""},
      {"12", ""},
      {"twelve\nSites\nStarting\ntext", ""},
      {"1); delete from help_info --\nSites\nStarting\ntext", ""},
      {"<html><body>\nNot\nFound\n</body>", ""},
      {"", ""},
  };
  for (const auto& [file, expected] : cases) {
    const auto topic = readHelpTopic(withCrLf(file));
    EXPECT_EQ(topic ? std::to_string(topic->id) + "|" + topic->subject + "|" + topic->topic + "|" + topic->text : "",
              expected)
        << file;
  }
}

const std::string kForm = "---START FORM---\r\nForum\r\nA forum\r\nAuthentication\r\n---END FORM---\r\n";
const std::string kField =
    "---START FIELD---\r\nUser\r\n1\r\nname=\"u\"\r\nyes\r\nNO PROMPT\r\nuser\r\nanna\r\n---END FIELD---\r\n";
const std::string kFieldWithoutValue =
    "---START FIELD---\r\nAddress\r\n2\r\naction=\r\nno\r\nWhere?\r\nhref\r\n---END FIELD---\r\n";
const std::string kFormShown = "form Forum|A forum|Authentication";
const std::string kFieldShown = "field User|1|name=\"u\"|yes||user|anna";

TEST(FeedParsers, DefinitionRecords) {
  std::string withLf = kForm + kField;
  std::erase(withLf, '\r');
  const std::pair<std::string, Strings> cases[] = {
      {kForm + kField + kFieldWithoutValue + kForm,
       {kFormShown, kFieldShown, "field Address|2|action=|no|Where?|href|", kFormShown}},
      {withLf, {kFormShown, kFieldShown}},
      {"\r\n" + kForm + "\r\n\r\n" + kField + "\r\n", {kFormShown, kFieldShown}},
      {kForm + kField.substr(0, kField.size() - 2), {kFormShown, kFieldShown}},
      {kForm + kField.substr(0, kField.size() - 20), {kFormShown, "..."}},
      {kForm + kField + kForm.substr(0, 30), {kFormShown, kFieldShown, "..."}},
      {kForm + "---START FIELD---\r\n---END FIELD---\r\n" + kForm, {kFormShown, "..."}},
      {kForm + "what is this?\r\n" + kField, {kFormShown, "..."}},
      {"<html>not found</html>", {"..."}},
      {"", {}},
  };
  for (const auto& [update, expected] : cases) EXPECT_EQ(records(update), expected) << update;
}

TEST(FeedParsers, Messages) {
  const std::string longText(1'200'000, 'm');
  const std::string umlauts = [] {
    std::string text;
    for (int i = 0; i < 1'000'000; ++i) text += "\xc3\xbc";
    return text;
  }();
  const std::pair<std::string, std::string> cases[] = {
      {"7\nhttp://h/news\nOne\ntwo\n", "7|http://h/news|One\r\ntwo\r\n"},
      {"7\r\nhttp://h/news\r\nOne\r\ntwo\r\n", "7|http://h/news|One\r\ntwo\r\n"},
      {"7\n\nNo address\n", "7||No address\r\n"},
      {"7\nhttp://h/news\n\n", "7|http://h/news|\r\n"},
      {"7\nhttp://h/news\nNo line break behind it", ""},
      {"7\nhttp://h/news\n", ""},
      {"7\nhttp://h/news", ""},
      {"7", ""},
      {"<html>\n<body>\nnot found\n", ""},
      {"99999999999\nu\ntext\n", ""},
      {"", ""},
      {"7\nu\n" + longText + "\n", "7|u|" + longText.substr(0, 999'999)},
      {"7\nu\n" + umlauts + "\n", "7|u|" + umlauts.substr(0, 2 * 999'999)},
  };
  for (const auto& [file, expected] : cases) {
    const auto message = readNewsMessage(file);
    EXPECT_TRUE((message ? std::to_string(message->id) + "|" + message->url + "|" + message->text : "") == expected)
        << file.substr(0, 60);
  }
}

}  // namespace
