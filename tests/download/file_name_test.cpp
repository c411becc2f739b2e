#include <gtest/gtest.h>

#include "FileName.h"

namespace {

std::string repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

TEST(FileName, TakesWhatAFileSystemTakes) {
  const std::string umlaut = "\xc3\xa4";
  const struct {
    std::string name, clean;
  } cases[] = {{"", ""},
               {"show.php?id=3&x=a:b*\"<>|", "show.php?id=3&x=a:b*\"<>|"},
               {"..\\..\\evil.jpg", ".._.._evil.jpg"},
               {std::string("a\0b\r\n\t\x7f.jpg", 11), "a_b____.jpg"},
               {"..", "_.."},
               {"con", "_con"},
               {"NUL.tar.gz", "_NUL.tar.gz"},
               {"lpt9.jpg", "_lpt9.jpg"},
               {repeated("n", 252) + ".jpg", repeated("n", 251) + ".jpg"},
               {repeated("n", 300), repeated("n", 255)},
               {"a.php?q=" + repeated("n", 300), "a.php?q=" + repeated("n", 247)},
               {repeated(umlaut, 130) + ".gif", repeated(umlaut, 125) + ".gif"},
               {"." + repeated("n", 300), "." + repeated("n", 254)},
               {repeated("\x80", 300), repeated("\x80", 255)}};
  for (const auto& c : cases) EXPECT_EQ(mv::cleanFileName(c.name), c.clean) << c.name;
}

}  // namespace
