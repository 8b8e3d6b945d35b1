// The take's time span: every key widens it, and the first key of each animation restarts it
// at its time in whole seconds, kept as a raw tick count.

#include <gtest/gtest.h>

#include <limits>

#include "tests/reader/animation/animation_documents.h"

namespace {

using namespace zylsdk;
using zyltest::Keys;

constexpr int64_t kSecond = KTime::kTicksPerSecond;

zyldae::ReadResult ReadBox(const std::string& animations) {
  return zyltest::ReadText(zyltest::AnimatedDocument("", zyltest::BoxNode(), animations));
}

TEST(TimeSpanTest, WithoutAnimationsTheTakeSpansNothing) {
  zyldae::ReadResult read = ReadBox("");
  ASSERT_TRUE(read.ok);
  ASSERT_NE(read.scene->GetTakeInfo("Take 001"), nullptr);
  EXPECT_EQ(read.scene->GetCurrentTakeName(), "Take 001");
  EXPECT_EQ(zyltest::TakeSpan(read).GetStart().Get(), 0);
  EXPECT_EQ(zyltest::TakeSpan(read).GetStop().Get(), 0);
}

TEST(TimeSpanTest, TheFirstKeyGivesWholeSecondsAsTicks) {
  zyldae::ReadResult read = ReadBox(zyltest::Animation("a", "box/translate.X", {"2.5 4", "0 1"}));
  ASSERT_TRUE(read.ok);
  // 2.5 s becomes tick 2; the later key is converted properly.
  EXPECT_EQ(zyltest::TakeSpan(read).GetStart().Get(), 2);
  EXPECT_EQ(zyltest::TakeSpan(read).GetStop().Get(), 4 * kSecond);
  const KZylTakeInfo* take = read.scene->GetTakeInfo("Take 001");
  EXPECT_EQ(take->mReferenceTimeSpan.GetStart().Get(), 2);
  EXPECT_EQ(take->mReferenceTimeSpan.GetStop().Get(), 4 * kSecond);
}

TEST(TimeSpanTest, LaterKeysWidenTheSpanInDocumentOrder) {
  zyldae::ReadResult read = ReadBox(zyltest::Animation("a", "box/translate.X", {"3 -1 5 4", "0 0 0 0"}));
  EXPECT_EQ(zyltest::TakeSpan(read).GetStart().Get(), -1 * kSecond);
  EXPECT_EQ(zyltest::TakeSpan(read).GetStop().Get(), 5 * kSecond);
}

TEST(TimeSpanTest, EachAnimationRestartsTheSpan) {
  zyldae::ReadResult read = ReadBox(zyltest::Animation("a", "box/translate.X", {"0 10", "0 0"}) +
                                    zyltest::Animation("b", "box/translate.Y", {"1 2", "0 0"}));
  EXPECT_EQ(zyltest::TakeSpan(read).GetStart().Get(), 1);
  EXPECT_EQ(zyltest::TakeSpan(read).GetStop().Get(), 2 * kSecond);
}

TEST(TimeSpanTest, ChannelsOfOneAnimationShareTheSpan) {
  const std::string animation = "<animation id=\"a\">" +
                                zyltest::ChannelBody("x", "box/translate.X", {"1 10", "0 0"}) +
                                zyltest::ChannelBody("y", "box/translate.Y", {"0.5 3", "0 0"}) + "</animation>";
  zyldae::ReadResult read = ReadBox(animation);
  // Tick 1 from the first key; 0.5 s is later than tick 1 and does not lower the start.
  EXPECT_EQ(zyltest::TakeSpan(read).GetStart().Get(), 1);
  EXPECT_EQ(zyltest::TakeSpan(read).GetStop().Get(), 10 * kSecond);
}

TEST(TimeSpanTest, NestedAnimationsRestartTheSpanToo) {
  const std::string animation = "<animation id=\"a\">" + zyltest::ChannelBody("x", "box/translate.X", {"0 10", "0 0"}) +
                                zyltest::Animation("b", "box/translate.Y", {"3 4", "0 0"}) + "</animation>";
  zyldae::ReadResult read = ReadBox(animation);
  EXPECT_EQ(zyltest::TakeSpan(read).GetStart().Get(), 3);
  EXPECT_EQ(zyltest::TakeSpan(read).GetStop().Get(), 4 * kSecond);
}

TEST(TimeSpanTest, AChannelWithoutKeysLeavesTheRestartToTheNextKey) {
  // The skipped channel reads no key: the second channel's first key restarts the span.
  const std::string animation = "<animation id=\"b\">" +
                                zyltest::ChannelBody("g", "ghost/translate.X", {"0 100", "0 0"}) +
                                zyltest::ChannelBody("y", "box/translate.Y", {"5 6", "0 0"}) + "</animation>";
  zyldae::ReadResult read = ReadBox(zyltest::Animation("a", "box/translate.X", {"0 3", "0 0"}) + animation);
  EXPECT_EQ(zyltest::TakeSpan(read).GetStart().Get(), 5);
  EXPECT_EQ(zyltest::TakeSpan(read).GetStop().Get(), 6 * kSecond);
}

TEST(TimeSpanTest, AnAnimationWithoutAnyKeyKeepsTheEarlierSpan) {
  zyldae::ReadResult read = ReadBox(zyltest::Animation("a", "box/translate.X", {"0 3", "0 0"}) +
                                    zyltest::Animation("b", "ghost/translate.X", {"7 8", "0 0"}));
  EXPECT_EQ(zyltest::TakeSpan(read).GetStart().Get(), 0);
  EXPECT_EQ(zyltest::TakeSpan(read).GetStop().Get(), 3 * kSecond);
}

TEST(TimeSpanTest, ATimeThatIsNotFiniteDoesNotStartTheSpan) {
  zyldae::ReadResult read = ReadBox(zyltest::Animation("a", "box/translate.X", {"nan 2.7 3", "0 0 0"}));
  EXPECT_EQ(zyltest::TakeSpan(read).GetStart().Get(), 2);
  EXPECT_EQ(zyltest::TakeSpan(read).GetStop().Get(), 3 * kSecond);
}

TEST(TimeSpanTest, HugeTimesSaturate) {
  zyldae::ReadResult read = ReadBox(zyltest::Animation("a", "box/translate.X", {"1e300 -1e300", "0 0"}));
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(zyltest::TakeSpan(read).GetStart().Get(), std::numeric_limits<int64_t>::min());
  EXPECT_EQ(zyltest::TakeSpan(read).GetStop().Get(), std::numeric_limits<int64_t>::max());
}

TEST(TimeSpanTest, TheDumpShowsTheRawTicks) {
  const zyldae::Json dump =
      zyltest::DumpText(zyltest::AnimatedDocument("", zyltest::BoxNode(),
                                                  zyltest::Animation("a", "box/translate.X", {"2.5 4", "0 1"})));
  const zyldae::Json& span = dump.at("scene").at("takes").at(0).at("localTimeSpan");
  EXPECT_EQ(span["startTicks"], 2);
  EXPECT_EQ(span["stop"], 4.0);
}

}  // namespace
