// Node transforms: SetGlobalState's decomposition (mirrored and flattened matrices included)
// and the global matrix through parents with pivots, offsets and pre/post-rotation.

#include <gtest/gtest.h>

#include <cmath>

#include "kit/zylsdk.h"
#include "tests/support/near.h"

namespace {

using namespace zylsdk;

// Rotations and translations compare on x, y and z.
::testing::AssertionResult Near(const KZylVector4& actual, const KZylVector4& expected, double tolerance = 1e-9) {
  return zyltest::Near(actual, expected, tolerance, 3);
}
::testing::AssertionResult Near(const KZylMatrix& actual, const KZylMatrix& expected, double tolerance = 1e-9) {
  return zyltest::Near(actual, expected, tolerance);
}

class NodeTransformTest : public ::testing::Test {
 protected:
  KZylNode* NewNode(const char* name) { return KZylNode::Create(&manager, name); }
  KZylSdkManager manager;
};

TEST_F(NodeTransformTest, DefaultsGiveTheIdentity) {
  KZylNode* node = NewNode("n");
  EXPECT_EQ(node->GetDefaultT(), KZylVector4(0, 0, 0, 1));
  EXPECT_EQ(node->GetDefaultR(), KZylVector4(0, 0, 0, 0));
  EXPECT_EQ(node->GetDefaultS(), KZylVector4(1, 1, 1, 1));
  EXPECT_EQ(node->GetRotationOrder(eSourcePivot), eEulerXYZ);
  EXPECT_EQ(node->GetTransformationInheritType(), eInheritRSrs);
  EXPECT_TRUE(node->GetGlobalFromDefaultTake().IsIdentity());
}

TEST_F(NodeTransformTest, SetGlobalStateDecomposesInTheNodesRotationOrder) {
  for (int order = 0; order < 6; ++order) {
    KZylNode* node = NewNode("n");
    ERotationOrder rotationOrder = static_cast<ERotationOrder>(order);
    node->SetRotationOrder(eSourcePivot, rotationOrder);
    KZylVector4 rotation(20, -35, 50);
    KZylXMatrix global = ScalingMatrix(KZylVector4(2, 3, 4)) * RotationMatrix(rotation, rotationOrder) *
                         TranslationMatrix(KZylVector4(5, -6, 7));
    node->SetGlobalState(global);
    EXPECT_TRUE(Near(node->GetDefaultT(), KZylVector4(5, -6, 7))) << "order " << order;
    EXPECT_TRUE(Near(node->GetDefaultS(), KZylVector4(2, 3, 4))) << "order " << order;
    EXPECT_TRUE(Near(node->GetDefaultR(), rotation, 1e-7)) << "order " << order;
    EXPECT_TRUE(Near(node->GetGlobalFromDefaultTake(), global)) << "order " << order;
  }
}

TEST_F(NodeTransformTest, SetGlobalStateOfAMirrorMakesTheXScaleNegative) {
  for (int order = 0; order < 6; ++order) {
    ERotationOrder rotationOrder = static_cast<ERotationOrder>(order);
    KZylVector4 rotation(10, 20, 30);
    KZylNode* node = NewNode("n");
    node->SetRotationOrder(eSourcePivot, rotationOrder);
    KZylXMatrix mirrored = ScalingMatrix(KZylVector4(-2, 3, 4)) * RotationMatrix(rotation, rotationOrder);
    node->SetGlobalState(mirrored);
    EXPECT_TRUE(Near(node->GetDefaultS(), KZylVector4(-2, 3, 4))) << "order " << order;
    EXPECT_TRUE(Near(node->GetDefaultR(), rotation, 1e-7)) << "order " << order;
    EXPECT_TRUE(Near(node->GetGlobalFromDefaultTake(), mirrored)) << "order " << order;

    // A mirror along Y is carried by the X scale and a rotation that gives the same matrix.
    KZylNode* other = NewNode("m");
    other->SetRotationOrder(eSourcePivot, rotationOrder);
    KZylXMatrix mirroredY = ScalingMatrix(KZylVector4(2, -3, 4)) * RotationMatrix(rotation, rotationOrder);
    other->SetGlobalState(mirroredY);
    EXPECT_LT(other->GetDefaultS()[0], 0.0) << "order " << order;
    EXPECT_GT(other->GetDefaultS()[1], 0.0) << "order " << order;
    EXPECT_TRUE(Near(other->GetGlobalFromDefaultTake(), mirroredY)) << "order " << order;
  }
}

TEST_F(NodeTransformTest, SetGlobalStateWithAZeroRowGivesZeroScaleAndFiniteAngles) {
  struct Case {
    KZylVector4 scaling;
    KZylVector4 rotation;
  };
  const Case cases[] = {{KZylVector4(1, 0, 1), KZylVector4(0, 0, 30)},
                        {KZylVector4(0, 1, 1), KZylVector4(30, 0, 0)},
                        {KZylVector4(2, 3, 0), KZylVector4(0, 0, 0)},
                        {KZylVector4(0, 0, 0), KZylVector4(0, 0, 0)}};
  for (const Case& c : cases) {
    KZylNode* node = NewNode("flat");
    KZylXMatrix global = ScalingMatrix(c.scaling) * RotationMatrix(c.rotation, eEulerXYZ);
    global.SetT(KZylVector4(1, 2, 3));
    node->SetGlobalState(global);
    for (int i = 0; i < 3; ++i) {
      EXPECT_TRUE(std::isfinite(node->GetDefaultR()[i]));
      EXPECT_TRUE(std::isfinite(node->GetDefaultS()[i]));
    }
    EXPECT_TRUE(Near(node->GetDefaultS(), c.scaling));
    EXPECT_TRUE(Near(node->GetDefaultR(), c.rotation, 1e-9));
    EXPECT_TRUE(Near(node->GetDefaultT(), KZylVector4(1, 2, 3)));
    EXPECT_TRUE(Near(node->GetGlobalFromDefaultTake(), global));
  }
}

TEST_F(NodeTransformTest, SetGlobalStateLeavesPivotsAndPreRotationAlone) {
  KZylNode* node = NewNode("n");
  node->SetRotationPivot(eSourcePivot, KZylVector4(1, 2, 3));
  node->SetPreRotation(eSourcePivot, KZylVector4(0, 90, 0));
  node->SetGlobalState(TranslationMatrix(KZylVector4(4, 5, 6)));
  EXPECT_EQ(node->GetRotationPivot(eSourcePivot), KZylVector4(1, 2, 3));
  EXPECT_EQ(node->GetPreRotation(eSourcePivot), KZylVector4(0, 90, 0));
  EXPECT_TRUE(Near(node->GetDefaultT(), KZylVector4(4, 5, 6)));
}

TEST_F(NodeTransformTest, SetGlobalStateUnderAParentMakesThatGlobalMatrix) {
  KZylNode* parent = NewNode("parent");
  KZylNode* child = NewNode("child");
  ASSERT_TRUE(parent->AddChild(child));
  parent->SetDefaultT(KZylVector4(10, 0, 0));
  parent->SetDefaultR(KZylVector4(0, 0, 90));
  parent->SetDefaultS(KZylVector4(2, 2, 2));
  KZylXMatrix global = RotationMatrix(KZylVector4(0, 30, 0), eEulerXYZ) * TranslationMatrix(KZylVector4(1, 2, 3));
  child->SetGlobalState(global);
  EXPECT_TRUE(Near(child->GetGlobalFromDefaultTake(), global));
}

TEST_F(NodeTransformTest, GlobalMatrixThroughParentsWithPivotsOffsetsAndRotations) {
  // The point (1, 1, 1) is followed step by step by hand:
  //   child: minus the scaling pivot (0, 1, 0) -> (1, 0, 1); scaled by 2 -> (2, 0, 2); plus the
  //   pivot -> (2, 1, 2); plus the scaling offset (0, 0, 1) -> (2, 1, 3); inverse post-rotation
  //   (a quarter turn about Z undone) -> (1, -2, 3); pre-rotation a quarter turn about X ->
  //   (1, -3, -2); plus the translation (0, 5, 0) -> (1, 2, -2).
  //   parent: minus the rotation pivot (1, 0, 0) -> (0, 2, -2); a quarter turn about Z ->
  //   (-2, 0, -2); plus the pivot -> (-1, 0, -2); plus the rotation offset (0, 0, 3) ->
  //   (-1, 0, 1); plus the translation (10, 0, 0) -> (9, 0, 1).
  KZylNode* parent = NewNode("parent");
  KZylNode* child = NewNode("child");
  ASSERT_TRUE(parent->AddChild(child));
  parent->SetDefaultT(KZylVector4(10, 0, 0));
  parent->SetDefaultR(KZylVector4(0, 0, 90));
  parent->SetRotationPivot(eSourcePivot, KZylVector4(1, 0, 0));
  parent->SetRotationOffset(eSourcePivot, KZylVector4(0, 0, 3));
  child->SetDefaultT(KZylVector4(0, 5, 0));
  child->SetDefaultS(KZylVector4(2, 2, 2));
  child->SetScalingPivot(eSourcePivot, KZylVector4(0, 1, 0));
  child->SetScalingOffset(eSourcePivot, KZylVector4(0, 0, 1));
  child->SetPostRotation(eSourcePivot, KZylVector4(0, 0, 90));
  child->SetPreRotation(eSourcePivot, KZylVector4(90, 0, 0));

  KZylXMatrix global = child->GetGlobalFromDefaultTake();
  EXPECT_TRUE(Near(global.MultT(KZylVector4(1, 1, 1)), KZylVector4(9, 0, 1), 1e-12));
  // The destination pivot set is separate: without its pivots the same node maps elsewhere.
  EXPECT_FALSE(Near(child->GetGlobalFromDefaultTake(eDestinationPivot).MultT(KZylVector4(1, 1, 1)),
                    KZylVector4(9, 0, 1), 1e-6));
}

TEST_F(NodeTransformTest, DestinationPivotsReadAsDefaultsUntilSetAndCloneApart) {
  KZylNode* node = NewNode("n");
  EXPECT_TRUE(Near(node->GetRotationPivot(eDestinationPivot), KZylVector4(0, 0, 0)));
  EXPECT_EQ(node->GetRotationOrder(eDestinationPivot), eEulerXYZ);
  EXPECT_FALSE(node->GetRotationActive(eDestinationPivot));
  node->SetRotationPivot(eDestinationPivot, KZylVector4(1, 2, 3));
  EXPECT_TRUE(Near(node->GetRotationPivot(eDestinationPivot), KZylVector4(1, 2, 3)));
  EXPECT_TRUE(Near(node->GetRotationPivot(eSourcePivot), KZylVector4(0, 0, 0)));

  auto* copy = static_cast<KZylNode*>(node->Clone());
  EXPECT_TRUE(Near(copy->GetRotationPivot(eDestinationPivot), KZylVector4(1, 2, 3)));
  copy->SetRotationPivot(eDestinationPivot, KZylVector4(4, 5, 6));
  EXPECT_TRUE(Near(node->GetRotationPivot(eDestinationPivot), KZylVector4(1, 2, 3)));
  // A clone of a node without destination pivots has none either.
  auto* plain = static_cast<KZylNode*>(NewNode("p")->Clone());
  EXPECT_TRUE(Near(plain->GetScalingOffset(eDestinationPivot), KZylVector4(0, 0, 0)));
}

TEST_F(NodeTransformTest, RotationOrderAndSwitchArePerSetAndCloned) {
  KZylNode* node = NewNode("n");
  node->SetRotationOrder(eSourcePivot, eEulerZYX);
  node->SetRotationActive(true);
  node->SetRotationOrder(eDestinationPivot, eEulerYXZ);
  EXPECT_EQ(node->GetRotationOrder(eSourcePivot), eEulerZYX);
  EXPECT_EQ(node->GetRotationOrder(eDestinationPivot), eEulerYXZ);
  EXPECT_TRUE(node->GetRotationActive(eSourcePivot));
  EXPECT_FALSE(node->GetRotationActive(eDestinationPivot));
  // The order is used by the matrices: 90 degrees about Z then X differs from X then Z.
  node->SetDefaultR(KZylVector4(90, 0, 90));
  const KZylXMatrix zyx = node->GetLocalFromDefaultTake(eSourcePivot);
  node->SetRotationOrder(eSourcePivot, eEulerXYZ);
  EXPECT_FALSE(Near(node->GetLocalFromDefaultTake(eSourcePivot), zyx));
  node->SetRotationOrder(eSourcePivot, eEulerZYX);

  auto* copy = static_cast<KZylNode*>(node->Clone());
  EXPECT_EQ(copy->GetRotationOrder(eSourcePivot), eEulerZYX);
  EXPECT_EQ(copy->GetRotationOrder(eDestinationPivot), eEulerYXZ);
  EXPECT_TRUE(copy->GetRotationActive(eSourcePivot));
  copy->SetRotationActive(false);
  EXPECT_TRUE(node->GetRotationActive(eSourcePivot));
}

TEST_F(NodeTransformTest, GlobalMatrixComposesThreeLevels) {
  KZylNode* a = NewNode("a");
  KZylNode* b = NewNode("b");
  KZylNode* c = NewNode("c");
  ASSERT_TRUE(a->AddChild(b));
  ASSERT_TRUE(b->AddChild(c));
  a->SetDefaultT(KZylVector4(1, 0, 0));
  b->SetDefaultS(KZylVector4(3, 3, 3));
  c->SetDefaultT(KZylVector4(0, 1, 0));
  // (0, 0, 0) -> c: (0, 1, 0) -> b: (0, 3, 0) -> a: (1, 3, 0)
  EXPECT_TRUE(Near(c->GetGlobalFromDefaultTake().MultT(KZylVector4(0, 0, 0)), KZylVector4(1, 3, 0), 1e-12));
  EXPECT_TRUE(Near(c->GetLocalFromDefaultTake().MultT(KZylVector4(0, 0, 0)), KZylVector4(0, 1, 0), 1e-12));
}

}  // namespace
