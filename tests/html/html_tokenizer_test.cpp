#include <gtest/gtest.h>

#include <ctime>
#include <string>
#include <vector>

#include "html/HtmlTokenizer.h"

namespace {

using mv::HtmlTokenizer;

const std::vector<HtmlTokenizer::Wanted> kWanted{
    {"a", {"href", "title"}}, {"img", {"src"}}, {"my-gallery", {"data-full"}}, {"script", {"src"}}};

// "element attribute=value ..." for every tag, searched `stretch` bytes at a time.
std::vector<std::string> tagsOf(const std::string& page, std::size_t stretch) {
  std::vector<std::string> tags;
  HtmlTokenizer tokenizer(
      [&](const HtmlTokenizer::StartTag& tag) {
        const HtmlTokenizer::Wanted& wanted = kWanted.at(tag.element);
        std::string text = wanted.element;
        for (const auto& [name, value] : tag.attributes)
          text.append(" ").append(wanted.attributes.at(name)).append("=").append(value);
        tags.push_back(text);
      },
      [](std::string_view) {});
  tokenizer.setWanted(kWanted);
  while (!tokenizer.advance(page, stretch)) {
  }
  return tags;
}

using Tags = std::vector<std::string>;

TEST(HtmlTokenizer, FindsWhatTheStandardCallsAStartTag) {
  const std::string link = "<a href=x>";
  const struct {
    const char* why;
    std::string page;
    Tags tags;
  } cases[] = {
      {"quotes of both kinds and none", "<a href=\"1\"><a href='2'><a href=3>", {"a href=1", "a href=2", "a href=3"}},
      {"letter case, blanks, line breaks", "<A\n\tclass = b \f HreF\r\n=\n' x '>", {"a href= x "}},
      {"attributes around it", R"(<img alt="a > b" width=3 src="p.jpg" hidden/>)", {"img src=p.jpg"}},
      {"in the order of the page", "<a title=t href=h>", {"a title=t href=h"}},
      {"the first of a name counts", "<a href=1 HREF=2><a href href=2>", {"a href=1", "a href="}},
      {"an unquoted value keeps slashes and quotes",
       "<a href=/x/y/>z<a href=a'b\"c>",
       {"a href=/x/y/", "a href=a'b\"c"}},
      {"a quoted value keeps line breaks and references", "<a href='a\n&amp;<b>'>", {"a href=a\n&amp;<b>"}},
      {"no value", "<a href=><a href = ><a href>", {"a href=", "a href=", "a href="}},
      {"blanks are needless behind quotes and slashes",
       R"(<a class="b"href="c"><a/href=d><a / href=e>)",
       {"a href=c", "a href=d", "a href=e"}},
      {"= begins a name", "<a =href=x href=y>", {"a href=y"}},
      {"quotes and < in names", "<a \"b href=x><a <img src=y href=z>", {"a href=x", "a href=z"}},
      {"other names", "<ab href=x><a-b href=x><a.href=x><a data-href=x hrefs=x>", {}},
      {"long names",
       "<MY-Gallery data-FULL=x><my-gallerx data-full=x><xy-gallery data-full=x>",
       {"my-gallery data-full=x"}},
      {"no tags", "< a href=x> <1a href=x> <=a> << <", {}},
      {"< before a tag", "<<a href=x>", {"a href=x"}},
      {"end tags have attributes for nothing", "</a href=x></a title='>'" + link + ">", {}},
      {"</> is nothing", "</>" + link, {"a href=x"}},
      {"an end tag without a name is a comment", "</ " + link + link, {"a href=x"}},
      {"a tag that the page ends in is none", link + "<a href=\"y\" class", {"a href=x"}},
      {"a quote that never closes swallows the rest", "<a href=\"y>" + link, {}},

      {"comment", "<!-- " + link + " -- > " + link + "-->" + link, {"a href=x"}},
      {"comment closed at once",
       "<!-->" + link + "<!--->" + link + "<!---->" + link,
       {"a href=x", "a href=x", "a href=x"}},
      {"comment ended by --!>", "<!-- --!>" + link, {"a href=x"}},
      {"a bang needs two dashes of its own", "<!--!>" + link, {}},
      {"a dash too few", "<!---!>" + link + "<!---!>" + link, {"a href=x"}},
      {"comment in a comment", "<!-- <!-- --> " + link + " -->", {"a href=x"}},
      {"comment without an end", "<!-- " + link, {}},
      {"doctype and processing instruction end at >",
       "<!DOCTYPE a \">" + link + "<?xml a='>" + link,
       {"a href=x", "a href=x"}},
      {"CDATA is a comment to the first > in HTML", "<![CDATA[ " + link + link + " ]]>", {"a href=x"}},
      {"CDATA in SVG", "<svg><![CDATA[ " + link + " > ]] > ]>" + link + " ]]>" + link + "</svg>", {"a href=x"}},
      {"HTML in SVG", "<svg><foreignObject><![CDATA[ " + link + link + "</svg>", {"a href=x"}},
      {"behind SVG it is HTML again", "<svg><g></svg><![CDATA[ " + link + link + " ]]>", {"a href=x"}},
      {"an empty SVG has no inside", "<svg/><![CDATA[ > " + link + "]]>", {"a href=x"}},
      {"a paragraph ends SVG", "<svg><p><script>" + link + "</script>", {}},
      {"titles and scripts in SVG are markup",
       "<svg><title>" + link + "</title><script>" + link + "</script></svg>",
       {"a href=x", "a href=x"}},

      {"raw text",
       "<title>" + link + "</title><STYLE>" + link + "</style><textarea>" + link + "</textarea><xmp>" + link +
           "</xmp><iframe>" + link + "</iframe><noframes>" + link + "</noframes>" + link,
       {"a href=x"}},
      {"ends at its own end tag only",
       "<title></titles></ title></style>" + link + "</TITLE\n a='>'>" + link,
       {"a href=x"}},
      {"an unended iframe does not swallow the rest",
       "<iframe/>" + link + "<noframes>" + link + "</noframes>" + link + "<iframe>" + link,
       {"a href=x", "a href=x", "a href=x"}},
      {"an unended title does", "<title>" + link, {}},
      {"a slash makes it no empty element", "<title/>" + link, {}},
      {"noscript is read, as by a browser without scripts", "<noscript>" + link + "</noscript>", {"a href=x"}},
      {"plaintext never ends", "<plaintext>" + link + "</plaintext>" + link, {}},

      {"script", "<script src=s>" + link + "'</scripts>'" + link + "</script>" + link, {"script src=s", "a href=x"}},
      {"script in a comment", "<script><!-- " + link + " </script>" + link, {"a href=x"}},
      {"script in a script in a comment",
       "<script><!-- <script>" + link + "</script>" + link + "</script>" + link + "<script><!-- <script> --></script>" +
           link,
       {"a href=x", "a href=x"}},
      {"the end of the comment ends both", "<script><!-- <script> -->" + link + "</script>" + link, {"a href=x"}},
      {"dashes of the beginning end it", "<script><!--><script></script>" + link, {"a href=x"}},
      {"a name that only begins so", "<script><!-- <scripty> </script>" + link, {"a href=x"}},
      {"script without an end", "<script>" + link, {}},
  };
  for (const auto& c : cases)
    for (const std::size_t stretch : {1u, 2u, 7u, 1000u})
      EXPECT_EQ(tagsOf(c.page, stretch), c.tags) << c.why << ", in steps of " << stretch;
}

// One pass over the page, whatever never ends in it.
TEST(HtmlTokenizer, HostilePagesAreReadOnce) {
  for (const std::string piece :
       {"<",  "<!",           "</",       "<a ",     "<a b=",      "<a b='",    "<!--",
        "--", "<script><!--", "</script", "<title>", "<svg><p>",   "<svg>",     "<![CDATA[",
        "]]", "<a href=x>",   "<a =",     "a",       "<math><mi>", "<iframe/>", "<xmp><noframes>"}) {
    std::string page;
    while (page.size() < 2'000'000) page += piece;
    const std::clock_t start = std::clock();
    tagsOf(page, 1000);
    EXPECT_LT(std::clock() - start, 2 * CLOCKS_PER_SEC) << piece;
  }
}

}  // namespace
