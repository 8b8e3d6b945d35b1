// Samplers: missing samplers and sources, unknown inputs, and arrays whose sizes do not fit
// the keys. The keys are still set, reading only what the arrays hold.

#include <gtest/gtest.h>

#include <cfloat>

#include "tests/reader/animation/animation_documents.h"

namespace {

using namespace zylsdk;
using zyltest::Keys;

class SamplerTest : public ::testing::Test {
 protected:
  void Read(const std::string& animations) {
    read = zyltest::ReadText(zyltest::AnimatedDocument("", zyltest::BoxNode(), animations));
    ASSERT_TRUE(read.ok);
  }
  const KFCurve* Curve(KZylTakeNode::EChannel channel) const { return zyltest::FindCurve(read.scene, "box", channel); }
  int KeyCount(KZylTakeNode::EChannel channel) const {
    const KFCurve* curve = Curve(channel);
    return curve ? curve->KeyGetCount() : 0;
  }
  int Count(const std::string& text) const { return zyltest::CountMessage(read, text); }

  zyldae::ReadResult read;
};

// One animation "a" of the box's X translation whose sampler "a-sampler" holds `inputs`, with
// the sources "t" (times 0 1), "v" (values 5 6) and `sources`; its channel names `sampler`.
std::string WithInputs(const std::string& inputs, const std::string& sources = "",
                       const std::string& sampler = "#a-sampler") {
  return "<animation id=\"a\">" + zyltest::FloatSource("t", "0 1", {"TIME"}) + zyltest::FloatSource("v", "5 6") +
         sources + "<sampler id=\"a-sampler\">" + inputs + "</sampler><channel source=\"" + sampler +
         "\" target=\"box/translate.X\"/></animation>";
}

const char* const kTimesAndValues =
    "<input semantic=\"INPUT\" source=\"#t\"/><input semantic=\"OUTPUT\" source=\"#v\"/>";

TEST_F(SamplerTest, AMissingSamplerWarnsAndSkipsTheChannel) {
  Read(WithInputs(kTimesAndValues, "", "#nosuch"));
  EXPECT_EQ(Count("Warning: animation sampler not found: #nosuch"), 1);
  EXPECT_EQ(KeyCount(KZylTakeNode::eTranslationX), 0);
}

TEST_F(SamplerTest, AnUnknownInputWarnsAndTheOthersAreRead) {
  Read(WithInputs(std::string(kTimesAndValues) + "<input semantic=\"CONTINUITY\" source=\"#v\"/>"));
  EXPECT_EQ(Count("Warning: unknown animation source: CONTINUITY"), 1);
  ASSERT_EQ(KeyCount(KZylTakeNode::eTranslationX), 2);
  EXPECT_EQ(Curve(KZylTakeNode::eTranslationX)->KeyGetValue(1), 6.0f);
}

TEST_F(SamplerTest, ASourceThatCannotBeReadIsAnErrorAndSkipsTheChannel) {
  Read(WithInputs(std::string(kTimesAndValues) + "<input semantic=\"IN_TANGENT\" source=\"#nosuch\"/>") +
       zyltest::Animation("b", "box/translate.Y", {"0", "1"}));
  EXPECT_EQ(Count("ERROR: reading array in <source>: nosuch"), 1);
  EXPECT_EQ(KeyCount(KZylTakeNode::eTranslationX), 0);
  // The read goes on with the next channel.
  EXPECT_EQ(KeyCount(KZylTakeNode::eTranslationY), 1);
}

TEST_F(SamplerTest, FewerValuesThanKeysWarnAndTheMissingValuesAreZero) {
  Read(zyltest::Animation("a", "box/translate.X", {"0 1 2", "5"}));
  EXPECT_EQ(Count("Warning: Number of outputs (1), in tangents (0), out tangents (0)  or interpolation (0) "
                  "not the number expected (3)."),
            1);
  const KFCurve* curve = Curve(KZylTakeNode::eTranslationX);
  ASSERT_EQ(curve->KeyGetCount(), 3);
  EXPECT_EQ(curve->KeyGetValue(0), 5.0f);
  EXPECT_EQ(curve->KeyGetValue(1), 0.0f);
  EXPECT_EQ(curve->KeyGetValue(2), 0.0f);
}

TEST_F(SamplerTest, AWholeVectorOfSingleValuesIsCountedAgainstThreePerKey) {
  Read(zyltest::Animation("a", "box/translate", {"0 1", "1 2"}));
  EXPECT_EQ(Count("Warning: Number of outputs (2), in tangents (0), out tangents (0)  or interpolation (0) "
                  "not the number expected (6)."),
            1);
  // X takes values 0 and 3, Y values 1 and 4: only the first is there.
  EXPECT_EQ(Curve(KZylTakeNode::eTranslationX)->KeyGetValue(0), 1.0f);
  EXPECT_EQ(Curve(KZylTakeNode::eTranslationX)->KeyGetValue(1), 0.0f);
  EXPECT_EQ(Curve(KZylTakeNode::eTranslationY)->KeyGetValue(0), 2.0f);
  EXPECT_EQ(Curve(KZylTakeNode::eTranslationZ)->KeyGetValue(0), 0.0f);
}

TEST_F(SamplerTest, TangentsOfTheWrongSizeWarnAndOnlyThoseThereAreUsed) {
  Read(zyltest::Animation("a", "box/translate.X", {"0 1 2", "0 1 2", "BEZIER BEZIER BEZIER", "1", "1 1 1 1 1"}));
  EXPECT_EQ(Count("Warning: Number of outputs (3), in tangents (1), out tangents (5)  or interpolation (3) "
                  "not the number expected (3)."),
            1);
  const KFCurve* curve = Curve(KZylTakeNode::eTranslationX);
  ASSERT_EQ(curve->KeyGetCount(), 3);
  // Key 1 has no in-tangent: its left derivative stays 0 and differs from its right one.
  EXPECT_EQ(curve->KeyGetLeftDerivative(1), 0.0f);
  EXPECT_EQ(curve->KeyGetRightDerivative(1), 3.0f);
  EXPECT_TRUE(curve->KeyGetBreak(1));
  EXPECT_EQ(curve->KeyGetLeftDerivative(2), 0.0f);
}

TEST_F(SamplerTest, FewerInterpolationsThanKeysLeaveTheOthersCubic) {
  Read(zyltest::Animation("a", "box/translate.X", {"0 1 2", "0 1 2", "LINEAR"}));
  EXPECT_EQ(Count("Warning: Number of outputs (3), in tangents (0), out tangents (0)  or interpolation (1) "
                  "not the number expected (3)."),
            1);
  const KFCurve* curve = Curve(KZylTakeNode::eTranslationX);
  EXPECT_EQ(curve->KeyGetInterpolation(0), KFCurve::eInterpolationLinear);
  EXPECT_EQ(curve->KeyGetInterpolation(1), KFCurve::eInterpolationCubic);
  EXPECT_EQ(curve->KeyGetInterpolation(2), KFCurve::eInterpolationCubic);
}

TEST_F(SamplerTest, WithoutOutputTheKeysAreZero) {
  Read(WithInputs("<input semantic=\"INPUT\" source=\"#t\"/>"));
  EXPECT_EQ(Count("Warning: Number of outputs (0), in tangents (0), out tangents (0)  or interpolation (0) "
                  "not the number expected (2)."),
            1);
  ASSERT_EQ(KeyCount(KZylTakeNode::eTranslationX), 2);
  EXPECT_EQ(Curve(KZylTakeNode::eTranslationX)->KeyGetValue(1), 0.0f);
}

TEST_F(SamplerTest, WithoutInputThereAreNoKeys) {
  Read(WithInputs("<input semantic=\"OUTPUT\" source=\"#v\"/>"));
  EXPECT_EQ(Count("Warning: Number of outputs (2), in tangents (0), out tangents (0)  or interpolation (0) "
                  "not the number expected (0)."),
            1);
  EXPECT_EQ(KeyCount(KZylTakeNode::eTranslationX), 0);
}

TEST_F(SamplerTest, ValuesBeyondSinglePrecisionSaturate) {
  Read(zyltest::Animation("a", "box/translate.X", {"0 1e-9 1", "1e300 -inf 0", "BEZIER BEZIER BEZIER", "0 0 0",
                                                   "1e300 0 0"}));
  const KFCurve* curve = Curve(KZylTakeNode::eTranslationX);
  ASSERT_EQ(curve->KeyGetCount(), 3);
  EXPECT_EQ(curve->KeyGetValue(0), FLT_MAX);
  EXPECT_EQ(curve->KeyGetValue(1), -FLT_MAX);
  // A huge tangent over one tick.
  EXPECT_EQ(curve->KeyGetRightDerivative(0), FLT_MAX);
}

TEST_F(SamplerTest, TangentsOfTwoComponentsAreCountedAsTwoValuesPerKey) {
  // Tangents written as (time, value) pairs: the count warns, and the pairs are read one
  // number per key.
  Read(WithInputs(std::string(kTimesAndValues) + "<input semantic=\"OUT_TANGENT\" source=\"#o\"/>",
                  zyltest::FloatSource("o", "0.5 1  0.75 0", {"X", "Y"})));
  EXPECT_EQ(Count("Warning: Number of outputs (2), in tangents (0), out tangents (4)  or interpolation (0) "
                  "not the number expected (2)."),
            1);
  EXPECT_EQ(Curve(KZylTakeNode::eTranslationX)->KeyGetRightDerivative(0), static_cast<float>(0.5 / 0.33333334f));
}

}  // namespace

namespace {

// Channels that share a sampler: its sources are read once, but every channel gets its keys
// and makes the sampler's notifications again.
TEST_F(SamplerTest, ChannelsSharingASamplerEachGetItsKeysAndItsWarnings) {
  Read("<animation id=\"a\">" + zyltest::FloatSource("t", "0 1", {"TIME"}) + zyltest::FloatSource("v", "5 6") +
       "<sampler id=\"s\">" + kTimesAndValues + "<input semantic=\"CONTINUITY\" source=\"#v\"/></sampler>"
       "<channel source=\"#s\" target=\"box/translate.X\"/><channel source=\"#s\" target=\"box/translate.Y\"/>"
       "<channel source=\"#s\" target=\"box/scale.Z\"/></animation>");
  EXPECT_EQ(Count("Warning: unknown animation source: CONTINUITY"), 3);
  for (auto channel : {KZylTakeNode::eTranslationX, KZylTakeNode::eTranslationY, KZylTakeNode::eScaleZ}) {
    ASSERT_EQ(KeyCount(channel), 2);
    EXPECT_EQ(Curve(channel)->KeyGetValue(0), 5.0f);
    EXPECT_EQ(Curve(channel)->KeyGetValue(1), 6.0f);
  }
}

TEST_F(SamplerTest, ChannelsSharingAFailingSamplerEachReportTheFailure) {
  Read("<animation id=\"a\">" + zyltest::FloatSource("t", "0 1", {"TIME"}) +
       "<sampler id=\"s\"><input semantic=\"INPUT\" source=\"#t\"/><input semantic=\"OUTPUT\" source=\"#gone\"/>"
       "</sampler><channel source=\"#s\" target=\"box/translate.X\"/><channel source=\"#s\" "
       "target=\"box/translate.Y\"/></animation>");
  EXPECT_EQ(Count("ERROR: reading array in <source>: gone"), 2);
  EXPECT_EQ(KeyCount(KZylTakeNode::eTranslationX), 0);
  EXPECT_EQ(KeyCount(KZylTakeNode::eTranslationY), 0);
}

}  // namespace
