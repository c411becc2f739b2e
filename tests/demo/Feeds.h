// An update server's three feeds: login form definitions, help topics and a news message.
#pragma once

#include "support/TestSite.h"

namespace mvtest {

inline constexpr int kFeedDefinitions = 3;
inline constexpr int kFeedTopics = 4;
inline constexpr int kFeedMessage = 7;  // its number

// Serves the feeds; topics whose path is `slowTopic` wait a while before they come.
void fillFeeds(TestSite& site, const std::string& slowTopic = {}, int delayMs = 0);

// Makes the site the update server of this user, and the message that was seen last an older one.
void useAsUpdateServer(const TestSite& site);

}  // namespace mvtest
