#include "help/FeedParsers.h"

#include <algorithm>
#include <charconv>

#include "base/Text.h"

namespace mv {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kEndMark = "---END---";
constexpr std::string_view kStartForm = "---START FORM---";
constexpr std::string_view kEndForm = "---END FORM---";
constexpr std::string_view kStartField = "---START FIELD---";
constexpr std::string_view kEndField = "---END FIELD---";
constexpr std::string_view kNoPrompt = "NO PROMPT";
constexpr std::string_view kBeforeComment = "--";
constexpr std::size_t kAddressLead = 4;       // "12, "
constexpr std::size_t kLongestLine = 10'000;  // bytes
constexpr std::size_t kLongestMessage = 999'999;

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlank = " \t\r";
  const auto start = text.find_first_not_of(kBlank);
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(kBlank) - start + 1);
}

std::optional<std::int32_t> wholeNumber(std::string_view text) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

// Lines of one record. Once one is missing the record is broken, and stays so.
class RecordLines {
 public:
  explicit RecordLines(std::string_view rest) : rest_(rest) {}

  std::string text() { return std::string(next()); }
  void expect(std::string_view mark) {
    if (next() != mark) broken_ = true;
  }
  bool nextIs(std::string_view mark) const {
    auto after = rest_;
    return takeLine(after) == mark;
  }
  bool isBroken() const { return broken_; }
  std::string_view rest() const { return rest_; }

 private:
  std::string_view next() {
    if (rest_.empty()) broken_ = true;
    return takeLine(rest_);
  }

  std::string_view rest_;
  bool broken_ = false;
};

FormRecord readForm(RecordLines& lines) {
  lines.expect(kStartForm);
  FormRecord form;
  form.name = lines.text();
  form.description = lines.text();
  form.formType = lines.text();
  lines.expect(kEndForm);
  return form;
}

FieldRecord readField(RecordLines& lines) {
  lines.expect(kStartField);
  FieldRecord field;
  field.name = lines.text();
  field.logicalNumber = lines.text();
  field.searchString = lines.text();
  field.suppliedByUser = lines.text();
  field.prompt = lines.text();
  if (field.prompt == kNoPrompt) field.prompt.clear();
  field.fieldName = lines.text();
  if (!lines.nextIs(kEndField)) field.fieldValue = lines.text();
  lines.expect(kEndField);
  return field;
}

}  // namespace

std::string crLfEnds(std::string_view text) {
  std::string result;
  result.reserve(text.size() + text.size() / 16);
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\n' && (at == 0 || text[at - 1] != '\r')) result += '\r';
    result += text[at];
  }
  return result;
}

std::string withCrLf(std::string text) {
  return text.find(kLineEnd) == std::string::npos ? crLfEnds(text) : std::move(text);
}

std::string_view takeLine(std::string_view& rest) {
  const auto end = rest.find(kLineEnd);
  const auto line = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + kLineEnd.size());
  return line;
}

bool holdsEndMark(std::string_view overview) { return overview.find(kEndMark) != std::string_view::npos; }

std::optional<std::string_view> takeOverviewLine(std::string_view& rest) {
  if (rest.empty()) return std::nullopt;
  const auto line = takeLine(rest);
  if (line == kEndMark) return std::nullopt;
  return line;
}

std::optional<FormUpdate> readDefinitionEntry(std::string_view line) {
  const auto first = line.find(',');
  if (first == std::string_view::npos || first == 0) return std::nullopt;
  const auto second = line.find(',', first + 1);
  if (second == std::string_view::npos) return std::nullopt;
  return FormUpdate{std::string(line.substr(0, first)), std::string(line.substr(first + 1, second - first - 1)),
                    std::string(line.substr(second + 1))};
}

std::optional<TopicEntry> readTopicEntry(std::string_view line) {
  const auto comma = line.find(',');
  const auto comment = line.find(kBeforeComment);
  if (comma == std::string_view::npos || comment == std::string_view::npos || comment < kAddressLead)
    return std::nullopt;
  const auto id = wholeNumber(trimmed(line.substr(0, comma)));
  const auto start = comma + 2;
  if (!id || start > line.size()) return std::nullopt;
  return TopicEntry{*id, std::string(line.substr(start, comment - kAddressLead))};
}

std::optional<HelpInfo> readHelpTopic(std::string_view file) {
  RecordLines lines(file);
  const auto id = wholeNumber(trimmed(lines.text()));
  HelpInfo topic;
  topic.subject = lines.text();
  topic.topic = lines.text();
  if (lines.isBroken() || !id) return std::nullopt;
  topic.id = *id;
  topic.text = std::string(lines.rest());
  return topic;
}

std::optional<DefinitionRecord> takeDefinitionRecord(std::string_view& rest) {
  while (rest.starts_with(kLineEnd)) rest.remove_prefix(kLineEnd.size());
  RecordLines lines(rest);
  std::optional<DefinitionRecord> record;
  if (lines.nextIs(kStartForm))
    record = readForm(lines);
  else if (lines.nextIs(kStartField))
    record = readField(lines);
  if (!record || lines.isBroken()) return std::nullopt;
  rest = lines.rest();
  return record;
}

std::optional<NewsMessage> readNewsMessage(std::string_view file) {
  const auto idEnd = file.find('\n');
  if (idEnd == std::string_view::npos) return std::nullopt;
  const auto id = wholeNumber(trimmed(file.substr(0, idEnd)));
  const auto urlEnd = file.find('\n', idEnd + 1);
  if (!id || urlEnd == std::string_view::npos) return std::nullopt;
  auto text = file.substr(urlEnd + 1);
  if (text.find('\n') == std::string_view::npos) return std::nullopt;
  text = text.substr(0, advanceCharacters(text, 0, kLongestMessage));
  return NewsMessage{*id, std::string(trimmed(file.substr(idEnd + 1, urlEnd - idEnd - 1))), crLfEnds(text)};
}

std::string whyRefused(std::initializer_list<std::string_view> lines, std::string_view text) {
  const auto anyHolds = [&](char character) {
    const auto holds = [character](std::string_view one) { return one.find(character) != std::string_view::npos; };
    return holds(text) || std::any_of(lines.begin(), lines.end(), holds);
  };
  if (anyHolds('"')) return "it holds a double quote";
  if (anyHolds('\0')) return "it holds a NUL character";
  const auto isTooLong = [](std::string_view line) { return line.size() > kLongestLine; };
  return std::any_of(lines.begin(), lines.end(), isTooLong) ? "it holds too long a line" : "";
}

}  // namespace mv
