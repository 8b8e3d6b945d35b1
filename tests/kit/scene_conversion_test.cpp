// Scene conversions: the change of axes between axis systems, the axis conversion of a scene
// (global matrices follow it) and the unit conversion of every length.

#include <gtest/gtest.h>

#include "kit/scene_conversion.h"
#include "kit/zylsdk.h"
#include "tests/support/near.h"

namespace {

using namespace zylsdk;

const KZylAxisSystem kYUp(KZylAxisSystem::eYAxis, KZylAxisSystem::eParityOdd, KZylAxisSystem::eRightHanded);
const KZylAxisSystem kZUp(KZylAxisSystem::eZAxis, -KZylAxisSystem::eParityOdd, KZylAxisSystem::eRightHanded);
const KZylAxisSystem kXUp(KZylAxisSystem::eXAxis, KZylAxisSystem::eParityOdd, KZylAxisSystem::eRightHanded);

KZylVector4 Apply(const KZylMatrix& m, const KZylVector4& v) { return KZylXMatrix(m).MultT(v); }

class SceneConversionTest : public ::testing::Test {
 protected:
  SceneConversionTest() : scene(KZylScene::Create(&manager, "")) {}
  KZylNode* AddNode(const char* name, KZylNode* parent = nullptr) {
    KZylNode* node = KZylNode::Create(&manager, name);
    (parent ? parent : scene->GetRootNode())->AddChild(node);
    return node;
  }
  KZylSdkManager manager;
  KZylScene* scene;
};

TEST(AxisConversionMatrix, ZUpToYUpCarriesUpToUpAndFrontToFront) {
  KZylXMatrix m;
  ASSERT_TRUE(AxisConversionMatrix(kZUp, kYUp, m));
  // Z up becomes Y up; the front -Y becomes +Z; X stays.
  EXPECT_TRUE(zyltest::Near(Apply(m, KZylVector4(0, 0, 1)), KZylVector4(0, 1, 0, 1), 1e-12, 3));
  EXPECT_TRUE(zyltest::Near(Apply(m, KZylVector4(0, -1, 0)), KZylVector4(0, 0, 1, 1), 1e-12, 3));
  EXPECT_TRUE(zyltest::Near(Apply(m, KZylVector4(1, 0, 0)), KZylVector4(1, 0, 0, 1), 1e-12, 3));
}

TEST(AxisConversionMatrix, XUpToYUpIsARotation) {
  KZylXMatrix m;
  ASSERT_TRUE(AxisConversionMatrix(kXUp, kYUp, m));
  EXPECT_TRUE(zyltest::Near(Apply(m, KZylVector4(1, 0, 0)), KZylVector4(0, 1, 0, 1), 1e-12, 3));
  // A rotation: the image of the frame is right-handed.
  const KZylVector4 x = Apply(m, KZylVector4(1, 0, 0)), y = Apply(m, KZylVector4(0, 1, 0)), z = Apply(m, KZylVector4(0, 0, 1));
  EXPECT_NEAR(x.CrossProduct(y).DotProduct(z), 1.0, 1e-12);
}

TEST(AxisConversionMatrix, SameSystemIsTheIdentityAndHandednessCannotChange) {
  KZylXMatrix m;
  ASSERT_TRUE(AxisConversionMatrix(kZUp, kZUp, m));
  EXPECT_TRUE(m.IsIdentity(1e-12));
  const KZylAxisSystem leftHanded(KZylAxisSystem::eYAxis, KZylAxisSystem::eParityOdd, KZylAxisSystem::eLeftHanded);
  EXPECT_FALSE(AxisConversionMatrix(kYUp, leftHanded, m));
}

TEST_F(SceneConversionTest, AxisConversionMovesEveryGlobalMatrixAndKeepsLocalOnes) {
  scene->GetGlobalSettings().SetAxisSystem(kZUp);
  KZylNode* parent = AddNode("parent");
  parent->SetDefaultT(KZylVector4(1, 2, 3, 1));
  parent->SetDefaultR(KZylVector4(10, 20, 30));
  parent->SetRotationPivot(eSourcePivot, KZylVector4(0.5, 0, 0));
  KZylNode* child = AddNode("child", parent);
  child->SetDefaultT(KZylVector4(0, 5, 0, 1));
  child->SetPostRotation(eSourcePivot, KZylVector4(0, -90, 0));
  const KZylXMatrix parentBefore = parent->GetGlobalFromDefaultTake();
  const KZylXMatrix childBefore = child->GetGlobalFromDefaultTake();

  ASSERT_TRUE(ConvertAxisSystem(*scene, kYUp));
  KZylXMatrix m;
  AxisConversionMatrix(kZUp, kYUp, m);
  EXPECT_TRUE(zyltest::Near(parent->GetGlobalFromDefaultTake(), parentBefore * m, 1e-9));
  EXPECT_TRUE(zyltest::Near(child->GetGlobalFromDefaultTake(), childBefore * m, 1e-9));
  EXPECT_EQ(parent->GetDefaultT(), KZylVector4(1, 2, 3, 1));
  EXPECT_TRUE(scene->GetGlobalSettings().GetAxisSystem() == kYUp);
}

TEST_F(SceneConversionTest, AxisConversionToAnotherHandednessChangesNothing) {
  AddNode("n")->SetDefaultT(KZylVector4(1, 0, 0, 1));
  const KZylAxisSystem leftHanded(KZylAxisSystem::eYAxis, KZylAxisSystem::eParityOdd, KZylAxisSystem::eLeftHanded);
  EXPECT_FALSE(ConvertAxisSystem(*scene, leftHanded));
  EXPECT_TRUE(scene->GetRootNode()->GetLocalFromDefaultTake().IsIdentity());
  EXPECT_TRUE(scene->GetGlobalSettings().GetAxisSystem() == kYUp);
}

TEST_F(SceneConversionTest, UnitConversionScalesEveryLength) {
  // Centimetres to metres: lengths are divided by 100.
  KZylNode* node = AddNode("n");
  node->SetDefaultT(KZylVector4(100, 200, 300, 1));
  node->SetDefaultR(KZylVector4(45, 0, 0));
  node->SetDefaultS(KZylVector4(2, 2, 2, 1));
  node->SetRotationPivot(eSourcePivot, KZylVector4(50, 0, 0));
  node->SetScalingOffset(eSourcePivot, KZylVector4(0, 10, 0));
  KZylMesh* mesh = KZylMesh::Create(&manager, "mesh");
  mesh->InitControlPointArray(2);
  mesh->SetControlPointAt(KZylVector4(100, 0, -50, 1), 1);
  KZylShape* shape = KZylShape::Create(&manager, "shape");
  shape->InitControlPointArray(2);
  shape->SetControlPointAt(KZylVector4(0, 300, 0, 1), 0);
  ASSERT_EQ(mesh->AddShape(shape, "smile"), 0);
  KZylCluster* cluster = KZylCluster::Create(&manager, "cluster");
  cluster->SetTransformLinkMatrix(KZylXMatrix(KZylVector4(100, 0, 0), KZylVector4(0, 90, 0), KZylVector4(1, 1, 1)));
  ASSERT_TRUE(mesh->AddLink(cluster));
  node->SetNodeAttribute(mesh);
  KZylNode* cameraNode = AddNode("camera");
  KZylCamera* camera = KZylCamera::Create(&manager, "camera");
  cameraNode->SetNodeAttribute(camera);
  node->CreateTakeNode("Take 001");
  KFCurve* curve = node->GetTakeNode(0)->GetTranslationX();
  curve->KeySet(curve->KeyAdd(KTime(0)), KTime(0), 100.0f, KFCurve::eInterpolationCubic, KFCurve::eTangentUser, 200.0f, 50.0f);
  const KZylXMatrix globalBefore = node->GetGlobalFromDefaultTake();

  ASSERT_TRUE(ConvertUnit(*scene, KZylSystemUnit(100.0)));
  EXPECT_EQ(scene->GetGlobalSettings().GetSystemUnit().GetScaleFactor(), 100.0);
  EXPECT_TRUE(zyltest::Near(node->GetDefaultT(), KZylVector4(1, 2, 3, 1)));
  EXPECT_EQ(node->GetDefaultR(), KZylVector4(45, 0, 0));
  EXPECT_EQ(node->GetDefaultS(), KZylVector4(2, 2, 2, 1));
  EXPECT_TRUE(zyltest::Near(node->GetRotationPivot(eSourcePivot), KZylVector4(0.5, 0, 0)));
  EXPECT_TRUE(zyltest::Near(node->GetScalingOffset(eSourcePivot), KZylVector4(0, 0.1, 0)));
  // The global matrix is the same transform in metres: its translation row divided by 100.
  KZylMatrix expected = globalBefore;
  for (int c = 0; c < 3; ++c) expected.Set(3, c, globalBefore.Get(3, c) / 100.0);
  EXPECT_TRUE(zyltest::Near(node->GetGlobalFromDefaultTake(), expected, 1e-9));
  EXPECT_TRUE(zyltest::Near(mesh->GetControlPointAt(1), KZylVector4(1, 0, -0.5, 1)));
  EXPECT_TRUE(zyltest::Near(shape->GetControlPointAt(0), KZylVector4(0, 3, 0, 1)));
  EXPECT_NEAR(cluster->GetTransformLinkMatrix().Get(3, 0), 1.0, 1e-12);
  EXPECT_NEAR(camera->GetNearPlane(), 0.1, 1e-12);
  EXPECT_NEAR(camera->GetFarPlane(), 40.0, 1e-12);
  EXPECT_FLOAT_EQ(curve->KeyGetValue(0), 1.0f);
  EXPECT_FLOAT_EQ(curve->KeyGetRightDerivative(0), 2.0f);
  EXPECT_FLOAT_EQ(curve->KeyGetLeftDerivative(0), 0.5f);
}

TEST_F(SceneConversionTest, SharedGeometryIsScaledOnce) {
  KZylMesh* mesh = KZylMesh::Create(&manager, "mesh");
  mesh->InitControlPointArray(1);
  mesh->SetControlPointAt(KZylVector4(100, 0, 0, 1), 0);
  AddNode("a")->SetNodeAttribute(mesh);
  AddNode("b")->SetNodeAttribute(mesh);
  ASSERT_TRUE(ConvertUnit(*scene, KZylSystemUnit(100.0)));
  EXPECT_TRUE(zyltest::Near(mesh->GetControlPointAt(0), KZylVector4(1, 0, 0, 1)));
}

TEST_F(SceneConversionTest, UnitWithoutSizeIsRefused) {
  AddNode("n")->SetDefaultT(KZylVector4(1, 0, 0, 1));
  EXPECT_FALSE(ConvertUnit(*scene, KZylSystemUnit(0.0)));
  EXPECT_EQ(scene->GetNodes()[0]->GetDefaultT(), KZylVector4(1, 0, 0, 1));
}

}  // namespace
