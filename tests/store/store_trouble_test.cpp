// What the user hears when several cannot store for the same reason.

#include "database/Database.h"
#include "store/StoreTrouble.h"
#include "testkit/Fixture.h"

namespace {

using mv::StoreTrouble;

class SharedTroubleTest : public mvtest::ProgramTest {
 protected:
  static void fail(StoreTrouble& trouble) {
    try {
      throw mv::DatabaseError(mv::DatabaseError::kLocked, "locked");
    } catch (const mv::DatabaseError& error) {
      EXPECT_TRUE(StoreTrouble::mayPass(error));
      const auto pause = trouble.failed();
      EXPECT_GE(pause.count(), 10);
      EXPECT_LE(pause.count(), 500);
    }
  }
};

TEST_F(SharedTroubleTest, IsToldOnceWhenItLasts) {
  StoreTrouble one("one", "One waits."), two("two", "Two waits.");
  fail(one);
  fail(two);
  EXPECT_FALSE(mvtest::waitFor([this] { return !dialogs.messages().empty(); }, 100)) << "not yet";
  mvtest::waitFor([] { return false; }, 2000);
  for (int i = 0; i < 3; ++i) fail(two), fail(one);
  ASSERT_TRUE(mvtest::waitFor([this] { return !dialogs.messages().empty(); }));
  EXPECT_FALSE(mvtest::waitFor([this] { return dialogs.messages().size() > 1; }, 100));
  EXPECT_TRUE(dialogs.messages()[0].text.endsWith("Two waits."));
  two.passed();
  fail(two);
  EXPECT_FALSE(mvtest::waitFor([this] { return dialogs.messages().size() > 1; }, 100)) << "for one it still lasts";
}

}  // namespace
