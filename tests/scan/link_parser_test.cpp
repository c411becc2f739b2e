#include <string>

#include "database/Database.h"
#include "scan/clsLinkParser.h"
#include "testkit/Fixture.h"

namespace {

using namespace mvtest;

TEST(LinkParser, ResolvesALinkAgainstItsPage) {
  const struct {
    const char *link, *basePath, *url;
  } cases[] = {{"../img/a.jpg", "host1/a/b/", "host1/a/img/a.jpg"},
               {"./a.htm", "host1/dir", "host1/dir/a.htm"},
               {"/pics/p.gif", "host1/x/", "host1/pics/p.gif"},
               {"./../././../a", "host1/a/b/c/", "host1/a/a"},
               {".././..\\a", "host1/a/b/", "host1/a"},
               {"..\\a", "host1/a/b/", "..\\a"},
               {"../../../a", "host1/a/", "/a"},
               {"../a", "nothing", "nothing/a"},
               {"host1/g/c.htm", "host1/g/", "host1/g/c.htm"},
               {"mailto:a@b", "host1/", "mailto:a@b"}};
  for (const auto& c : cases) {
    mv::clsLinkParser parser;
    parser.Domain = "host1";
    parser.BasePath = c.basePath;
    parser.Link = c.link;
    parser.ProcessLink();
    EXPECT_EQ(parser.URL, c.url) << c.link;
    EXPECT_EQ(parser.Link, c.link) << "filters look at the link as found";
  }
}

class LinkStoring : public ProgramTest {
 protected:
  LinkStoring() {
    parser.SiteID = addSite("host1/start", folder(), {"jpg", "mp3"});
    parser.Domain = "host1";
    parser.InitializeDomainHopper();
  }
  bool add(const std::string& url) {
    parser.Link = parser.URL = url;
    parser.AddLinkToDatabase();
    return parser.Flag;
  }
  std::string stored(const std::string& column) const {
    return value("select " + column + " from link where id = " + std::to_string(parser.LinkID));
  }
  mv::clsLinkParser parser;
};

TEST_F(LinkStoring, ClassifiesEveryLink) {
  const struct {
    const char* url;
    bool kept;
    const char *linkType, *storedType, *fileType;
  } cases[] = {{"host1/a.htm", true, "Document", "Document", ""},
               {"host1/d.jpg/", true, "Directory", "Directory", ""},
               {"host1/a.jpg", true, "File", "File", "jpg"},
               {"host1/b.JPG", true, "File", "File", "JPG"},
               {"host1/q.jpg\"", true, "File", "File", "jpg"},
               {"host1/a.gif", false, "File", "", ""},
               {"host1/page.cgi?id=12345", true, "File", "Document", ""},
               {"host1/plain", true, "File", "Document", ""},
               {"http://music.invalid/d/12.htm", true, "File", "File", "mp3"},
               {"http://music.invalid/download", true, "File", "File", "mp3"},
               {"http://music.invalid/d/song.ram", false, "File", "", ""},
               {"mailto:a@host1/", false, "Email Address", "", ""}};
  mv::gDatabase.execute("insert into valid_filetypes (name, can_delete) values (\"ram\", \"no\")");
  parser.DomainHops = 1;
  for (const auto& c : cases) {
    const long before = count("link");
    EXPECT_EQ(add(c.url), c.kept) << c.url;
    EXPECT_EQ(parser.LinkType, c.linkType) << c.url;
    EXPECT_EQ(count("link") - before, c.kept ? 1 : 0) << c.url;
    if (!c.kept) continue;
    EXPECT_EQ(stored("link_type"), c.storedType) << c.url;
    EXPECT_EQ(stored("file_type"), c.fileType) << c.url;
  }
}

TEST_F(LinkStoring, StoresAnAddressOnceEscapedAndWithoutScheme) {
  parser.UserName = "me";
  parser.Password = "p\"w'";
  ASSERT_TRUE(add("http://host1/it's?a=\"b|c\"\r\n/"));
  EXPECT_EQ(parser.URL, "host1/it&MV1Qs?a=&MV2Qb&PIPEc&MV2Q&CR&LF/");
  EXPECT_EQ(stored("url"), parser.URL);
  EXPECT_EQ(stored("username || password || status"), "mep\"w'False");
  const auto first = parser.LinkID;
  ++parser.SiteID;
  EXPECT_FALSE(add("host1/it's?a=\"b|c\"\r\n/")) << "whichever site it was found on";
  EXPECT_TRUE(add("host1/IT's?a=\"b|c\"\r\n/")) << "addresses differ by case";
  EXPECT_EQ(parser.LinkID, first + 1) << "a refused link draws no id";
}

// An id that the table refuses is not drawn for ever; without an id nothing is stored.
TEST_F(LinkStoring, AFailedInsertUsesItsIdUp) {
  mv::gDatabase.execute("update valid_sid set next_value = 50 where sid_name = 'link_id'");
  mv::gDatabase.execute("insert into link (id, url) values (50, \"host1/other\")");
  EXPECT_THROW(add("host1/a.htm"), mv::DatabaseError);
  EXPECT_TRUE(add("host1/a.htm"));
  EXPECT_EQ(parser.LinkID, 51);
  EXPECT_EQ(value("select next_value from valid_sid where sid_name = 'link_id'"), "52");

  mv::gDatabase.execute("delete from valid_sid where sid_name = 'link_id'");
  EXPECT_THROW(add("host1/b.htm"), mv::NoLinkId);
  EXPECT_EQ(count("link", "url = \"host1/b.htm\""), 0);
  mv::Transaction another(mv::gDatabase);  // none was left open
}

// A page's links are not looked up again and again, but never is one taken for stored that has gone.
TEST_F(LinkStoring, AnAddressThatWasClearedIsStoredAgain) {
  const auto addCached = [&](const std::string& url) {
    const mv::clsLinkParser::CachedLookups lookups(parser);
    parser.Link = parser.URL = url;
    return !parser.isKnown() && add(url);
  };
  EXPECT_TRUE(addCached("host1/a.htm"));
  EXPECT_FALSE(addCached("host1/a.htm"));
  mv::gDatabase.execute("update link set status = \"Done\"");
  EXPECT_FALSE(addCached("http://host1/a.htm"));
  mv::gDatabase.execute("delete from link where url = \"host1/a.htm\"");
  EXPECT_TRUE(addCached("host1/a.htm"));
  mv::gDatabase.execute("delete from link");
  EXPECT_TRUE(addCached("host1/a.htm"));
  // More than are remembered.
  mv::gDatabase.execute("begin");
  for (int i = 0; i < 20'000; ++i)
    mv::gDatabase.execute("insert into link (url) values (" + mv::quoted("h/" + std::to_string(i)) + ")");
  mv::gDatabase.execute("commit");
  parser.DomainHops = 1;
  for (int round = 0; round < 2; ++round)
    for (int i = 0; i < 20'000; ++i) ASSERT_FALSE(addCached("h/" + std::to_string(i)));
}

// File types are read anew as soon as the user could have changed them.
TEST_F(LinkStoring, FileTypesAreCachedForOneRunOnly) {
  const auto assign = [&] {
    insert("site_filetype_xref",
           {{std::to_string(parser.SiteID), value("select id from valid_filetypes where name = \"gif\"")}});
  };
  {
    const mv::clsLinkParser::CachedLookups lookups(parser);
    EXPECT_FALSE(add("host1/a.gif"));
    assign();
    EXPECT_FALSE(add("host1/a.gif"));
  }
  EXPECT_TRUE(add("host1/a.gif"));
}

TEST_F(LinkStoring, EntersOnlyTheAllowedNumberOfForeignDomains) {
  EXPECT_FALSE(add("http://two/a.htm")) << "none allowed";
  parser.DomainHops = 2;
  parser.InitializeDomainHopper();
  for (const auto& [url, kept] : {std::pair("http://two/a.htm", true), std::pair("http://three/a.htm", true),
                                  std::pair("http://four/a.htm", false), std::pair("http://two/b.htm", true),
                                  std::pair("https://three/b.htm", true), std::pair("http://four/b.htm", false),
                                  std::pair("http://host1/c.htm", true), std::pair("http://host1.net/c.htm", false),
                                  std::pair("http://TWO:80/c.htm", true), std::pair("http://me@HOST1:80/d.htm", true),
                                  std::pair("https://host1:443/e.htm", true), std::pair("http://host1:8/e.htm", false)})
    EXPECT_EQ(add(url), kept) << url;
}

// An empty domain is what a free slot looks like.
TEST_F(LinkStoring, AnEmptyDomainTakesNoHop) {
  EXPECT_FALSE(add("/up.htm")) << "none allowed";
  parser.DomainHops = 1;
  for (const auto& [url, kept] : {std::pair("/up.htm", true), std::pair("http://two/a.htm", true),
                                  std::pair("/down.htm", false), std::pair("http://three/a.htm", false)})
    EXPECT_EQ(add(url), kept) << url;
}

TEST_F(LinkStoring, WhatIsTakenBackTakesNeitherHopNorRoom) {
  parser.DomainHops = 1;
  parser.Room = {.bytes = 20};
  {
    const mv::clsLinkParser::CachedLookups lookups(parser);
    mv::CommitGroup group(mv::gDatabase);
    EXPECT_TRUE(add("http://two/123456789"));
    EXPECT_FALSE(add("http://host1/123456"));
    EXPECT_EQ(parser.Room.leftOut, 1);
  }
  parser.takeBack();
  EXPECT_EQ(parser.Room.leftOut, 0);
  const mv::clsLinkParser::CachedLookups lookups(parser);
  EXPECT_TRUE(add("http://three/1234567"));
  EXPECT_FALSE(add("http://two/1"));
  EXPECT_TRUE(add("http://host1/"));
  EXPECT_FALSE(add("http://host1/"));
  EXPECT_FALSE(add("http://host1/1"));
  EXPECT_EQ(parser.Room.bytes, 1);
}

}  // namespace
