// Turns the user guide into the help topics of the shipped database: make_help <user-guide.md> <target.sql>
//
// "## Subject" and "### Topic" give the topics, in the order of the guide, numbered from 1000 up: the help server's
// numbers have two digits. What stands under a subject before its first topic is a topic of the subject's own name. The
// texts are plain: marks and pictures are dropped, table rows become lines. Whoever adds a section to the guide adds it
// to the help.

#include <fstream>
#include <iostream>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int kFirstId = 1000;
constexpr const char* kLineEnd = "\r\n";

struct Topic {
  std::string subject;
  std::string name;
  std::string text;
};

std::string replaced(const std::string& text, const char* pattern, const char* by) {
  return std::regex_replace(text, std::regex(pattern), by);
}

std::string trimmed(const std::string& text) { return replaced(text, R"(^\s+|\s+$)", ""); }

// Text outside of backticks: pictures go, links keep their text.
std::string withoutMarks(const std::string& text) {
  const std::string withoutPictures = replaced(text, R"(!\[[^\]]*\]\([^)]*\))", "");
  return replaced(replaced(withoutPictures, R"(\[([^\]]*)\]\([^)]*\))", "$1"), R"(\*\*)", "");
}

// A line without its marks. What stands between backticks stays as it is, with stars and brackets.
std::string plain(const std::string& line) {
  std::istringstream source(line);
  std::string text;
  bool isCode = false;
  for (std::string part; std::getline(source, part, '`'); isCode = !isCode) text += isCode ? part : withoutMarks(part);
  return trimmed(text);
}

using Cells = std::vector<std::string>;

// The cells of "| Edit | F2 | opens the editor |".
Cells cellsOf(const std::string& line) {
  std::istringstream source(trimmed(line).substr(1));
  Cells cells;
  for (std::string cell; std::getline(source, cell, '|');) cells.push_back(plain(cell));
  return cells;
}

// A row as "Edit (F2): opens the editor": a key in brackets, what there is to say behind a colon. Where there is more
// than one thing to say, each on a line of its own, with its column's title. Empty cells are passed over.
std::string tableRow(const Cells& titles, const Cells& cells) {
  std::string row = cells.front();
  Cells said;
  std::size_t columns = 0;
  for (std::size_t i = 1; i < titles.size(); ++i) {
    const bool isKey = titles[i] == "key";
    if (!isKey) ++columns;
    if (i >= cells.size() || cells[i].empty()) continue;
    if (isKey)
      row += row.empty() ? cells[i] : " (" + cells[i] + ")";
    else
      said.push_back(titles[i] + ": " + cells[i]);
  }
  if (columns == 1 && said.size() == 1) return row + ": " + cells.back();
  for (const std::string& one : said) row.append(kLineEnd).append("    ").append(one);
  return row;
}

class Guide {
 public:
  void take(const std::string& line) {
    const std::string mark = line.substr(0, line.find(' '));
    if (line.starts_with("```")) return toggleExample();
    if (inExample_) return startLine(line);
    if (mark == "#" || mark == "##" || mark == "###") return startSection(mark, plain(line.substr(mark.size())));
    if (line.empty()) return endBlock();
    if (line.starts_with("|")) return takeTableLine(line);
    const std::string text = plain(mark == "####" ? line.substr(mark.size()) : line);
    if (text.empty()) return;
    static const std::regex kListItem(R"(^\s*(-|\d+\.) )");
    if (std::regex_search(line, kListItem) || lineEnded_)
      startLine(text);
    else
      text_ += " " + text;
  }

  const std::vector<Topic>& finish() {
    endTopic();
    return topics_;
  }

 private:
  void toggleExample() {
    inExample_ = !inExample_;
    lineEnded_ = true;
  }

  void startSection(const std::string& mark, const std::string& name) {
    endTopic();
    if (mark == "#") return;
    if (mark == "##") subject_ = name;
    topic_ = name;
  }

  // The titles, a line of hyphens, then the rows.
  void takeTableLine(const std::string& line) {
    if (++tableLines_ == 1) titles_ = cellsOf(line);
    if (tableLines_ > 2) startLine(tableRow(titles_, cellsOf(line)));
  }

  void startLine(const std::string& line) {
    if (!text_.empty()) text_ += blockEnded_ ? std::string(kLineEnd) + kLineEnd : kLineEnd;
    text_ += line;
    blockEnded_ = false;
    lineEnded_ = tableLines_ > 0 || inExample_;
  }

  void endBlock() {
    lineEnded_ = blockEnded_ = true;
    tableLines_ = 0;
  }

  void endTopic() {
    if (!subject_.empty() && !text_.empty()) topics_.push_back({subject_, topic_, text_});
    text_.clear();
    endBlock();
  }

  std::vector<Topic> topics_;
  std::string subject_;
  std::string topic_;
  std::string text_;
  bool lineEnded_ = true;
  bool blockEnded_ = false;
  bool inExample_ = false;
  int tableLines_ = 0;
  Cells titles_;
};

std::string literal(const std::string& text) { return std::string("'").append(replaced(text, "'", "''")).append("'"); }

void write(std::ostream& out, const std::vector<Topic>& topics) {
  int id = kFirstId;
  for (const Topic& topic : topics) {
    // The help window asks for a subject's topics by its text between double quotes.
    if (topic.subject.find('"') != std::string::npos)
      throw std::runtime_error("a heading may not hold a double quote: " + topic.subject);
    out << "insert into help_info (id, subject, the_text, hide, the_topic) values (" << id++ << ", "
        << literal(topic.subject) << ", " << literal(topic.text) << ", 'no', " << literal(topic.name) << ");\n";
  }
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc != 3) throw std::runtime_error("usage: make_help <user-guide.md> <target.sql>");
  std::ifstream source(argv[1]);
  Guide guide;
  for (std::string line; std::getline(source, line);) guide.take(line);
  if (!source.eof()) throw std::runtime_error(std::string(argv[1]) + " cannot be read");
  const std::vector<Topic>& topics = guide.finish();
  if (topics.empty()) throw std::runtime_error(std::string(argv[1]) + " holds no topic");
  std::ofstream target(argv[2], std::ios::trunc);
  write(target, topics);
  target.close();
  if (!target) throw std::runtime_error(std::string(argv[2]) + " cannot be written");
  return 0;
} catch (const std::exception& error) {
  std::cerr << error.what() << '\n';
  return 1;
}
