// Nested animations: an animation reads its own channels, then its nested animations; a
// missing shape ends only the animation element it is met in; samplers and sources are found
// below the animation that holds the channel.

#include <gtest/gtest.h>

#include "tests/reader/animation/animation_documents.h"
#include "tests/support/reader_fixture.h"

namespace {

using namespace zylsdk;

zyldae::ReadResult ReadBox(const std::string& animations) {
  return zyltest::ReadText(zyltest::AnimatedDocument("", zyltest::BoxNode(), animations));
}

const KFCurve* BoxCurve(const zyldae::ReadResult& read, KZylTakeNode::EChannel channel) {
  return zyltest::FindCurve(read.scene, "box", channel);
}

TEST(NestingTest, AnAnimationOfAnimationsImportsEachOfThem) {
  zyldae::ReadResult read = ReadBox("<animation id=\"group\">" +
                                    zyltest::Animation("x", "box/translate.X", {"0", "1"}) +
                                    zyltest::Animation("y", "box/translate.Y", {"0", "2"}) + "</animation>");
  ASSERT_TRUE(read.ok);
  ASSERT_NE(BoxCurve(read, KZylTakeNode::eTranslationX), nullptr);
  ASSERT_NE(BoxCurve(read, KZylTakeNode::eTranslationY), nullptr);
  EXPECT_EQ(BoxCurve(read, KZylTakeNode::eTranslationY)->KeyGetValue(0), 2.0f);
}

TEST(NestingTest, OwnChannelsComeBeforeNestedAnimations) {
  // The nested animation stands first in the document but is read after the channel: its key
  // at the same time replaces the channel's.
  zyldae::ReadResult read = ReadBox("<animation id=\"outer\">" +
                                    zyltest::Animation("inner", "box/translate.X", {"0", "2"}) +
                                    zyltest::ChannelBody("own", "box/translate.X", {"0", "1"}) + "</animation>");
  ASSERT_TRUE(read.ok);
  const KFCurve* curve = BoxCurve(read, KZylTakeNode::eTranslationX);
  ASSERT_EQ(curve->KeyGetCount(), 1);
  EXPECT_EQ(curve->KeyGetValue(0), 2.0f);
}

TEST(NestingTest, AMissingShapeInANestedAnimationEndsOnlyThatAnimation) {
  const std::string failing = "<animation id=\"failing\">" +
                              zyltest::ChannelBody("bad", "nothing(0)", {"0", "1"}) +
                              zyltest::ChannelBody("after", "box/translate.Y", {"0", "1"}) +
                              zyltest::Animation("below", "box/translate.Z", {"0", "1"}) + "</animation>";
  zyldae::ReadResult read =
      ReadBox("<animation id=\"outer\">" + failing + zyltest::Animation("next", "box/translate.X", {"0", "1"}) +
              "</animation>");
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(zyltest::CountMessage(read, "ERROR: shape not found for animation: nothing(0)"), 1);
  EXPECT_EQ(BoxCurve(read, KZylTakeNode::eTranslationY), nullptr);
  EXPECT_EQ(BoxCurve(read, KZylTakeNode::eTranslationZ), nullptr);
  EXPECT_NE(BoxCurve(read, KZylTakeNode::eTranslationX), nullptr);
}

TEST(NestingTest, AMissingShapeInATopLevelAnimationFailsTheRead) {
  zyldae::ReadResult read = ReadBox("<animation id=\"top\">" + zyltest::ChannelBody("bad", "nothing(0)", {"0", "1"}) +
                                    zyltest::ChannelBody("after", "box/translate.Y", {"0", "1"}) + "</animation>");
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(zyltest::CountMessage(read, "ERROR: shape not found for animation: nothing(0)"), 1);
  EXPECT_EQ(BoxCurve(read, KZylTakeNode::eTranslationY), nullptr);
}

TEST(NestingTest, AChannelFindsItsSamplerBelowItsOwnAnimationOnly) {
  // The outer channel's sampler stands inside the nested animation: it is found. The nested
  // channel's sampler stands in the outer animation: it is not.
  const std::string inner = "<animation id=\"inner\">" + zyltest::FloatSource("t", "0 1", {"TIME"}) +
                            zyltest::FloatSource("v", "4 5") +
                            "<sampler id=\"deep\"><input semantic=\"INPUT\" source=\"#t\"/>"
                            "<input semantic=\"OUTPUT\" source=\"#v\"/></sampler>"
                            "<channel source=\"#shallow\" target=\"box/translate.Y\"/></animation>";
  const std::string outer = "<animation id=\"outer\">" + zyltest::FloatSource("t2", "0", {"TIME"}) +
                            zyltest::FloatSource("v2", "1") +
                            "<sampler id=\"shallow\"><input semantic=\"INPUT\" source=\"#t2\"/>"
                            "<input semantic=\"OUTPUT\" source=\"#v2\"/></sampler>"
                            "<channel source=\"#deep\" target=\"box/translate.X\"/>" +
                            inner + "</animation>";
  zyldae::ReadResult read = ReadBox(outer);
  ASSERT_TRUE(read.ok);
  const KFCurve* x = BoxCurve(read, KZylTakeNode::eTranslationX);
  ASSERT_NE(x, nullptr);
  ASSERT_EQ(x->KeyGetCount(), 2);
  EXPECT_EQ(x->KeyGetValue(1), 5.0f);
  EXPECT_EQ(zyltest::CountMessage(read, "Warning: animation sampler not found: #shallow"), 1);
}

TEST(NestingTest, EveryChannelOfALargeAnimationFindsItsOwnSampler) {
  constexpr int kNodes = 300;
  std::string nodes;
  std::string channels;
  for (int i = 0; i < kNodes; ++i) {
    const std::string id = "n" + std::to_string(i);
    nodes += "<node id=\"" + id + "\"><translate sid=\"t\">0 0 0</translate></node>";
    channels += zyltest::ChannelBody("c" + std::to_string(i), id + "/t.Y", {"0", std::to_string(i)});
  }
  zyldae::ReadResult read =
      zyltest::ReadText(zyltest::AnimatedDocument("", nodes, "<animation id=\"all\">" + channels + "</animation>"));
  ASSERT_TRUE(read.ok);
  EXPECT_TRUE(zyltest::Messages(read).empty());
  for (int i = 0; i < kNodes; ++i) {
    const std::string id = "n" + std::to_string(i);
    const KFCurve* curve = zyltest::FindCurve(read.scene, id.c_str(), KZylTakeNode::eTranslationY);
    ASSERT_NE(curve, nullptr) << id;
    ASSERT_EQ(curve->KeyGetCount(), 1) << id;
    EXPECT_EQ(curve->KeyGetValue(0), static_cast<float>(i)) << id;
  }
}

class ImportAnimationTest : public zyltest::ReaderTest {};

TEST_F(ImportAnimationTest, AnElementThatIsNotAnAnimationFails) {
  EXPECT_FALSE(reader->ImportAnimation(Parse("<node id=\"n1\"/>"), *scene));
  EXPECT_FALSE(reader->GetStatus());
  EXPECT_EQ(CountMessage("ERROR: Node is not an animation node: n1"), 1);
  EXPECT_FALSE(reader->ImportAnimation(nullptr, *scene));
  EXPECT_EQ(CountMessage("ERROR: Node is not an animation node: "), 1);
}

TEST_F(ImportAnimationTest, AnAnimationWithoutChannelsSucceedsAndLeavesTheSpan) {
  EXPECT_TRUE(reader->ImportAnimation(Parse("<animation id=\"a\"><animation id=\"b\"/></animation>"), *scene));
  EXPECT_TRUE(reader->GetStatus());
  EXPECT_EQ(reader->GetAnimationStart().Get(), 0);
  EXPECT_EQ(reader->GetAnimationStop().Get(), 0);
  EXPECT_TRUE(Messages().empty());
}

TEST_F(ImportAnimationTest, ANodeOfTheSceneIsFoundByName) {
  KZylNode* node = KZylNode::Create(&manager, "n1");
  scene->GetRootNode()->AddChild(node);
  reader->RegisterAnimationTargets("n1", "translate", "translate", 0, 0);
  ASSERT_TRUE(reader->ImportAnimation(Parse(zyltest::Animation("a", "n1/translate.Z", {"1.5 3", "7 8"})), *scene));
  ASSERT_NE(node->GetCurrentTakeNode(), nullptr);
  EXPECT_EQ(node->GetCurrentTakeNode()->GetName(), "Take 001");
  const KFCurve* curve = node->GetCurrentTakeNode()->FindCurve(KZylTakeNode::eTranslationZ);
  ASSERT_NE(curve, nullptr);
  EXPECT_EQ(curve->KeyGetValue(1), 8.0f);
  EXPECT_EQ(reader->GetAnimationStart().Get(), 1);
  EXPECT_EQ(reader->GetAnimationStop().GetSecondDouble(), 3.0);
}

}  // namespace
