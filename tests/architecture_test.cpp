// The walls of the house. The build keeps them: a header of a room that is not listed is not found. Here the table of
// docs/architecture.md is held against the build, and what no include path can keep is read off the sources.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

using Names = std::set<std::string>;

std::string readAll(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

const fs::path kRoot(MORVANE_SOURCE_DIR);

// "Suite.Name" of every test.
Names writtenTests() {
  const std::regex head(R"(\nTEST(?:_[FP])?\((\w+),\s*(\w+)\))");
  Names names;
  for (const auto& entry : fs::recursive_directory_iterator(kRoot / "tests")) {
    if (entry.path().extension() != ".cpp") continue;
    const std::string source = readAll(entry.path());
    for (std::sregex_iterator at(source.begin(), source.end(), head), end; at != end; ++at)
      names.insert((*at)[1].str() + '.' + (*at)[2].str());
  }
  return names;
}

struct Room {
  std::string name;
  fs::path folder;
  bool widgets = false;
  Names depends;
};

// The rooms in the order in which the build lists them, bottom to top.
std::vector<Room> builtRooms() {
  const std::string build = readAll(kRoot / "CMakeLists.txt");
  const std::regex line(R"(\nmorvane_room\((\w+)\s+([\w/]+)([^)]*)\))");
  std::vector<Room> rooms;
  for (std::sregex_iterator at(build.begin(), build.end(), line), end; at != end; ++at) {
    Room room{(*at)[1], kRoot / "src" / (*at)[2].str(), false, {}};
    std::istringstream words((*at)[3]);
    bool depends = false;
    for (std::string word; words >> word;) {
      if (word == "WIDGETS") room.widgets = true;
      if (word == "DEPENDS" || word == "LIBRARIES" || word == "WIDGETS")
        depends = word == "DEPENDS";
      else if (depends)
        room.depends.insert(word);
    }
    rooms.push_back(room);
  }
  return rooms;
}

// Room -> what it may include, as docs/architecture.md tells it.
std::map<std::string, Names> documentedRooms() {
  const std::string document = readAll(kRoot / "docs/architecture.md");
  const std::regex row(R"(\n(\w+) +(?:-> ([\w, ]+)|includes nothing of ours)(?=\n))");
  std::map<std::string, Names> rooms;
  for (std::sregex_iterator at(document.begin(), document.end(), row), end; at != end; ++at) {
    Names& mayInclude = rooms[(*at)[1]];
    std::istringstream names((*at)[2]);
    for (std::string name; std::getline(names >> std::ws, name, ',');) mayInclude.insert(name);
  }
  return rooms;
}

struct Include {
  std::string name;
  bool ours = false;  // in quotes
};

std::vector<Include> includesOf(const fs::path& file) {
  // In a form that of a control of ours.
  static const std::regex line(R"re(^\s*(?:#\s*include\s*(["<])|<header>)([^"<>]+)[">]?)re");
  std::vector<Include> found;
  std::istringstream lines(readAll(file));
  for (std::string one; std::getline(lines, one);) {
    std::smatch match;
    const bool candidate = one.find("include") != std::string::npos || one.find("<header>") != std::string::npos;
    if (candidate && std::regex_search(one, match, line)) found.push_back({match[2], match[1] != "<"});
  }
  return found;
}

// Forms, too: a header is made of each.
bool isSource(const fs::path& file) {
  const fs::path kind = file.extension();
  return kind == ".h" || kind == ".cpp" || kind == ".ui";
}

std::vector<fs::path> sourcesIn(const fs::path& folder) {
  std::vector<fs::path> sources;
  if (!fs::exists(folder)) return sources;
  for (const auto& entry : fs::directory_iterator(folder))
    if (isSource(entry.path())) sources.push_back(entry.path());
  return sources;
}

std::vector<fs::path> headersOf(const Room& room) { return sourcesIn(room.folder / "include" / room.name); }

std::vector<fs::path> filesOf(const Room& room) {
  std::vector<fs::path> files = sourcesIn(room.folder);
  for (const fs::path& header : headersOf(room)) files.push_back(header);
  return files;
}

// Rooms whose headers are included by these files.
Names roomsIncludedBy(const std::vector<fs::path>& files) {
  Names rooms;
  for (const fs::path& file : files)
    for (const Include& include : includesOf(file))
      if (const auto slash = include.name.find('/'); include.ours && slash != std::string::npos)
        rooms.insert(include.name.substr(0, slash));
  return rooms;
}

class Architecture : public ::testing::Test {
 protected:
  const std::vector<Room> rooms = builtRooms();

  void SetUp() override { ASSERT_GT(rooms.size(), 15u); }

  Names filesIncluding(const std::string& start) const {
    Names files;
    for (const Room& room : rooms)
      for (const fs::path& file : filesOf(room))
        for (const Include& include : includesOf(file))
          if (include.name.starts_with(start)) files.insert(room.name + '/' + file.filename().string());
    return files;
  }
};

TEST_F(Architecture, TheTableIsTheBuild) {
  const std::map<std::string, Names> documented = documentedRooms();
  EXPECT_EQ(documented.size(), rooms.size());
  Names below;
  for (const Room& room : rooms) {
    ASSERT_TRUE(documented.contains(room.name)) << room.name;
    EXPECT_EQ(documented.at(room.name), room.depends) << room.name;
    for (const std::string& other : room.depends) EXPECT_TRUE(below.contains(other)) << room.name << " -> " << other;
    below.insert(room.name);
  }
}

// An arrow is there for an include of the room's own, or for one of a header that it includes.
TEST_F(Architecture, NoArrowIsUnused) {
  std::map<std::string, Names> byHeaders;
  for (const Room& room : rooms) {
    Names used = roomsIncludedBy(filesOf(room));
    for (auto room2 = rooms.rbegin(); room2 != rooms.rend(); ++room2)
      if (used.contains(room2->name) && room2->name != room.name) used.merge(Names(byHeaders[room2->name]));
    byHeaders[room.name] = roomsIncludedBy(headersOf(room));
    for (const std::string& other : room.depends) EXPECT_TRUE(used.contains(other)) << room.name << " -> " << other;
  }
}

TEST_F(Architecture, EverySourceIsInARoom) {
  std::set<fs::path> known;
  for (const Room& room : rooms)
    for (const fs::path& file : filesOf(room)) known.insert(file);
  for (const auto& entry : fs::recursive_directory_iterator(kRoot / "src"))
    if (isSource(entry.path())) {
      EXPECT_TRUE(known.contains(entry.path()) || entry.path() == kRoot / "src/main.cpp") << entry.path();
    }
}

// What include paths cannot keep out: ways around them, and Qt's modules by their folder.
TEST_F(Architecture, NothingGoesAroundTheWalls) {
  EXPECT_EQ(filesIncluding(".."), Names{});
  for (const char* module : {"QtCore/", "QtGui/", "QtWidgets/", "QtSvg/", "/"})
    EXPECT_EQ(filesIncluding(module), Names{}) << module;
  for (const Room& room : rooms) {
    const bool mayHaveWidgets =
        room.name.ends_with("windows") || room.name == "desktop" || room.name == "shell" || room.name == "program";
    EXPECT_EQ(room.widgets, mayHaveWidgets) << room.name;
  }
}

// Only tests, benches and tools put statements together from texts that no compiler has seen.
TEST_F(Architecture, StatementsAreMadeOfConstants) {
  EXPECT_EQ(filesIncluding("database/RawStatement.h"), Names{"database/RawStatement.cpp"});
}

// All rooms share a namespace. Of two classes with one name the linker keeps one destructor for both, and says nothing.
TEST_F(Architecture, NoTwoClassesBearOneName) {
  const std::regex head(R"(\n(?:class|struct) (\w+)[^;{]*\{)");
  std::map<std::string, std::string> where;
  for (const auto& entry : fs::recursive_directory_iterator(kRoot / "src")) {
    if (entry.path().extension() != ".h") continue;
    const std::string source = readAll(entry.path());
    for (std::sregex_iterator at(source.begin(), source.end(), head), end; at != end; ++at) {
      const auto [first, isNew] = where.emplace((*at)[1], entry.path().filename());
      EXPECT_TRUE(isNew) << (*at)[1] << " in " << entry.path().filename() << " and " << first->second;
    }
  }
  EXPECT_GT(where.size(), 100U);
}

TEST_F(Architecture, OneRoomSpeaksToEachLibrary) {
  EXPECT_EQ(filesIncluding("sqlite3.h"), Names{"database/Sqlite.h"});
  const Names transfers = filesIncluding("curl/");
  EXPECT_FALSE(transfers.empty());
  for (const std::string& file : transfers) EXPECT_TRUE(file.starts_with("transfer/")) << file;
}

TEST(Promises, EveryPromiseNamesATestThatIsThere) {
  const std::string page = readAll(kRoot / "docs/promises.md");
  const std::regex row(R"(\n\| ([^|]+) \| ([^|]+) \|)");
  const std::regex name(R"(`([^`]+)`)");
  const Names tests = writtenTests();
  int promises = 0;
  for (std::sregex_iterator at(page.begin(), page.end(), row), end; at != end; ++at) {
    const std::string promise = (*at)[1], held = (*at)[2];
    if (promise.starts_with("---") || promise == "promise") continue;
    ++promises;
    std::sregex_iterator named(held.begin(), held.end(), name);
    EXPECT_NE(named, std::sregex_iterator()) << "nothing holds: " << promise;
    for (; named != std::sregex_iterator(); ++named) {
      const std::string test = (*named)[1];
      EXPECT_TRUE(tests.contains(test) || fs::exists(kRoot / test)) << test << " is not there: " << promise;
    }
  }
  EXPECT_GT(promises, 20);
}

}  // namespace
