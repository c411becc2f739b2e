// The text feeds of the update server, read record by record. Pure functions: nothing here asks the database or the
// network. Texts are UTF-8; a feed may hold anything.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "store/FormUpdateStore.h"
#include "store/HelpStore.h"

namespace mv {

// `text` with every LF that follows no CR turned into CR LF.
std::string crLfEnds(std::string_view text);
// The same for a text without any CR LF; a text that holds one is left as it is.
std::string withCrLf(std::string text);

// Cuts the first line, ended by CR LF, off the front of `rest`.
std::string_view takeLine(std::string_view& rest);

// An overview is closed by a line of its own; one without it is no overview (a server's error page, half a file).
bool holdsEndMark(std::string_view overview);
// Takes the next line of an overview off the front of `rest`; nullopt at the end mark, or where the text ends.
std::optional<std::string_view> takeOverviewLine(std::string_view& rest);

// Line of the form-definition overview: name,release date,address. nullopt for a line without two commas or without a
// name.
std::optional<FormUpdate> readDefinitionEntry(std::string_view line);

// Line of the help overview: id, address--comment.
struct TopicEntry {
  std::int32_t id = 0;
  std::string url;
};
// The address is as many characters long as "--" stands behind the fourth character of the line: with ids of two digits
// that is all of it. nullopt for a line without number, comma or "--".
std::optional<TopicEntry> readTopicEntry(std::string_view line);

// A topic's file with CR LF line ends: id, subject, topic, and the text to the end. nullopt with fewer than three lines
// or without a number.
std::optional<HelpInfo> readHelpTopic(std::string_view file);

struct FormRecord {
  std::string name;
  std::string description;
  std::string formType;
};
struct FieldRecord {
  std::string name;
  std::string logicalNumber;
  std::string searchString;
  std::string suppliedByUser;
  std::string prompt;
  std::string fieldName;
  std::string fieldValue;
};
using DefinitionRecord = std::variant<FormRecord, FieldRecord>;
// Takes the next record of a form definition with CR LF line ends off the front of `rest`; the fields that follow a
// form are its own. nullopt when there is no further one: `rest` is then empty, or begins with what is no whole record.
std::optional<DefinitionRecord> takeDefinitionRecord(std::string_view& rest);

struct NewsMessage {
  std::int32_t id = 0;
  std::string url;
  std::string text;  // at most 999,999 characters, lines ended by CR LF
};
// nullopt without a number in the first line, or without a line break behind the begin of the message.
std::optional<NewsMessage> readNewsMessage(std::string_view file);

// Why a row of these lines, and perhaps a text of any length, is not imported: a double quote or a NUL character in
// one of them, or a line that no list could show. "" when nothing is wrong.
std::string whyRefused(std::initializer_list<std::string_view> lines, std::string_view text = {});

}  // namespace mv
