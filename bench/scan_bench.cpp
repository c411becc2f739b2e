// What a page costs: from its text to its links, with all shipped tags.

#include <algorithm>
#include <string>
#include <vector>

#include "Figures.h"
#include "Pages.h"
#include "app/Settings.h"
#include "scan/clsPageScanner.h"
#include "testkit/ProgramFolder.h"

namespace {

using namespace mvbench;

constexpr int kRuns = 9;
constexpr const char* kBaseTag = "<base href=";
constexpr std::size_t kStretch = std::size_t{1} << 20;

std::vector<std::string> shippedTags() {
  std::vector<std::string> tags;
  for (mv::Recordset rows = mv::gDatabase.query("select tag from valid_tag"); !rows.endOfRows(); rows.moveNext())
    tags.push_back(rows.text("tag"));
  return tags;
}

std::size_t walk(mv::clsPageScanner& scanner, const std::string& tag) {
  std::size_t links = 0;
  scanner.restart();
  scanner.setSearchString(tag);
  while (scanner.LinkFound()) {
    if (!scanner.seek(kStretch)) continue;
    scanner.getLink();
    if (scanner.LinkFound()) ++links;
  }
  return links;
}

std::size_t linksOf(mv::clsPageScanner& scanner, const std::string& page, const std::vector<std::string>& tags) {
  scanner.setHtml(page);
  scanner.BasePath = "www.host1.example/gallery/";
  std::size_t links = walk(scanner, kBaseTag);
  for (const std::string& tag : tags) links += walk(scanner, tag);
  return links;
}

double megabytesPerSecond(std::size_t bytes, double seconds) { return static_cast<double>(bytes) / 1e6 / seconds; }

void scanPages(const std::string& name, std::size_t count, std::size_t bytes, const std::vector<std::string>& tags) {
  PageMaker maker;
  std::vector<std::string> pages;
  std::size_t total = 0;
  for (std::size_t i = 0; i < count; ++i) {
    pages.push_back(maker.page(bytes));
    total += pages.back().size();
  }
  mv::clsPageScanner scanner;
  std::vector<std::string> expected = tags;
  expected.push_back(kBaseTag);
  scanner.expect(expected);
  std::size_t links = 0;
  const Timing timing = medianOf(kRuns, [&] {
    links = 0;
    for (const std::string& page : pages) links += linksOf(scanner, page, tags);
  });
  std::printf("%zu pages, %zu bytes, %zu links\n", count, total, links);
  printFigure(name, megabytesPerSecond(total, timing.cpu), "MB/s", Goal::AtLeast, 430);
  printFigure(name + " (wall)", megabytesPerSecond(total, timing.wall), "MB/s", Goal::AtLeast, 430);
}

}  // namespace

int main() {
  const mvtest::ProgramFolder folder;
  const std::vector<std::string> tags = shippedTags();
  scanPages("page to links, pages of 100 KB", 100, 100'000, tags);
  scanPages("page to links, a page of 20 MB", 1, 20'000'000, tags);
}
