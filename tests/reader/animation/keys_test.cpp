// Keys: values and times, the interpolations a sampler names, and the derivatives that its
// tangents give, on the curves of a node's transform.

#include <gtest/gtest.h>

#include "tests/reader/animation/animation_documents.h"

namespace {

using namespace zylsdk;
using zyltest::Keys;

const float kOneThird = 0.33333334f;

class KeysTest : public ::testing::Test {
 protected:
  // Reads the box with one animation of `keys` on `target`.
  void Read(const std::string& target, const Keys& keys) {
    read = zyltest::ReadText(zyltest::AnimatedDocument("", zyltest::BoxNode(), zyltest::Animation("a", target, keys)));
    ASSERT_TRUE(read.ok);
  }
  const KFCurve* Curve(KZylTakeNode::EChannel channel) const { return zyltest::FindCurve(read.scene, "box", channel); }

  zyldae::ReadResult read;
};

TEST_F(KeysTest, WithoutInterpolationsKeysAreLinearWithAutomaticTangents) {
  Read("box/translate.X", {"0 0.5 2", "1 -2.5 4"});
  const KFCurve* curve = Curve(KZylTakeNode::eTranslationX);
  ASSERT_NE(curve, nullptr);
  ASSERT_EQ(curve->KeyGetCount(), 3);
  const double times[] = {0.0, 0.5, 2.0};
  const float values[] = {1.0f, -2.5f, 4.0f};
  for (int k = 0; k < 3; ++k) {
    EXPECT_EQ(curve->KeyGetTime(k).GetSecondDouble(), times[k]);
    EXPECT_EQ(curve->KeyGetValue(k), values[k]);
    EXPECT_EQ(curve->KeyGetInterpolation(k), KFCurve::eInterpolationLinear);
    EXPECT_EQ(curve->KeyGetTangentMode(k), KFCurve::eTangentAuto);
    EXPECT_EQ(curve->KeyGetLeftTangeantWeight(k), kOneThird);
    EXPECT_EQ(curve->KeyGetRightTangeantWeight(k), kOneThird);
    EXPECT_EQ(curve->KeyGetLeftDerivative(k), 0.0f);
    EXPECT_EQ(curve->KeyGetRightDerivative(k), 0.0f);
    EXPECT_FALSE(curve->KeyGetBreak(k));
  }
  // Only the animated curve has keys.
  EXPECT_EQ(Curve(KZylTakeNode::eTranslationY), nullptr);
  EXPECT_TRUE(zyltest::Messages(read).empty());
}

TEST_F(KeysTest, ValuesAreStoredInSinglePrecision) {
  Read("box/translate.Y", {"0", "0.1"});
  EXPECT_EQ(Curve(KZylTakeNode::eTranslationY)->KeyGetValue(0), 0.1f);
}

TEST_F(KeysTest, InterpolationNamesChangeTheKeys) {
  Read("box/translate.Z", {"0 1 2 3", "0 1 2 3", "LINEAR BEZIER STEP LINEAR"});
  const KFCurve* curve = Curve(KZylTakeNode::eTranslationZ);
  ASSERT_EQ(curve->KeyGetCount(), 4);
  EXPECT_EQ(curve->KeyGetInterpolation(0), KFCurve::eInterpolationLinear);
  EXPECT_EQ(curve->KeyGetInterpolation(1), KFCurve::eInterpolationCubic);
  EXPECT_EQ(curve->KeyGetInterpolation(2), KFCurve::eInterpolationConstant);
  EXPECT_EQ(curve->KeyGetInterpolation(3), KFCurve::eInterpolationLinear);
  // Interpolations without tangents keep the tangents automatic.
  for (int k = 0; k < 4; ++k) EXPECT_EQ(curve->KeyGetTangentMode(k), KFCurve::eTangentAuto);
  EXPECT_TRUE(zyltest::Messages(read).empty());
}

TEST_F(KeysTest, AnUnknownInterpolationWarnsAndGivesACubicKey) {
  Read("box/translate.X", {"0 1", "0 1", "HERMITE LINEAR"});
  const KFCurve* curve = Curve(KZylTakeNode::eTranslationX);
  EXPECT_EQ(curve->KeyGetInterpolation(0), KFCurve::eInterpolationCubic);
  EXPECT_EQ(curve->KeyGetInterpolation(1), KFCurve::eInterpolationLinear);
  EXPECT_EQ(zyltest::CountMessage(
                read, "Warning: this interpolation type is not supported: HERMITE It will be interpreted as BEZIER."),
            1);
}

TEST_F(KeysTest, AnOutTangentOfOneOverOneSecondGivesADerivativeOfThree) {
  Read("box/translate.X", {"0 1", "0 1", "BEZIER BEZIER", "0 0", "1 0"});
  const KFCurve* curve = Curve(KZylTakeNode::eTranslationX);
  ASSERT_EQ(curve->KeyGetCount(), 2);
  EXPECT_EQ(curve->KeyGetRightDerivative(0), 3.0f);
  // Tangents make the keys cubic with user tangents.
  EXPECT_EQ(curve->KeyGetInterpolation(0), KFCurve::eInterpolationCubic);
  EXPECT_EQ(curve->KeyGetTangentMode(0), KFCurve::eTangentUser);
  EXPECT_EQ(curve->KeyGetTangentMode(1), KFCurve::eTangentUser);
  // The first key has no left derivative, the last no right one, and neither is broken.
  EXPECT_EQ(curve->KeyGetLeftDerivative(0), 0.0f);
  EXPECT_EQ(curve->KeyGetRightDerivative(1), 0.0f);
  EXPECT_FALSE(curve->KeyGetBreak(0));
  EXPECT_FALSE(curve->KeyGetBreak(1));
}

TEST_F(KeysTest, DerivativesDivideByTheirOwnSpanAndWeight) {
  // Spans of 2 s then 0.5 s.
  Read("box/translate.X", {"0 2 2.5", "0 0 0", "BEZIER BEZIER BEZIER", "9 4 1", "2 4 9"});
  const KFCurve* curve = Curve(KZylTakeNode::eTranslationX);
  ASSERT_EQ(curve->KeyGetCount(), 3);
  const double weight = kOneThird;
  EXPECT_EQ(curve->KeyGetRightDerivative(0), static_cast<float>(2.0 / (2.0 * weight)));
  EXPECT_EQ(curve->KeyGetLeftDerivative(1), static_cast<float>(4.0 / (2.0 * weight)));
  EXPECT_EQ(curve->KeyGetRightDerivative(1), static_cast<float>(4.0 / (0.5 * weight)));
  EXPECT_EQ(curve->KeyGetLeftDerivative(2), static_cast<float>(1.0 / (0.5 * weight)));
  // Key 1: 6 on the left, 24 on the right.
  EXPECT_TRUE(curve->KeyGetBreak(1));
  EXPECT_FALSE(curve->KeyGetBreak(0));
  EXPECT_FALSE(curve->KeyGetBreak(2));
}

TEST_F(KeysTest, EqualDerivativesOnBothSidesDoNotBreakTheKey) {
  // Spans of 1 s each: a tangent of 1 on both sides gives 3 on both sides.
  Read("box/translate.X", {"0 1 2", "0 1 2", "BEZIER BEZIER BEZIER", "1 1 1", "1 1 1"});
  const KFCurve* curve = Curve(KZylTakeNode::eTranslationX);
  EXPECT_EQ(curve->KeyGetLeftDerivative(1), 3.0f);
  EXPECT_EQ(curve->KeyGetRightDerivative(1), 3.0f);
  EXPECT_FALSE(curve->KeyGetBreak(1));
}

TEST_F(KeysTest, TangentsWithoutInterpolationsStillGiveDerivativesOnLinearKeys) {
  Read("box/translate.X", {"0 1", "0 1", "", "0 0", "1 0"});
  const KFCurve* curve = Curve(KZylTakeNode::eTranslationX);
  EXPECT_EQ(curve->KeyGetInterpolation(0), KFCurve::eInterpolationLinear);
  EXPECT_EQ(curve->KeyGetTangentMode(0), KFCurve::eTangentAuto);
  EXPECT_EQ(curve->KeyGetRightDerivative(0), 3.0f);
}

TEST_F(KeysTest, AWholeTranslationDrivesThreeCurvesFromTriples) {
  Keys keys{"0 1", "1 2 3  4 5 6"};
  keys.params = {"X", "Y", "Z"};
  Read("box/translate", keys);
  const KFCurve* curves[] = {Curve(KZylTakeNode::eTranslationX), Curve(KZylTakeNode::eTranslationY),
                             Curve(KZylTakeNode::eTranslationZ)};
  for (int axis = 0; axis < 3; ++axis) {
    ASSERT_NE(curves[axis], nullptr);
    ASSERT_EQ(curves[axis]->KeyGetCount(), 2);
    EXPECT_EQ(curves[axis]->KeyGetValue(0), static_cast<float>(1 + axis));
    EXPECT_EQ(curves[axis]->KeyGetValue(1), static_cast<float>(4 + axis));
  }
  EXPECT_TRUE(zyltest::Messages(read).empty());
}

TEST_F(KeysTest, AWholeScaleTakesInterpolationsAndTangentsPerComponent) {
  Keys keys{"0 1", "1 1 1  2 2 2", "STEP LINEAR BEZIER  STEP LINEAR BEZIER", "0 0 0  0 0 0", "1 2 3  0 0 0"};
  keys.params = {"X", "Y", "Z"};
  Read("box/scale", keys);
  for (int axis = 0; axis < 3; ++axis) {
    const KFCurve* curve = Curve(static_cast<KZylTakeNode::EChannel>(KZylTakeNode::eScaleX + axis));
    ASSERT_NE(curve, nullptr);
    EXPECT_EQ(curve->KeyGetValue(1), 2.0f);
    EXPECT_EQ(curve->KeyGetRightDerivative(0), static_cast<float>((axis + 1) / (1.0 * kOneThird)));
  }
  EXPECT_EQ(Curve(KZylTakeNode::eScaleX)->KeyGetInterpolation(0), KFCurve::eInterpolationConstant);
  EXPECT_EQ(Curve(KZylTakeNode::eScaleY)->KeyGetInterpolation(0), KFCurve::eInterpolationLinear);
  EXPECT_EQ(Curve(KZylTakeNode::eScaleZ)->KeyGetInterpolation(0), KFCurve::eInterpolationCubic);
}

TEST_F(KeysTest, ARotationAngleDrivesTheCurveOfItsAxis) {
  Read("box/rotateY.ANGLE", {"0 1", "10 90"});
  const KFCurve* curve = Curve(KZylTakeNode::eRotationY);
  ASSERT_NE(curve, nullptr);
  EXPECT_EQ(curve->KeyGetValue(1), 90.0f);
  EXPECT_EQ(Curve(KZylTakeNode::eRotationX), nullptr);
  EXPECT_EQ(Curve(KZylTakeNode::eRotationZ), nullptr);
}

TEST_F(KeysTest, KeysOutOfOrderAreSortedByTime) {
  Read("box/translate.X", {"2 0 1", "20 0 10"});
  const KFCurve* curve = Curve(KZylTakeNode::eTranslationX);
  ASSERT_EQ(curve->KeyGetCount(), 3);
  for (int k = 0; k < 3; ++k) {
    EXPECT_EQ(curve->KeyGetTime(k).GetSecondDouble(), k);
    EXPECT_EQ(curve->KeyGetValue(k), 10.0f * k);
  }
}

TEST_F(KeysTest, ALaterKeyAtTheSameTimeReplacesTheEarlierOne) {
  Read("box/translate.X", {"0 1 1", "0 5 7"});
  const KFCurve* curve = Curve(KZylTakeNode::eTranslationX);
  ASSERT_EQ(curve->KeyGetCount(), 2);
  EXPECT_EQ(curve->KeyGetValue(1), 7.0f);
}

TEST_F(KeysTest, KeysWithoutAFiniteTimeAreSkipped) {
  Read("box/translate.X", {"0 nan 1 inf", "1 2 3 4"});
  const KFCurve* curve = Curve(KZylTakeNode::eTranslationX);
  ASSERT_EQ(curve->KeyGetCount(), 2);
  EXPECT_EQ(curve->KeyGetValue(0), 1.0f);
  EXPECT_EQ(curve->KeyGetValue(1), 3.0f);
}

TEST_F(KeysTest, TheDumpShowsTheKeysFields) {
  const Keys bezier{"0 1", "0 1", "BEZIER BEZIER", "0 0", "1 0"};
  const std::string animation = zyltest::Animation("a", "box/translate.X", bezier);
  const zyldae::Json dump = zyltest::DumpText(zyltest::AnimatedDocument("", zyltest::BoxNode(), animation));
  const zyldae::Json* box = nullptr;
  for (const zyldae::Json& node : dump.at("scene").at("root").at("children"))
    if (node.at("name") == "box") box = &node;
  ASSERT_NE(box, nullptr);
  const zyldae::Json& keys = box->at("takes").at("Take 001").at("T.X").at("keys");
  ASSERT_EQ(keys.size(), 2u);
  EXPECT_EQ(keys[0]["interpolation"], 8);
  EXPECT_EQ(keys[0]["tangentMode"], 0x400);
  EXPECT_EQ(keys[0]["rightDerivative"], 3.0);
  EXPECT_EQ(keys[0]["leftWeight"], static_cast<double>(kOneThird));
  EXPECT_EQ(keys[1]["time"], 1.0);
  EXPECT_EQ(keys[1]["value"], 1.0);
}

}  // namespace
