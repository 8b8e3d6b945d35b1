// Function curves and take nodes.

#include <gtest/gtest.h>

#include <vector>

#include "kit/zylsdk.h"

namespace {

using namespace zylsdk;

KTime Seconds(double seconds) {
  KTime time;
  time.SetSecondDouble(seconds);
  return time;
}

TEST(KFCurve, ReservingRoomKeepsTheKeysAndTheirOrder) {
  KFCurve curve;
  curve.KeyAdd(Seconds(2.0));
  curve.KeyReserve(100);
  curve.KeyReserve(-1);
  curve.KeyAdd(Seconds(1.0));
  ASSERT_EQ(curve.KeyGetCount(), 2);
  EXPECT_EQ(curve.KeyGetTime(0), Seconds(1.0));
  EXPECT_EQ(curve.KeyGetTime(1), Seconds(2.0));
}

KFCurveKey Key(double seconds, float value) {
  KFCurveKey key;
  key.time = Seconds(seconds);
  key.value = value;
  return key;
}

// KeyAdd then KeySet of every field, one key after the other: what KeyAddMany must give.
KFCurve OneByOne(const std::vector<KFCurveKey>& keys) {
  KFCurve curve;
  curve.KeyAdd(Seconds(1.0));
  curve.KeySetValue(0, -1.0f);
  for (const KFCurveKey& key : keys) curve.KeySet(curve.KeyAdd(key.time), key.time, key.value);
  return curve;
}

// The same keys: times and values.
void ExpectSameKeys(const KFCurve& curve, const KFCurve& expected) {
  ASSERT_EQ(curve.KeyGetCount(), expected.KeyGetCount());
  for (int k = 0; k < curve.KeyGetCount(); ++k) {
    EXPECT_EQ(curve.KeyGetTime(k), expected.KeyGetTime(k)) << k;
    EXPECT_EQ(curve.KeyGetValue(k), expected.KeyGetValue(k)) << k;
  }
}

TEST(KFCurve, KeyAddManyGivesWhatAddingOneByOneGives) {
  const std::vector<KFCurveKey> keys = {Key(3.0, 1.0f), Key(1.0, 2.0f), Key(2.0, 3.0f), Key(3.0, 4.0f),
                                        Key(0.5, 5.0f), Key(2.0, 6.0f), Key(4.0, 7.0f)};
  const KFCurve expected = OneByOne(keys);
  KFCurve curve;
  curve.KeyAdd(Seconds(1.0));
  curve.KeySetValue(0, -1.0f);
  curve.KeyAddMany(keys);
  ASSERT_EQ(curve.KeyGetCount(), 5);
  ExpectSameKeys(curve, expected);
  // The later key of a time wins, over the curve's key too.
  EXPECT_EQ(curve.KeyGetValue(1), 2.0f);
  EXPECT_EQ(curve.KeyGetValue(3), 4.0f);
}

TEST(KFCurve, KeyAddManyOfOrderedKeysGivesWhatAddingOneByOneGives) {
  // In order and after the curve's key; in order with two keys at one time; in order but
  // starting before the curve's key.
  const std::vector<std::vector<KFCurveKey>> lists = {
      {Key(2.0, 1.0f), Key(3.0, 2.0f), Key(4.0, 3.0f)},
      {Key(2.0, 1.0f), Key(3.0, 2.0f), Key(3.0, 5.0f), Key(4.0, 3.0f)},
      {Key(0.5, 1.0f), Key(1.0, 2.0f), Key(4.0, 3.0f)}};
  for (const std::vector<KFCurveKey>& keys : lists) {
    const KFCurve expected = OneByOne(keys);
    KFCurve curve;
    curve.KeyAdd(Seconds(1.0));
    curve.KeySetValue(0, -1.0f);
    curve.KeyAddMany(keys);
    ExpectSameKeys(curve, expected);
  }
  KFCurve empty;
  empty.KeyAddMany({});
  EXPECT_EQ(empty.KeyGetCount(), 0);
  empty.KeyAddMany(lists[0]);
  ASSERT_EQ(empty.KeyGetCount(), 3);
  EXPECT_EQ(empty.KeyGetValue(2), 3.0f);
}

TEST(KFCurve, KeyAddManyOfDescendingKeysSortsThemQuickly) {
  std::vector<KFCurveKey> keys;
  for (int i = 200000; i > 0; --i) keys.push_back(Key(i, static_cast<float>(i)));
  KFCurve curve;
  curve.KeyAddMany(keys);
  ASSERT_EQ(curve.KeyGetCount(), 200000);
  for (int k = 0; k < curve.KeyGetCount(); ++k) ASSERT_EQ(curve.KeyGetValue(k), static_cast<float>(k + 1));
}

TEST(KFCurve, KeyAddAtAnExistingTimeReturnsThatKey) {
  KFCurve curve;
  EXPECT_EQ(curve.KeyAdd(Seconds(1.0)), 0);
  curve.KeySetValue(0, 5.0f);
  EXPECT_EQ(curve.KeyAdd(Seconds(1.0)), 0);
  EXPECT_EQ(curve.KeyGetCount(), 1);
  EXPECT_EQ(curve.KeyGetValue(0), 5.0f);  // the existing key is kept as it was
}

TEST(KFCurve, AppendingKeepsTheOrderAndInsertingSorts) {
  KFCurve curve;
  EXPECT_EQ(curve.KeyAdd(Seconds(0.0)), 0);
  EXPECT_EQ(curve.KeyAdd(Seconds(1.0)), 1);
  EXPECT_EQ(curve.KeyAdd(Seconds(2.0)), 2);
  curve.KeySetValue(1, 10.0f);
  EXPECT_EQ(curve.KeyAdd(Seconds(0.5)), 1);
  ASSERT_EQ(curve.KeyGetCount(), 4);
  EXPECT_EQ(curve.KeyGetTime(1), Seconds(0.5));
  EXPECT_EQ(curve.KeyGetValue(2), 10.0f);
  EXPECT_EQ(curve.KeyAdd(Seconds(-1.0)), 0);
  for (int i = 1; i < curve.KeyGetCount(); ++i) EXPECT_LT(curve.KeyGetTime(i - 1), curve.KeyGetTime(i));
  EXPECT_EQ(curve.KeyAdd(Seconds(2.0)), 4);
}

TEST(KFCurve, KeySetMovesTheKeyToKeepTheCurveSorted) {
  KFCurve curve;
  curve.KeyAdd(Seconds(0.0));
  curve.KeyAdd(Seconds(1.0));
  curve.KeyAdd(Seconds(2.0));
  curve.KeySet(0, Seconds(3.0), 7.0f, KFCurve::eInterpolationCubic, KFCurve::eTangentUser, 0.5f, -0.5f);
  ASSERT_EQ(curve.KeyGetCount(), 3);
  EXPECT_EQ(curve.KeyGetTime(2), Seconds(3.0));
  EXPECT_EQ(curve.KeyGetValue(2), 7.0f);
  EXPECT_EQ(curve.KeyGetInterpolation(2), KFCurve::eInterpolationCubic);
  EXPECT_EQ(curve.KeyGetTangentMode(2), KFCurve::eTangentUser);
  EXPECT_EQ(curve.KeyGetRightDerivative(2), 0.5f);
  EXPECT_EQ(curve.KeyGetLeftDerivative(2), -0.5f);
  EXPECT_EQ(curve.KeyGetTime(0), Seconds(1.0));
  // Moved onto the time of another key, it replaces that key.
  curve.KeySet(0, Seconds(2.0), 1.0f);
  ASSERT_EQ(curve.KeyGetCount(), 2);
  EXPECT_EQ(curve.KeyGetValue(0), 1.0f);
}

TEST(KFCurve, OutOfRangeKeysAreHarmless) {
  KFCurve curve;
  curve.KeySetValue(3, 1.0f);
  curve.KeySet(-1, Seconds(1.0), 1.0f);
  EXPECT_FALSE(curve.KeyRemove(0));
  EXPECT_EQ(curve.KeyGetCount(), 0);
  EXPECT_EQ(curve.KeyGetValue(9), 0.0f);
  EXPECT_EQ(curve.KeyGetInterpolation(-1), KFCurve::eInterpolationLinear);
  curve.KeyAdd(Seconds(1.0));
  EXPECT_TRUE(curve.KeyRemove(0));
  EXPECT_EQ(curve.KeyGetCount(), 0);
}

TEST(KFCurve, KeyDefaults) {
  KFCurve curve;
  curve.KeyAdd(Seconds(0.25));
  EXPECT_EQ(curve.KeyGetValue(0), 0.0f);
  EXPECT_EQ(curve.KeyGetInterpolation(0), 4);
  EXPECT_EQ(curve.KeyGetTangentMode(0), 0x100);
  EXPECT_FALSE(curve.KeyGetBreak(0));
}

TEST(TakeNodes, ANodeWithoutTakeNodesAnswersEveryQueryEmpty) {
  KZylSdkManager manager;
  KZylNode* node = KZylNode::Create(&manager, "n");
  EXPECT_EQ(node->GetTakeNodeCount(), 0);
  EXPECT_EQ(node->GetTakeNode(0), nullptr);
  EXPECT_EQ(node->FindTakeNode("Take 001"), nullptr);
  EXPECT_FALSE(node->SetCurrentTakeNode("Take 001"));
  EXPECT_EQ(node->GetCurrentTakeNode(), nullptr);
  ASSERT_TRUE(node->CreateTakeNode("Take 001"));
  ASSERT_TRUE(node->CreateTakeNode("Take 002"));
  ASSERT_EQ(node->GetTakeNodeCount(), 2);
  EXPECT_EQ(node->GetTakeNode(1)->GetName(), KString("Take 002"));
  EXPECT_EQ(node->GetTakeNode(2), nullptr);
  EXPECT_TRUE(node->SetCurrentTakeNode("Take 002"));
  EXPECT_EQ(node->GetCurrentTakeNode(), node->GetTakeNode(1));
}

TEST(TakeNodes, CurvesAreMadeOnFirstRequest) {
  KZylSdkManager manager;
  KZylNode* node = KZylNode::Create(&manager, "n");
  EXPECT_TRUE(node->CreateTakeNode("Take 001"));
  EXPECT_FALSE(node->CreateTakeNode("Take 001"));
  EXPECT_EQ(node->GetCurrentTakeNode(), nullptr);
  EXPECT_TRUE(node->SetCurrentTakeNode("Take 001"));
  EXPECT_FALSE(node->SetCurrentTakeNode("Take 002"));
  KZylTakeNode* take = node->GetCurrentTakeNode();
  ASSERT_NE(take, nullptr);
  EXPECT_EQ(take->FindCurve(KZylTakeNode::eTranslationX), nullptr);
  KFCurve* curve = take->GetTranslationX();
  ASSERT_NE(curve, nullptr);
  EXPECT_EQ(take->GetTranslationX(), curve);
  EXPECT_EQ(take->FindCurve(KZylTakeNode::eTranslationX), curve);

  KZylMesh* mesh = KZylMesh::Create(&manager, "mesh");
  EXPECT_EQ(take->GetShapeChannel(mesh, 0), nullptr);  // no shape 0
  KZylShape* shape = KZylShape::Create(&manager, "s");
  ASSERT_EQ(mesh->AddShape(shape, "s"), 0);
  KFCurve* channel = take->GetShapeChannel(mesh, 0);
  ASSERT_NE(channel, nullptr);
  EXPECT_EQ(take->FindShapeChannel(mesh, 0), channel);
  mesh->Destroy();
  EXPECT_EQ(take->FindShapeChannel(mesh, 0), nullptr);
}

}  // namespace
