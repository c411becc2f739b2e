#include <gtest/gtest.h>

#include <ctime>
#include <string>
#include <vector>

#include "scan/clsPageScanner.h"

namespace {

using mv::clsPageScanner;

// Searching `stretch` bytes at a time.
std::vector<std::string> linksOf(const std::string& page, const std::string& searchString, std::size_t stretch) {
  clsPageScanner scanner;
  scanner.setHtml(page);
  scanner.setSearchString(searchString);
  scanner.BasePath = "host1/g/";
  std::vector<std::string> links;
  while (scanner.LinkFound()) {
    if (!scanner.seek(stretch)) continue;
    scanner.getLink();
    if (scanner.LinkFound()) links.push_back(scanner.Link());
  }
  return links;
}

TEST(PageScanner, FindsTheLinksOfAPage) {
  const std::string tag = "<a href=";
  const struct {
    const char* why;
    std::string page, searchString;
    std::vector<std::string> links;
  } cases[] = {
      {"relative", R"(<a href="pics/a.jpg">)", tag, {"host1/g/pics/a.jpg"}},
      {"absolute", R"(<a href="http://host2/b.htm">)", tag, {"http://host2/b.htm"}},
      {"rooted, mail, dotted",
       R"(<a href="/r"><a href="mailto:x@y"><a href="./d"><a href="../u">)",
       tag,
       {"/r", "mailto:x@y", "./d", "../u"}},
      {"https counts as relative", R"(<a href="https://host2/b">)", tag, {"host1/g/https://host2/b"}},
      {"in page order", R"(x<a href="1">y<a href="2">z)", tag, {"host1/g/1", "host1/g/2"}},
      {"none", "<p>nothing</p>", tag, {}},
      {"exact case", R"(<A HREF="a">)", tag, {}},
      {"more attributes behind the link", R"(<a href="a.htm" class="c">)", tag, {"host1/g/a.htm"}},
      {"the character before > goes", "<a href=a.htm>", tag, {"host1/g/a.ht"}},
      {"whole characters", "<a href=b\xC3\xA9\xE2\x82\xAC>", tag, {"host1/g/b\xC3\xA9"}},
      {"neither > nor quote", "<a href=a.htm rest", tag, {"host1/g/a.htm rest"}},
      {"an empty link ends the walk", R"(<a href="1"><a href=""><a href="3">)", tag, {"host1/g/1"}},
      {"nothing between tag and >", "<a href=><a href=\"3\">", tag, {}},
      {"a search string holding >", "<b>x</b>", "<b>", {}},
      {"quote of a later tag is not ours", "<a href=ab><p class=\"c\">", tag, {"host1/g/a"}},
      {"an attribute is followed by as many characters as it has",
       R"(src="abc" src="de" x)",
       "src=",
       {"host1/g/abc", "host1/g/de"}},
      {"an occurrence in what is skipped is lost", R"(src="a" src="b" x)", "src=", {"host1/g/a"}},
      {"skips characters, not bytes",
       "s=\xC3\xA9\xC3\xA9\xC3\xA9s=\"b\" x",
       "s=",
       {"host1/g/\xC3\xA9\xC3\xA9s=\"b", "host1/g/b"}},
      {"no blank", R"(src="a.jpg">)", "src=", {"host1/g/a.jpg\">"}},
      {"a blank at once is an error", "src=\" x src=\"b\" ", "src=", {}},
      {"cut off behind the attribute", "src=", "src=", {}},
  };
  for (const auto& c : cases)
    for (const std::size_t stretch : {1u, 2u, 5u, 1000u})
      EXPECT_EQ(linksOf(c.page, c.searchString, stretch), c.links) << c.why << ", in steps of " << stretch;
}

TEST(PageScanner, EveryCallConsumesThePage) {
  clsPageScanner scanner;
  scanner.setHtml(R"(x<a href="1">yz)");
  scanner.setSearchString("<a href=");
  for (const bool found : {true, false}) {
    scanner.getLink();
    EXPECT_EQ(scanner.LinkFound(), found);
    EXPECT_EQ(scanner.Link(), found ? "1" : "");
    EXPECT_EQ(scanner.html(), R"("1">yz)") << "nothing found, nothing taken";
  }
}

TEST(PageScanner, CutsOutTheFirstForm) {
  clsPageScanner scanner;
  scanner.setHtml("<P>\xC3\x89<FORM Action=\"A\">B</FORM><FORM>");
  scanner.getForm();
  EXPECT_EQ(scanner.Form, "<form action=\"a\">b</form>");
  EXPECT_EQ(scanner.html(), scanner.Form);
  for (const char* page : {"<P>\xC3\x89<form>b", "</FORM><form>", "<P>"}) {
    scanner.setHtml(page);
    scanner.getForm();
    EXPECT_EQ(scanner.Form, "") << page;
  }
  EXPECT_EQ(scanner.html(), "<p>");
}

// Million-link pages, and pages made to be slow: each is walked in one pass, not one pass per link.
TEST(PageScanner, HugeAndHostilePagesAreWalkedOnce) {
  const auto repeated = [](const std::string& piece) {
    std::string page;
    for (int i = 0; i < 1'000'000; ++i) page += piece;
    return page;
  };
  const struct {
    std::string piece, searchString;
    std::size_t atLeast;
  } pages[] = {
      {R"(<a href="p.htm">x)", "<a href=", 1'000'000},
      {"<a href=", "<a href=", 999'000},
      {"<a href=\"", "<a href=", 999'000},
      {"src=", "src=", 300'000},
      {"<", "<a href=", 0},
  };
  for (const auto& page : pages) {
    clsPageScanner scanner;
    scanner.setHtml(repeated(page.piece));
    scanner.setSearchString(page.searchString);
    const std::clock_t start = std::clock();
    std::size_t found = 0;
    for (scanner.getLink(); scanner.LinkFound(); scanner.getLink()) ++found;
    EXPECT_GE(found, page.atLeast) << page.piece;
    EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 10.0) << page.piece;
  }
}

}  // namespace
