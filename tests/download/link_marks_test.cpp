// The marks of handled links while another program keeps the database to itself.

#include <numeric>
#include <set>

#include "LinkMarks.h"
#include "testkit/Fixture.h"
#include "testkit/WallMeter.h"

namespace {

using namespace mvtest;
using Ids = std::vector<std::int64_t>;

class LinkMarksTest : public ProgramTest {
 protected:
  LinkMarksTest() {
    insertNumbered("link (id, site_id, status)", 1, 1000, "i, 7, 'False'");
    other.open(mv::gDatabasePath);
  }

  mv::Database other;
  Ids told;
  std::size_t mostAtOnce = 0;
  mv::LinkMarks marks{[this](const Ids& links) {
    told.insert(told.end(), links.begin(), links.end());
    mostAtOnce = std::max(mostAtOnce, links.size());
  }};
};

TEST_F(LinkMarksTest, AreWrittenAtOnceWhenNobodyIsInTheWay) {
  marks.add(5);
  marks.add(5);
  marks.add({3, 4});
  EXPECT_EQ(told, (Ids{5, 5, 3, 4}));
  EXPECT_FALSE(marks.holds(5));
  EXPECT_EQ(count("link", "status = \"Done\""), 3);
}

TEST_F(LinkMarksTest, WaitForAnotherProgramWithoutHoldingTheThread) {
  other.execute("begin immediate");
  const WallMeter turn;
  Ids expected;
  for (std::int64_t id = 1000; id > 0; --id) {
    expected.push_back(id);
    marks.add(id);
    marks.add(id);
  }
  waitFor([] { return false; }, 100);
  EXPECT_TRUE(told.empty());
  EXPECT_TRUE(marks.holds(1000) && marks.holds(1));
  other.execute("rollback");
  ASSERT_TRUE(waitFor([&] { return told.size() >= expected.size(); }));
  EXPECT_EQ(told, expected) << "each once, in the order of their coming";
  EXPECT_LE(mostAtOnce, 256U);
  EXPECT_FALSE(marks.holds(1));
  EXPECT_EQ(count("link", "status = \"Done\""), 1000);
  EXPECT_LT(turn.longest, 300);
}

TEST_F(LinkMarksTest, TheEndOfTheProgramWaitsForAShortLock) {
  other.execute("begin immediate");
  marks.add({1, 2});
  other.execute("rollback");
  marks.finish();
  EXPECT_EQ(told, (Ids{1, 2}));
  EXPECT_EQ(count("link", "status = \"Done\""), 2);
  marks.finish();
  EXPECT_EQ(told.size(), 2U);
}

}  // namespace
