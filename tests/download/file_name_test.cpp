#include <gtest/gtest.h>

#include <set>

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
               {"picture\u202egpj.exe", "picturegpj.exe"},
               {"\u2066a\u200e\u061cb\u2069.jpg\u200f", "ab.jpg"},
               {"\u202d\u202c", "_"},
               {"\u202f\u2065", "\u202f\u2065"}};
  for (const auto& c : cases) EXPECT_EQ(mv::cleanFileName(c.name), c.clean) << c.name;
}

TEST(FileName, CutNamesThatBeginAlikeStayApart) {
  const std::string umlaut = "\xc3\xa4";
  const struct {
    std::string name, stem, extension;
  } cases[] = {{repeated("n", 252) + ".jpg", repeated("n", 238), ".jpg"},
               {repeated("n", 300), repeated("n", 242), ""},
               {"a.php?q=" + repeated("n", 300), "a.php?q=" + repeated("n", 234), ""},
               {repeated(umlaut, 130) + ".gif", repeated(umlaut, 119), ".gif"},
               {"." + repeated("n", 300), "." + repeated("n", 241), ""},
               {repeated("\x80", 300), repeated("\x80", 242), ""}};
  for (const auto& c : cases) {
    const std::string clean = mv::cleanFileName(c.name);
    EXPECT_EQ(clean.substr(0, c.stem.size() + 1), c.stem + "~") << c.name;
    EXPECT_TRUE(clean.ends_with(c.extension)) << c.name;
    EXPECT_EQ(clean.size(), c.stem.size() + 13 + c.extension.size()) << c.name;
    EXPECT_EQ(mv::cleanFileName(c.name), clean) << "the next visit finds the file again";
  }

  // Percent-encoded titles of a series: only the end tells them apart.
  std::set<std::string> names;
  for (const char* volume : {"%31", "%32", "%33"})
    names.insert(mv::cleanFileName(repeated("%D0%A2", 42) + volume + ".jpg"));
  // What becomes the same by cleaning stays apart, too.
  names.insert(mv::cleanFileName(repeated("n", 300) + "\\"));
  names.insert(mv::cleanFileName(repeated("n", 300) + "_"));
  EXPECT_EQ(names.size(), 5U);
}

}  // namespace
