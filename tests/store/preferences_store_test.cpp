// The row of `pref` as the process-wide settings of the start.

#include "app/Settings.h"
#include "store/Preferences.h"
#include "testkit/Fixture.h"

namespace {

using namespace mvtest;

class PreferencesStoreTest : public ProgramTest {};

TEST_F(PreferencesStoreTest, PreferencesComeFromTheFirstRow) {
  mv::gDatabase.execute("update pref set auto_scan = 'yes', quit_time = 3, auto_update = 'Yes'");
  mv::loadPreferences();
  EXPECT_EQ(mv::gAutoScan, "yes");
  EXPECT_EQ(mv::gQuitTime, 3);
  EXPECT_FALSE(mv::isYes(mv::gAutoUpdate)) << "only the text \"yes\" counts";

  mv::gDatabase.execute("delete from pref");
  EXPECT_THROW(mv::loadPreferences(), mv::DatabaseError) << "an empty table is an error";
  EXPECT_EQ(mv::gAutoScan, "");
  EXPECT_EQ(mv::gQuitTime, 0);
}

}  // namespace
