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

struct Folder {
  std::string name;
  Names mayInclude;
};

// Bottom to top: a folder may include only folders that stand above it here, so there is no circle.
const std::vector<Folder> kArrows = {
    {"platform", {}},
    {"app", {"platform"}},
    {"store", {"app", "platform"}},
    {"net", {"app", "platform"}},
    {"process", {"net", "store", "app", "platform"}},
    {"catalog", {"store", "app", "platform"}},
    {"scan", {"process", "net", "store", "app", "platform"}},
    {"download", {"process", "catalog", "net", "store", "app", "platform"}},
    {"forms", {"store", "app", "platform"}},
    {"help", {"net", "store", "app", "platform"}},
    {"sites", {"scan", "download", "catalog", "store", "app", "platform"}},
    {"shell", {"sites", "forms", "help", "catalog", "scan", "store", "app", "platform"}},
};

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

const Folder* findFolder(const std::string& name) {
  const auto found = std::find_if(kArrows.begin(), kArrows.end(), [&](const Folder& f) { return f.name == name; });
  return found == kArrows.end() ? nullptr : &*found;
}

bool isCore(const std::string& path) {
  const std::string stem = path.substr(0, path.rfind('.'));
  return std::any_of(kCore.begin(), kCore.end(), [&](const std::string& core) {
    return core.back() == '/' ? path.starts_with(core) : stem == core;
  });
}

// What is wrong with one include of `from` by the arrows; "" when nothing.
std::string wrongArrow(const std::string& from, const Include& include) {
  if (!include.ours || include.name.ends_with(".moc")) return "";
  const bool inFolder = include.name.find('/') != std::string::npos && findFolder(folderOf(include.name));
  if (!inFolder) return from + ": \"" + include.name + "\" does not begin with a folder of src";
  if (from.find('/') == std::string::npos) return "";  // main.cpp stands above all
  const Folder* own = findFolder(folderOf(from));
  if (!own) return from + " is in a folder that the table does not know";
  const std::string target = folderOf(include.name);
  if (target == own->name || own->mayInclude.contains(target)) return "";
  return from + ": " + own->name + " may not include " + include.name;
}

std::vector<std::string> wrongArrows(const Sources& sources) {
  std::vector<std::string> wrong;
  for (const auto& [path, text] : sources)
    for (const Include& include : includesOf(text))
      if (const std::string what = wrongArrow(path, include); !what.empty()) wrong.push_back(what);
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

std::vector<std::string> waysTo(const std::function<bool(const std::string&)>& isTarget, const Sources& sources,
                                const std::function<bool(const std::string&)>& isMeant) {
  std::vector<std::string> ways;
  for (const auto& source : sources) {
    if (!isMeant(source.first)) continue;
    Names seen;
    if (const std::string way = wayTo(isTarget, sources, source.first, seen); !way.empty()) ways.push_back(way);
  }
  return ways;
}

std::vector<std::string> widgetsInCore(const Sources& sources) { return waysTo(isWidgetHeader, sources, isCore); }

bool isTransferLibrary(const std::string& name) { return name.starts_with("curl/"); }

std::vector<std::string> transferLibraryAbovePlatform(const Sources& sources) {
  return waysTo(isTransferLibrary, sources, [](const std::string& path) { return folderOf(path) != "platform"; });
}

std::vector<std::string> filesIncluding(const Sources& sources, const std::string& header) {
  std::vector<std::string> files;
  for (const auto& [path, text] : sources) {
    const std::vector<Include> includes = includesOf(text);
    if (std::any_of(includes.begin(), includes.end(), [&](const Include& i) { return i.name == header; }))
      files.push_back(path);
  }
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

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text.append(line).append("\n");
  return text;
}

TEST(Architecture, EveryIncludeFollowsTheArrows) {
  const Sources sources = readSources();
  ASSERT_GT(sources.size(), 50u);
  EXPECT_EQ(joined(wrongArrows(sources)), "");
}

TEST(Architecture, TheCoreKnowsNoWidget) {
  const Sources sources = readSources();
  for (const std::string& core : kCore)
    EXPECT_TRUE(std::any_of(sources.begin(), sources.end(), [&](const auto& file) {
      return file.first.starts_with(core);
    })) << core;
  EXPECT_EQ(joined(widgetsInCore(sources)), "");
}

TEST(Architecture, OnlyThePlatformSpeaksToTheDatabaseEngineAndToTheTransferLibrary) {
  const Sources sources = readSources();
  EXPECT_EQ(joined(filesIncluding(sources, "sqlite3.h")), "platform/Sqlite.h\n");
  for (const std::string& file : filesIncluding(sources, "platform/Sqlite.h"))
    EXPECT_TRUE(file.starts_with("platform/")) << file;
  EXPECT_FALSE(filesIncluding(sources, "curl/curl.h").empty());
  EXPECT_EQ(joined(transferLibraryAbovePlatform(sources)), "");
}

TEST(Architecture, TheTableHasNoCircle) {
  Names below;
  for (const Folder& folder : kArrows) {
    for (const std::string& target : folder.mayInclude) EXPECT_TRUE(below.contains(target)) << folder.name << target;
    below.insert(folder.name);
  }
}

// The libraries link no more than the table allows, so a wrong arrow fails in the build as well.
TEST(Architecture, TheBuildLinksByTheTable) {
  const std::string build = readAll(fs::path(MORVANE_SOURCE_DIR) / "CMakeLists.txt");
  const std::regex library(R"(\nmorvane_library\((\w+)([^)]*)\))");
  int libraries = 0;
  for (std::sregex_iterator at(build.begin(), build.end(), library), end; at != end; ++at, ++libraries) {
    const Folder* folder = findFolder((*at)[1]);
    ASSERT_TRUE(folder) << (*at)[1];
    std::istringstream words((*at)[2]);
    for (std::string word; words >> word;)
      EXPECT_TRUE(word == "DEPENDS" || folder->mayInclude.contains(word)) << folder->name << " links " << word;
  }
  EXPECT_GE(libraries, 10);
}

TEST(Architecture, WrongIncludesAreFound) {
  const std::vector<std::pair<std::string, std::string>> wrong = {
      {"scan/ScanProcess.cpp", "#include \"download/DownloadProcess.h\"\n"},
      {"download/DownloadProcess.h", "  #  include \"scan/clsLinkParser.h\"\n"},
      {"app/Settings.h", "#include \"shell/StartUp.h\"\n"},
      {"platform/Text.h", "#include \"app/Settings.h\"\n"},
      {"sites/frmWebSites.cpp", "// above\n#include \"net/Address.h\" // for nothing\n"},
      {"scan/frmScan.cpp", "#include \"ScanProcess.h\"\n"},
      {"scan/frmScan.cpp", "#include \"../shell/StartUp.h\"\n"},
      {"main.cpp", "#include \"StartUp.h\"\n"},
      {"attic/Old.cpp", "#include \"app/Settings.h\"\n"},
  };
  for (const auto& [path, text] : wrong) EXPECT_EQ(wrongArrows({{path, text}}).size(), 1u) << path << ": " << text;

  const Sources right = {
      {"scan/frmScan.cpp", "#include \"process/Process.h\"\n#include <QWidget>\n#include \"frmScan.moc\"\n"},
      {"main.cpp", "#include \"shell/StartUp.h\"\n"}};
  EXPECT_EQ(joined(wrongArrows(right)), "");
}

TEST(Architecture, WidgetsInTheCoreAreFound) {
  const std::string list = "#include <QTreeWidget>\n";
  EXPECT_EQ(widgetsInCore({{"store/Sequence.cpp", "#include <QMessageBox>\n"}}).size(), 1u);
  EXPECT_EQ(widgetsInCore({{"sites/SiteStore.h", "#include <QtWidgets/QLabel>\n"}}).size(), 1u);
  // By way of a header of ours.
  EXPECT_EQ(joined(widgetsInCore({{"scan/ScanProcess.h", "#include \"app/Helpers.h\"\n"},
                                  {"app/Helpers.h", "#include \"platform/ListView.h\"\n"},
                                  {"platform/ListView.h", list}})),
            "scan/ScanProcess.h -> app/Helpers.h -> platform/ListView.h -> <QTreeWidget>\n");
  EXPECT_EQ(widgetsInCore(
                {{"scan/frmScan.h", list}, {"process/ProcessWindow.h", list}, {"net/Address.h", "#include <QUrl>\n"}})
                .size(),
            0u);
}

TEST(Architecture, TheTransferLibraryIsFoundAbovePlatform) {
  const Sources sources = {{"net/Address.cpp", "#include \"platform/CurlLoop.h\"\n"},
                           {"platform/CurlLoop.h", "#include <curl/curl.h>\n"}};
  EXPECT_EQ(transferLibraryAbovePlatform(sources).size(), 1u);
}

}  // namespace
