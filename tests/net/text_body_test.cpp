
#include "net/TextBody.h"
#include "testkit/Fixture.h"
#include "testkit/TestSite.h"

namespace {

using namespace mvtest;

// 1024 and 1025 characters end on and just behind the edge of a piece; the long one has a character across many edges.
TEST(TextBody, IsReadWhole) {
  std::string longText;
  for (int i = 0; i < 5000; ++i) longText += "a\xE2\x82\xAC";
  TestSite site;
  mv::InternetTransfer transfer;
  for (const auto& text : {std::string(), std::string(1024, 'x'), std::string(1025, 'x'), longText}) {
    site.page("/", text);
    transfer.Execute(site.url("/"), "GET", mv::BodyMode::Text);
    ASSERT_TRUE(waitFor([&] { return !transfer.StillExecuting(); }));
    EXPECT_EQ(mv::readTextBody(transfer), text);
    EXPECT_EQ(mv::readTextBody(transfer), "") << "a body is handed out once";
    transfer.Execute(site.url("/"), "GET", mv::BodyMode::Text);
    ASSERT_TRUE(waitFor([&] { return !transfer.StillExecuting(); }));
    const auto first = transfer.GetChunk(1, mv::ChunkType::Text);
    EXPECT_EQ(first + transfer.TakeText(), text);
    EXPECT_EQ(transfer.TakeText(), "");
  }
}

}  // namespace
