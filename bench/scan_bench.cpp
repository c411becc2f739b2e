// What a page costs: from its text to its links, with all shipped tags.

#include <string>
#include <vector>

#include "Figures.h"
#include "Pages.h"
#include "html/StarLinks.h"
#include "store/ProcessData.h"
#include "testkit/ProgramFolder.h"

namespace {

using namespace mvbench;

constexpr int kRuns = 9;
constexpr std::size_t kStretch = std::size_t{1} << 20;

// All of them have a star; a plain one would be no part of the figures.
std::vector<mv::StarTag> shippedTags() {
  std::vector<mv::StarTag> tags;
  for (const std::string& text : mv::loadTags()) tags.push_back(mv::StarTag::parse(text).value());
  return tags;
}

std::size_t linksOf(mv::StarLinks& stars, const std::string& page) {
  stars.begin(page, "http://www.host1.example/gallery/");
  std::size_t links = 0;
  std::string link;
  do {
    while (!stars.seek(kStretch)) {
    }
    links += link.empty() ? 0 : 1;
  } while (stars.next(link));
  return links;
}

double megabytesPerSecond(std::size_t bytes, double seconds) { return static_cast<double>(bytes) / 1e6 / seconds; }

struct Pages {
  std::vector<std::string> texts;
  std::size_t bytes = 0;
};

Pages make(std::string (PageMaker::*page)(std::size_t), std::size_t count, std::size_t bytes) {
  PageMaker maker;
  Pages pages;
  for (std::size_t i = 0; i < count; ++i) {
    pages.texts.push_back((maker.*page)(bytes));
    pages.bytes += pages.texts.back().size();
  }
  return pages;
}

void scanPages(const std::string& name, const Pages& pages, double goal) {
  mv::StarLinks stars;
  stars.setTags(shippedTags());
  std::size_t links = 0;
  const Timing timing = medianOf(kRuns, [&] {
    links = 0;
    for (const std::string& page : pages.texts) links += linksOf(stars, page);
  });
  std::printf("%zu pages, %zu bytes, %zu links\n", pages.texts.size(), pages.bytes, links);
  printFigure(name, megabytesPerSecond(pages.bytes, timing.cpu), "MB/s", Goal::AtLeast, goal);
  printFigure(name + " (wall)", megabytesPerSecond(pages.bytes, timing.wall), "MB/s", Goal::AtLeast, goal);
}

}  // namespace

int main() {
  const mvtest::ProgramFolder folder;
  scanPages("page to links, pages of 100 KB", make(&PageMaker::page, 100, 100'000), 1000);
  scanPages("page to links, a page of 20 MB", make(&PageMaker::page, 1, 20'000'000), 1000);
  scanPages("page to links, pages of today, 100 KB", make(&PageMaker::pageOfToday, 100, 100'000), 430);
}
