// site PORT [PAGES LINKS FILES FILEBYTES]: the benchmarks' web site, for use by hand, until it is interrupted.

#include <cstdio>
#include <cstdlib>

#include "Main.h"
#include "Server.h"

int main(int argc, char** argv) {
  if (argc < 2 || argc > 6) {
    std::fprintf(stderr, "usage: site PORT [PAGES LINKS FILES FILEBYTES]\n");
    return 2;
  }
  mvbench::SiteShape shape;
  std::int64_t* const numbers[] = {&shape.pages, &shape.links, &shape.files, &shape.fileBytes};
  for (int i = 2; i < argc; ++i) *numbers[i - 2] = std::atoll(argv[i]);
  return mvbench::run([&] {
    mvbench::serve(
        shape, 1, static_cast<std::uint16_t>(std::atoi(argv[1])),
        [](std::uint16_t port, void*) {
          std::printf("http://127.0.0.1:%d/\n", port);
          std::fflush(stdout);
        },
        nullptr);
  });
}
