#include <gtest/gtest.h>

#include <csignal>

#include "base/EndSignals.h"
#include "testkit/EventLoop.h"

namespace {

TEST(EndSignals, OneThatTheStarterHasIgnoredStaysIgnored) {
  std::signal(SIGHUP, SIG_IGN);
  int requests = 0;
  mv::onEndSignal([&] { ++requests; });
  std::raise(SIGHUP);
  std::raise(SIGTERM);
  EXPECT_TRUE(mvtest::waitFor([&] { return requests > 0; }));
  EXPECT_EQ(requests, 1);
  EXPECT_EQ(std::signal(SIGHUP, SIG_DFL), SIG_IGN);
  mv::onEndSignal([] {});
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) std::signal(number, SIG_DFL);
}

}  // namespace
