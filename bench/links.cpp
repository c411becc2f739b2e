// links ADDRESS: the links of pages behind the shipped tags with a star, for a comparison with another parser. Reads
// from its input a line with the name of a file for every page; prints that name, a line for every link, and an empty
// line. ADDRESS is what the name of a file is put behind for the address of its page.

#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "Main.h"
#include "app/Settings.h"
#include "decoding/TextDecoding.h"
#include "html/StarLinks.h"
#include "store/ProcessData.h"
#include "testkit/ProgramFolder.h"

namespace {

void printLinks(mv::StarLinks& stars, const std::string& address, const std::string& file) {
  std::ifstream input(file, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(input), std::istreambuf_iterator<char>()};
  const std::string page = mv::decodeText(bytes, "text/html");
  stars.begin(page, address + file);
  std::printf("%s\n", file.c_str());
  for (std::string link; stars.next(link);)
    if (!link.empty()) std::printf("%s\n", link.c_str());
  std::printf("\n");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: links ADDRESS < names of files\n");
    return 2;
  }
  return mvbench::run([&] {
    const mvtest::ProgramFolder folder;
    std::vector<mv::StarTag> tags;
    for (const std::string& text : mv::loadTags())
      if (const auto tag = mv::StarTag::parse(text)) tags.push_back(*tag);
    mv::StarLinks stars;
    stars.setTags(tags);
    for (std::string file; std::getline(std::cin, file);) printLinks(stars, argv[1], file);
  });
}
