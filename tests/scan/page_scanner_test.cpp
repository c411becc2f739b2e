#include <gtest/gtest.h>

#include <ctime>
#include <random>
#include <string>
#include <vector>

#include "scan/clsPageScanner.h"

namespace {

using mv::clsPageScanner;

constexpr const char* kBase = "host1/g/";

// The links of one walk, searching `stretch` bytes at a time.
std::vector<std::string> linksOf(clsPageScanner& scanner, const std::string& searchString, std::size_t stretch) {
  scanner.restart();
  scanner.setSearchString(searchString);
  scanner.BasePath = kBase;
  std::vector<std::string> links;
  while (scanner.LinkFound()) {
    if (!scanner.seek(stretch)) continue;
    scanner.getLink();
    if (scanner.LinkFound()) links.push_back(scanner.Link());
  }
  return links;
}

std::vector<std::string> linksOf(const std::string& page, const std::string& searchString, std::size_t stretch) {
  clsPageScanner scanner;
  scanner.setHtml(page);
  return linksOf(scanner, searchString, stretch);
}

TEST(PageScanner, FindsTheLinksOfAPage) {
  const std::string tag = "<a href=";
  const std::string longest(clsPageScanner::kLongestLink, 'x');
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
      {"absolute by https", R"(<a href="https://host2/b">)", tag, {"https://host2/b"}},
      {"exact case", R"(<A HREF="a">)", tag, {}},
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
      {"skips characters, not bytes",
       "s=\xC3\xA9\xC3\xA9\xC3\xA9s=\"b\" x",
       "s=",
       {"host1/g/\xC3\xA9\xC3\xA9s=\"b", "host1/g/b"}},
      {"a blank at once is an error", "src=\" x src=\"b\" ", "src=", {}},
      {"cut off behind the attribute", "src=", "src=", {}},
      {"the longest link", tag + '"' + longest + "\">", tag, {kBase + longest}},
      {"the dropped character comes on top", tag + longest + "\xE2\x82\xAC>", tag, {kBase + longest}},
      {"a longer link is passed over", tag + longest + "x\"><a href=\"b\">", tag, {"", "host1/g/b"}},
  };
  for (const auto& c : cases)
    for (const std::size_t stretch : {1u, 2u, 5u, 1000u})
      EXPECT_EQ(linksOf(c.page, c.searchString, stretch), c.links) << c.why << ", in steps of " << stretch;
}

TEST(PageScanner, CutsOutTheFirstForm) {
  clsPageScanner scanner;
  scanner.setHtml("<P>\xC3\x89<FORM Action=\"A\">B</FORM><FORM>");
  scanner.getForm();
  EXPECT_EQ(scanner.Form, "<form action=\"a\">b</form>");
  EXPECT_EQ(scanner.FormAsFetched, "<FORM Action=\"A\">B</FORM>");
  scanner.setHtml("</FORM><form>");
  scanner.getForm();
  EXPECT_EQ(scanner.Form, "");
}

// Whatever stands in a page: one pass for all tags finds what a search for each of them finds.
TEST(PageScanner, FindsWhatAPlainSearchFinds) {
  const std::vector<std::string> tags{"<base href=", "<a href=",  "<a",  "<a href=", "<A HREF=", "<img src=", "<",
                                      "<<",          "<\xC3\xA9", "<b>", "src=",     "href=",    "\xC3\xA9=", "=\""};
  const char* const pieces[] = {"<a href=", "<a",        "<a ",   "<A HREF=", "<img src=",    "<base href=", "<",
                                "<<",       "<\xC3\xA9", "<b>",   ">",        "/>",           "\"",          "\"",
                                " ",        "=",         "src=",  "href=",    "http://",      "/",           "../",
                                "./",       "mailto:",   "p.jpg", "\xC3\xA9", "\xE2\x82\xAC", "\n",          "text"};
  std::mt19937 random(7);
  const auto below = [&random](std::size_t end) { return random() % end; };
  clsPageScanner scanner;
  scanner.expect(tags);
  std::size_t found = 0;
  for (int round = 0; round < 400; ++round) {
    std::string page;
    for (std::size_t left = below(200); left > 0; --left)
      page += below(200) > 0 ? pieces[below(std::size(pieces))] : std::string(8190, 'x');
    scanner.setHtml(page);
    for (const std::string& tag : tags) {
      const std::vector<std::string> expected = linksOf(page, tag, 1 + below(300));
      ASSERT_EQ(linksOf(scanner, tag, 1 + below(300)), expected) << tag << '\n' << page;
      found += expected.size();
    }
  }
  EXPECT_GT(found, 10'000U);
}

// Behind the places that are kept in memory the page is searched as ever.
TEST(PageScanner, FindsMoreTagsThanAreKept) {
  std::string page;
  for (std::size_t i = 0; i < mv::TagIndex::kMostPlaces / 2 + 100; ++i) page += "<a=1\"";
  page += "<b=2\"";
  clsPageScanner scanner;
  scanner.expect({"<a", "<a=", "<b="});
  scanner.setHtml(page);
  EXPECT_EQ(linksOf(scanner, "<b=", 1 << 20), std::vector<std::string>{"host1/g/2"});
  EXPECT_EQ(linksOf(scanner, "<a=", 1 << 20).size(), mv::TagIndex::kMostPlaces / 2 + 100);
}

// One pass over the page, not one per link.
TEST(PageScanner, HostilePagesAreWalkedOnce) {
  for (const std::string piece : {"<a href=\"", "src="}) {
    std::string page;
    for (int i = 0; i < 1'000'000; ++i) page += piece;
    const std::clock_t start = std::clock();
    EXPECT_GT(linksOf(page, piece.substr(0, piece.find('=') + 1), 100'000).size(), 300'000U);
    EXPECT_LT(std::clock() - start, 10 * CLOCKS_PER_SEC) << piece;
  }
}

}  // namespace
