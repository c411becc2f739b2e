// The arrows between the folders of src/, read off the #include lines.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

using Names = std::set<std::string>;
// Path below src/ -> text of the file.
using Sources = std::map<std::string, std::string>;

// Folder of src/ -> what it may include. Read from the table in docs/architecture.md; bottom to top: a folder may
// include only folders that stand above it there, so there is no circle.
std::map<std::string, Names> gArrows;

// Files that hold the algorithms, whole folders ending in "/": they run without a window.
const std::vector<std::string> kCore = {
    "store/",
    "net/",
    "process/Process",
    "process/WorkList",
    "scan/FilterRules",
    "scan/LoginRequest",
    "scan/ScanProcess",
    "scan/clsLinkParser",
    "scan/clsPageScanner",
    "download/DownloadProcess",
    "sites/SiteStore",
};

struct Include {
  std::string name;
  bool ours = false;  // in quotes
};

std::vector<Include> includesOf(const std::string& text) {
  static const std::regex line(R"(^\s*#\s*include\s*(["<])([^">]+)[">])");
  std::vector<Include> found;
  std::istringstream lines(text);
  for (std::string one; std::getline(lines, one);) {
    std::smatch match;
    if (std::regex_search(one, match, line)) found.push_back({match[2], match[1] == "\""});
  }
  return found;
}

std::string folderOf(const std::string& path) { return path.substr(0, path.find('/')); }

bool isCore(const std::string& path) {
  const std::string stem = path.substr(0, path.rfind('.'));
  return std::any_of(kCore.begin(), kCore.end(), [&](const std::string& core) {
    return core.back() == '/' ? path.starts_with(core) : stem == core;
  });
}

// What is wrong with one include of `from` by the arrows; "" when nothing.
std::string wrongArrow(const std::string& from, const Include& include) {
  if (!include.ours || include.name.ends_with(".moc")) return "";
  const std::string own = folderOf(from), target = folderOf(include.name);
  if (target == include.name || !gArrows.contains(target))
    return from + ": \"" + include.name + "\" does not begin with a folder of src";
  if (own == from) return "";  // main.cpp stands above all
  if (!gArrows.contains(own)) return from + " is in a folder that the table does not know";
  return own == target || gArrows[own].contains(target) ? "" : from + ": " + own + " may not include " + include.name;
}

std::string wrongArrows(const Sources& sources) {
  std::string wrong;
  for (const auto& [path, text] : sources)
    for (const Include& include : includesOf(text))
      if (const std::string what = wrongArrow(path, include); !what.empty()) wrong += what + "\n";
  return wrong;
}

bool isWidgetHeader(const std::string& name) {
  return name.starts_with("QtWidgets") || fs::exists(fs::path(MORVANE_QTWIDGETS_DIR) / name);
}

// The chain of includes by which `path` reaches a header of others, "" when it does not.
std::string wayTo(const std::function<bool(const std::string&)>& isTarget, const Sources& sources,
                  const std::string& path, Names& seen) {
  const auto source = sources.find(path);
  if (source == sources.end() || !seen.insert(path).second) return "";
  for (const Include& include : includesOf(source->second)) {
    if (!include.ours) {
      if (isTarget(include.name)) return path + " -> <" + include.name + ">";
    } else if (const std::string way = wayTo(isTarget, sources, include.name, seen); !way.empty()) {
      return path + " -> " + way;
    }
  }
  return "";
}

std::string waysTo(const std::function<bool(const std::string&)>& isTarget, const Sources& sources,
                   const std::function<bool(const std::string&)>& isMeant) {
  std::string ways;
  for (const auto& source : sources) {
    Names seen;
    const std::string way = isMeant(source.first) ? wayTo(isTarget, sources, source.first, seen) : "";
    if (!way.empty()) ways += way + "\n";
  }
  return ways;
}

std::string widgetsInCore(const Sources& sources) { return waysTo(isWidgetHeader, sources, isCore); }

std::string transferLibraryAbovePlatform(const Sources& sources) {
  return waysTo([](const std::string& name) { return name.starts_with("curl/"); }, sources,
                [](const std::string& path) { return folderOf(path) != "platform"; });
}

Names filesIncluding(const Sources& sources, const std::string& header) {
  Names files;
  for (const auto& [path, text] : sources)
    for (const Include& include : includesOf(text))
      if (include.name == header) files.insert(path);
  return files;
}

std::string readAll(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

Sources readSources() {
  const fs::path root = fs::path(MORVANE_SOURCE_DIR) / "src";
  Sources sources;
  for (const auto& entry : fs::recursive_directory_iterator(root))
    if (entry.path().extension() == ".h" || entry.path().extension() == ".cpp")
      sources[entry.path().lexically_relative(root).generic_string()] = readAll(entry.path());
  return sources;
}

class Architecture : public ::testing::Test {
 protected:
  Architecture() {
    gArrows.clear();
    const std::string document = readAll(fs::path(MORVANE_SOURCE_DIR) / "docs/architecture.md");
    const std::regex row(R"(\n(\w+) +(?:-> ([\w, ]+)|includes nothing of ours)(?=\n))");
    for (std::sregex_iterator at(document.begin(), document.end(), row), end; at != end; ++at) {
      Names& mayInclude = gArrows[(*at)[1]];
      std::istringstream names((*at)[2]);
      for (std::string name; std::getline(names >> std::ws, name, ',');) {
        EXPECT_TRUE(gArrows.contains(name)) << (*at)[1] << " -> " << name << " points upwards";
        mayInclude.insert(name);
      }
    }
    EXPECT_GE(gArrows.size(), 10u);
  }
  const Sources sources = readSources();
};

TEST_F(Architecture, EveryIncludeFollowsTheArrows) {
  ASSERT_GT(sources.size(), 50u);
  EXPECT_EQ(wrongArrows(sources), "");
}

TEST_F(Architecture, TheCoreKnowsNoWidget) {
  for (const std::string& core : kCore)
    EXPECT_TRUE(sources.lower_bound(core) != sources.end() && sources.lower_bound(core)->first.starts_with(core))
        << core;
  EXPECT_EQ(widgetsInCore(sources), "");
}

TEST_F(Architecture, OnlyThePlatformSpeaksToTheDatabaseEngineAndToTheTransferLibrary) {
  EXPECT_EQ(filesIncluding(sources, "sqlite3.h"), Names{"platform/Sqlite.h"});
  for (const std::string& file : filesIncluding(sources, "platform/Sqlite.h"))
    EXPECT_TRUE(file.starts_with("platform/")) << file;
  EXPECT_FALSE(filesIncluding(sources, "curl/curl.h").empty());
  EXPECT_EQ(transferLibraryAbovePlatform(sources), "");
}

// The libraries link no more than the table allows, so a wrong arrow fails in the build as well.
TEST_F(Architecture, TheBuildLinksByTheTable) {
  const std::string build = readAll(fs::path(MORVANE_SOURCE_DIR) / "CMakeLists.txt");
  const std::regex library(R"(\nmorvane_library\((\w+)([^)]*)\))");
  Names libraries;
  for (std::sregex_iterator at(build.begin(), build.end(), library), end; at != end; ++at) {
    const std::string name = *libraries.insert((*at)[1]).first;
    std::istringstream words((*at)[2]);
    for (std::string word; words >> word;)
      EXPECT_TRUE(word == "DEPENDS" || gArrows[name].contains(word)) << name << " links " << word;
  }
  EXPECT_EQ(libraries.size(), gArrows.size());
}

TEST_F(Architecture, WhatIsWrongIsFound) {
  const std::pair<const char*, const char*> wrong[] = {
      {"scan/ScanProcess.cpp", "#include \"download/DownloadProcess.h\"\n"},
      {"download/DownloadProcess.h", "  #  include \"scan/clsLinkParser.h\"\n"},
      {"sites/frmWebSites.cpp", "// above\n#include \"net/Address.h\" // for nothing\n"},
      {"scan/frmScan.cpp", "#include \"ScanProcess.h\"\n"},
      {"scan/frmScan.cpp", "#include \"../shell/StartUp.h\"\n"},
      {"attic/Old.cpp", "#include \"app/Settings.h\"\n"},
  };
  for (const auto& [path, text] : wrong) EXPECT_NE(wrongArrows({{path, text}}), "") << path << ": " << text;
  EXPECT_EQ(wrongArrows({{"scan/frmScan.cpp", "#include \"process/Process.h\"\n#include \"frmScan.moc\"\n"},
                         {"main.cpp", "#include \"shell/StartUp.h\"\n"}}),
            "");
  EXPECT_EQ(widgetsInCore({{"scan/ScanProcess.h", "#include \"app/Helpers.h\"\n"},
                           {"app/Helpers.h", "#include <QTreeWidget>\n"},
                           {"scan/frmScan.h", "#include <QtWidgets/QLabel>\n"}}),
            "scan/ScanProcess.h -> app/Helpers.h -> <QTreeWidget>\n");
  EXPECT_EQ(transferLibraryAbovePlatform({{"net/Address.cpp", "#include \"platform/CurlLoop.h\"\n"},
                                          {"platform/CurlLoop.h", "#include <curl/curl.h>\n"}}),
            "net/Address.cpp -> platform/CurlLoop.h -> <curl/curl.h>\n");
}

}  // namespace
