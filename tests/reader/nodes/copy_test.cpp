// Copies: scenes with their poses and re-linked clusters, nodes with attributes and transforms,
// meshes with layers, shapes and skins, cameras, lights, clusters and poses.

#include "tests/reader/nodes/library_objects.h"
#include "tests/reader/nodes/scene_documents.h"
#include "tests/support/reader_fixture.h"

namespace {

using namespace zylsdk;

class CopyTest : public zyltest::ReaderTest {
 protected:
  KZylNode* CopyOf(KZylNode* source) {
    KZylNode* copy = KZylNode::Create(&manager, source->GetName().Buffer());
    EXPECT_TRUE(reader->CopyNode(copy, source));
    return copy;
  }
  // A mesh node of `sceneToFill` whose skin has one cluster linked to `link`.
  KZylCluster* AddSkinnedMesh(KZylScene* sceneToFill, KZylNode* link) {
    KZylNode* node = KZylNode::Create(&manager, "body");
    KZylMesh* mesh = zyltest::MakeLibraryMesh(manager, {});
    node->SetNodeAttribute(mesh);
    KZylCluster* cluster = KZylCluster::Create(&manager, "");
    cluster->SetLink(link);
    mesh->AddLink(cluster);
    sceneToFill->GetRootNode()->AddChild(node);
    return cluster;
  }
  static KZylCluster* FirstCluster(KZylNode* node) {
    KZylSkin* skin = static_cast<KZylSkin*>(node->GetGeometry()->GetDeformer(0, KZylDeformer::eSkin));
    return skin ? skin->GetCluster(0) : nullptr;
  }
};

TEST_F(CopyTest, UnknownAttributeTypesWarnAndLeaveNoAttribute) {
  KZylNode* source = KZylNode::Create(&manager, "m");
  source->SetNodeAttribute(KZylMarker::Create(&manager, ""));
  KZylNode* copy = CopyOf(source);
  EXPECT_EQ(copy->GetNodeAttribute(), nullptr);
  EXPECT_EQ(CountMessage("Warning: unknown attribute type found in node m"), 1);
  source->SetNodeAttribute(nullptr);
  EXPECT_EQ(CopyOf(source)->GetNodeAttribute(), nullptr);
  EXPECT_EQ(CountMessage("Warning: unknown attribute type found in node m"), 1);
}

TEST_F(CopyTest, EachKnownKindGetsAFreshAttribute) {
  KZylNode* source = KZylNode::Create(&manager, "s");
  KZylSkeleton* skeleton = KZylSkeleton::Create(&manager, "");
  skeleton->SetSkeletonType(KZylSkeleton::eEffector);
  const std::vector<KZylNodeAttribute*> attributes = {KZylNull::Create(&manager, ""), skeleton,
                                                       KZylNurb::Create(&manager, ""), KZylLight::Create(&manager, ""),
                                                       KZylCamera::Create(&manager, "")};
  for (KZylNodeAttribute* attribute : attributes) {
    source->SetNodeAttribute(attribute);
    KZylNodeAttribute* copied = CopyOf(source)->GetNodeAttribute();
    ASSERT_NE(copied, nullptr);
    EXPECT_NE(copied, attribute);
    EXPECT_EQ(copied->GetAttributeType(), attribute->GetAttributeType());
  }
  source->SetNodeAttribute(skeleton);
  EXPECT_EQ(static_cast<KZylSkeleton*>(CopyOf(source)->GetNodeAttribute())->GetSkeletonType(), KZylSkeleton::eEffector);
  EXPECT_TRUE(Messages().empty());
}

TEST_F(CopyTest, TransformsAreCopiedAndTheInheritTypeIsAlwaysOne) {
  KZylNode* source = KZylNode::Create(&manager, "s");
  source->SetTransformationInheritType(eInheritRrSs);
  source->SetDefaultT(KZylVector4(1, 2, 3, 1));
  source->SetDefaultR(KZylVector4(4, 5, 6));
  source->SetDefaultS(KZylVector4(7, 8, 9, 1));
  source->SetPreRotation(eSourcePivot, KZylVector4(1, 0, 0));
  source->SetPostRotation(eSourcePivot, KZylVector4(0, 1, 0));
  source->SetRotationPivot(eSourcePivot, KZylVector4(0, 0, 1));
  source->SetScalingPivot(eSourcePivot, KZylVector4(2, 0, 0));
  source->SetRotationOffset(eSourcePivot, KZylVector4(0, 2, 0));
  source->SetScalingOffset(eSourcePivot, KZylVector4(0, 0, 2));
  source->SetRotationActive(true);
  source->SetRotationOrder(eSourcePivot, eEulerZXY);
  source->SetShadingMode(eLightTextureShading);
  KZylNode* copy = CopyOf(source);
  EXPECT_EQ(copy->GetTransformationInheritType(), eInheritRSrs);
  EXPECT_EQ(copy->GetDefaultT(), source->GetDefaultT());
  EXPECT_EQ(copy->GetDefaultR(), source->GetDefaultR());
  EXPECT_EQ(copy->GetDefaultS(), source->GetDefaultS());
  EXPECT_EQ(copy->GetPreRotation(eSourcePivot), source->GetPreRotation(eSourcePivot));
  EXPECT_EQ(copy->GetPostRotation(eSourcePivot), source->GetPostRotation(eSourcePivot));
  EXPECT_EQ(copy->GetRotationPivot(eSourcePivot), source->GetRotationPivot(eSourcePivot));
  EXPECT_EQ(copy->GetScalingPivot(eSourcePivot), source->GetScalingPivot(eSourcePivot));
  EXPECT_EQ(copy->GetRotationOffset(eSourcePivot), source->GetRotationOffset(eSourcePivot));
  EXPECT_EQ(copy->GetScalingOffset(eSourcePivot), source->GetScalingOffset(eSourcePivot));
  EXPECT_TRUE(copy->GetRotationActive());
  EXPECT_EQ(copy->GetRotationOrder(eSourcePivot), eEulerZXY);
  EXPECT_EQ(copy->GetShadingMode(), eLightTextureShading);
}

TEST_F(CopyTest, AMeshWithTwoLayersGivesExactlyTwoLayers) {
  KZylMesh* source = zyltest::MakeLibraryMesh(manager, {"m"});
  source->CreateLayer();
  KZylLayerElementUV* uvs = manager.CreateKZylLayerElementUV("map");
  uvs->GetDirectArray().Add(KZylVector2(0.25, 0.75));
  source->GetLayer(1)->SetUVs(uvs);
  KZylMesh* copy = KZylMesh::Create(&manager, "");
  reader->CopyMesh(copy, source);
  ASSERT_EQ(copy->GetLayerCount(), 2);
  ASSERT_NE(copy->GetLayer(1)->GetUVs(), nullptr);
  EXPECT_NE(copy->GetLayer(1)->GetUVs(), uvs);
  EXPECT_EQ(copy->GetLayer(1)->GetUVs()->GetDirectArray(), uvs->GetDirectArray());
  EXPECT_EQ(copy->GetLayer(0)->GetMaterials()->GetDirectArray(), source->GetLayer(0)->GetMaterials()->GetDirectArray());
}

TEST_F(CopyTest, MeshControlPointsNormalsAndPolygonsWithTheirMaterials) {
  KZylMesh* source = zyltest::MakeLibraryMesh(manager, {});
  source->BeginPolygon(3, 4, 5);
  source->AddPolygon(2);
  source->AddPolygon(1);
  source->EndPolygon();
  KZylMesh* copy = KZylMesh::Create(&manager, "");
  reader->CopyMesh(copy, source);
  EXPECT_EQ(copy->GetControlPoints(), source->GetControlPoints());
  EXPECT_EQ(copy->GetNormals()->GetDirectArray(), source->GetNormals()->GetDirectArray());
  ASSERT_EQ(copy->GetPolygonCount(), 2);
  EXPECT_EQ(copy->GetPolygonVertices(), source->GetPolygonVertices());
  for (int p = 0; p < 2; ++p) {
    EXPECT_EQ(copy->GetPolygonSize(p), source->GetPolygonSize(p));
    EXPECT_EQ(copy->GetPolygonMaterial(p), source->GetPolygonMaterial(p));
    EXPECT_EQ(copy->GetPolygonTexture(p), source->GetPolygonTexture(p));
    EXPECT_EQ(copy->GetPolygonGroup(p), source->GetPolygonGroup(p));
  }
  EXPECT_EQ(copy->GetPolygonGroup(0), 7);
  EXPECT_EQ(copy->GetPolygonMaterial(1), 3);
}

TEST_F(CopyTest, ShapesComeWithTheirWeights) {
  KZylMesh* source = zyltest::MakeLibraryMesh(manager, {});
  KZylShape* shape = KZylShape::Create(&manager, "");
  shape->InitControlPointArray(3);
  shape->InitNormals(3);
  shape->SetControlPointAndNormal(KZylVector4(5, 5, 5, 1), KZylVector4(1, 0, 0), 1);
  ASSERT_EQ(source->AddShape(shape, "smile"), 0);
  source->FindProperty("smile").Set(0.75);
  KZylMesh* copy = KZylMesh::Create(&manager, "");
  reader->CopyMesh(copy, source);
  ASSERT_EQ(copy->GetShapeCount(), 1);
  EXPECT_EQ(copy->GetShapeName(0), "smile");
  EXPECT_NE(copy->GetShape(0), shape);
  EXPECT_EQ(copy->GetShape(0)->GetControlPoints(), shape->GetControlPoints());
  EXPECT_EQ(copy->GetShape(0)->GetNormals()->GetDirectArray(), shape->GetNormals()->GetDirectArray());
  EXPECT_EQ(copy->FindProperty("smile").GetDouble(), 0.75);
}

TEST_F(CopyTest, AShapeThatCannotBeAddedWarns) {
  KZylMesh* source = zyltest::MakeLibraryMesh(manager, {});
  KZylShape* shape = KZylShape::Create(&manager, "");
  shape->InitControlPointArray(3);
  ASSERT_EQ(source->AddShape(shape, "frown"), 0);
  // The mesh grew after its shape was added: the copied shape no longer fits the copy.
  source->InitControlPointArray(4);
  KZylMesh* copy = KZylMesh::Create(&manager, "");
  reader->CopyMesh(copy, source);
  EXPECT_EQ(copy->GetShapeCount(), 0);
  EXPECT_EQ(CountMessage("Warning: Could not add shape frown to mesh."), 1);
}

TEST_F(CopyTest, SkinsComeWithCopiedClusters) {
  KZylMesh* source = zyltest::MakeLibraryMesh(manager, {});
  KZylNode* joint = KZylNode::Create(&manager, "joint");
  KZylCluster* cluster = KZylCluster::Create(&manager, "");
  cluster->AddControlPointIndex(2, 0.25);
  cluster->AddControlPointIndex(0, 1.0);
  cluster->SetLinkMode(KZylCluster::eTotalOne);
  cluster->SetTransformMatrix(KZylXMatrix(KZylVector4(1, 0, 0), KZylVector4(), KZylVector4(1, 1, 1)));
  cluster->SetTransformLinkMatrix(KZylXMatrix(KZylVector4(0, 1, 0), KZylVector4(), KZylVector4(1, 1, 1)));
  cluster->SetLink(joint);
  source->AddLink(cluster);
  KZylMesh* copy = KZylMesh::Create(&manager, "");
  reader->CopyMesh(copy, source);
  ASSERT_EQ(copy->GetDeformerCount(KZylDeformer::eSkin), 1);
  KZylCluster* copied = static_cast<KZylSkin*>(copy->GetDeformer(0, KZylDeformer::eSkin))->GetCluster(0);
  ASSERT_NE(copied, nullptr);
  EXPECT_NE(copied, cluster);
  EXPECT_EQ(copied->GetControlPointIndices(), cluster->GetControlPointIndices());
  EXPECT_EQ(copied->GetControlPointWeights(), cluster->GetControlPointWeights());
  EXPECT_EQ(copied->GetLinkMode(), KZylCluster::eTotalOne);
  EXPECT_EQ(copied->GetTransformMatrix(), cluster->GetTransformMatrix());
  EXPECT_EQ(copied->GetTransformLinkMatrix(), cluster->GetTransformLinkMatrix());
  EXPECT_EQ(copied->GetLink(), joint);
  EXPECT_EQ(reader->GetState().clusters.back(), copied);
}

TEST_F(CopyTest, CamerasCopyEveryProperty) {
  KZylCamera* source = KZylCamera::Create(&manager, "");
  source->SetProjectionType(KZylCamera::eOrthogonal);
  source->SetPosition(KZylVector4(1, 2, 3, 1));
  source->SetDefaultCameraInterestPosition(KZylVector4(4, 5, 6, 1));
  source->SetUpVector(KZylVector4(0, 0, 1));
  source->SetDefaultFieldOfView(33);
  source->SetApertureMode(KZylCamera::eFocalLength);
  source->SetAspect(KZylCamera::eFixedRatio, 100, 50);
  source->SetNearPlane(0.5);
  source->SetFarPlane(99);
  source->SetOrthoZoom(3);
  source->SetFocusDistanceSource(KZylCamera::eSpecificDistance);
  source->SetSpecificDistance(12);
  source->SetApertureWidth(1.5);
  source->SetApertureHeight(0.5);
  source->SetSqueezeRatio(2);
  source->SetApertureFormat(3);
  source->SetFormat(4);
  KZylCamera* copy = KZylCamera::Create(&manager, "");
  reader->CopyCamera(copy, source);
  EXPECT_EQ(copy->GetProjectionType(), KZylCamera::eOrthogonal);
  EXPECT_EQ(copy->GetPosition(), source->GetPosition());
  EXPECT_EQ(copy->GetDefaultCameraInterestPosition(), source->GetDefaultCameraInterestPosition());
  EXPECT_EQ(copy->GetUpVector(), source->GetUpVector());
  EXPECT_EQ(copy->GetDefaultFieldOfView(), 33);
  EXPECT_EQ(copy->GetApertureMode(), KZylCamera::eFocalLength);
  EXPECT_EQ(copy->GetAspectRatioMode(), KZylCamera::eFixedRatio);
  EXPECT_EQ(copy->GetAspectWidth(), 100);
  EXPECT_EQ(copy->GetAspectHeight(), 50);
  EXPECT_EQ(copy->GetNearPlane(), 0.5);
  EXPECT_EQ(copy->GetFarPlane(), 99);
  EXPECT_EQ(copy->GetOrthoZoom(), 3);
  EXPECT_EQ(copy->GetFocusDistanceSource(), KZylCamera::eSpecificDistance);
  EXPECT_EQ(copy->GetSpecificDistance(), 12);
  EXPECT_EQ(copy->GetApertureWidth(), 1.5);
  EXPECT_EQ(copy->GetApertureHeight(), 0.5);
  EXPECT_EQ(copy->GetSqueezeRatio(), 2);
  EXPECT_EQ(copy->GetApertureFormat(), 3);
  EXPECT_EQ(copy->GetFormat(), 4);
}

TEST_F(CopyTest, LightsCopyEveryProperty) {
  KZylLight* source = KZylLight::Create(&manager, "");
  source->SetLightType(KZylLight::eSpot);
  source->SetDefaultColor(KZylColor(0.1, 0.2, 0.3, 0.4));
  source->SetDefaultIntensity(150);
  source->SetDefaultConeAngle(30);
  source->SetDefaultFog(7);
  KZylLight* copy = KZylLight::Create(&manager, "");
  reader->CopyLight(copy, source);
  EXPECT_EQ(copy->GetLightType(), KZylLight::eSpot);
  EXPECT_EQ(copy->GetDefaultColor(), KZylColor(0.1, 0.2, 0.3, 0.4));
  EXPECT_EQ(copy->GetDefaultIntensity(), 150);
  EXPECT_EQ(copy->GetDefaultConeAngle(), 30);
  EXPECT_EQ(copy->GetDefaultFog(), 7);
}

TEST_F(CopyTest, PosesCopyEveryEntry) {
  KZylNode* a = KZylNode::Create(&manager, "a");
  KZylMatrix matrix;
  matrix.Set(3, 0, 5.0);
  KZylPose* source = KZylPose::Create(&manager, "p");
  source->Add(a, matrix, true);
  source->Add(nullptr, KZylMatrix(), false);
  KZylPose* copy = KZylPose::Create(&manager, "q");
  reader->CopyPose(copy, source);
  ASSERT_EQ(copy->GetCount(), 2);
  EXPECT_EQ(copy->GetNode(0), a);
  EXPECT_EQ(copy->GetMatrix(0), matrix);
  EXPECT_FALSE(copy->IsLocalMatrix(0));
  reader->CopyPose(copy, nullptr);
  EXPECT_EQ(copy->GetCount(), 2);
}

TEST_F(CopyTest, SceneCopyMakesNewNodesInOrder) {
  KZylScene* source = KZylScene::Create(&manager, "");
  KZylNode* a = KZylNode::Create(&manager, "a");
  KZylNode* b = KZylNode::Create(&manager, "b");
  KZylNode* c = KZylNode::Create(&manager, "c");
  source->GetRootNode()->AddChild(a);
  source->GetRootNode()->AddChild(c);
  a->AddChild(b);
  ASSERT_TRUE(reader->CopyScene(scene, source));
  EXPECT_TRUE(reader->GetStatus());
  KZylNode* root = scene->GetRootNode();
  ASSERT_EQ(root->GetChildCount(), 2);
  EXPECT_EQ(root->GetChild(0)->GetName(), "a");
  EXPECT_EQ(root->GetChild(1)->GetName(), "c");
  EXPECT_NE(root->GetChild(0), a);
  ASSERT_EQ(root->GetChild(0)->GetChildCount(), 1);
  EXPECT_EQ(root->GetChild(0)->GetChild(0)->GetName(), "b");
  EXPECT_NE(root->GetChild(0)->GetChild(0), b);
  // The source keeps its own nodes.
  EXPECT_EQ(a->GetParent(), source->GetRootNode());
}

TEST_F(CopyTest, PosesArriveAsBindPosesUnderTheirNames) {
  KZylScene* source = KZylScene::Create(&manager, "");
  KZylPose* pose = KZylPose::Create(&manager, "rest");
  pose->Add(source->GetRootNode(), KZylMatrix(), false);
  source->AddPose(pose);
  ASSERT_TRUE(reader->CopyScene(scene, source));
  ASSERT_EQ(scene->GetPoseCount(), 1);
  KZylPose* copy = scene->GetPose(0);
  EXPECT_NE(copy, pose);
  EXPECT_EQ(copy->GetName(), "rest");
  EXPECT_TRUE(copy->IsBindPose());
  ASSERT_EQ(copy->GetCount(), 1);
  // The entries name the same nodes as the source pose.
  EXPECT_EQ(copy->GetNode(0), source->GetRootNode());
}

TEST_F(CopyTest, ClustersAreRelinkedToTheSceneNodeNamedWithoutPrefix) {
  KZylScene* source = KZylScene::Create(&manager, "");
  KZylNode* placeholder = KZylNode::Create(&manager, "rig:arm");
  KZylCluster* cluster = AddSkinnedMesh(source, placeholder);
  KZylNode* arm = KZylNode::Create(&manager, "arm");
  source->GetRootNode()->AddChild(arm);
  ASSERT_TRUE(reader->CopyScene(scene, source));
  KZylNode* copiedArm = scene->FindNodeByName("arm");
  ASSERT_NE(copiedArm, nullptr);
  ASSERT_NE(copiedArm, arm);
  KZylCluster* copied = FirstCluster(scene->FindNodeByName("body"));
  ASSERT_NE(copied, nullptr);
  EXPECT_EQ(copied->GetLink(), copiedArm);
  EXPECT_EQ(copied->GetSrcObjectCount(KZylNode::ClassId), 1);
  // The source's cluster is not touched.
  EXPECT_EQ(cluster->GetLink(), placeholder);
}

TEST_F(CopyTest, AClusterWhoseLinkNamesNoNodeKeepsItsLink) {
  KZylScene* source = KZylScene::Create(&manager, "");
  KZylNode* sourceJoint = KZylNode::Create(&manager, "ns:leg");
  source->GetRootNode()->AddChild(sourceJoint);
  AddSkinnedMesh(source, sourceJoint);
  ASSERT_TRUE(reader->CopyScene(scene, source));
  // No node of the destination is named "leg" (the copy is "ns:leg").
  EXPECT_EQ(FirstCluster(scene->FindNodeByName("body"))->GetLink(), sourceJoint);
}

TEST_F(CopyTest, RelinkingFindsTheFirstNodeInPreOrder) {
  KZylScene* source = KZylScene::Create(&manager, "");
  KZylNode* outer = KZylNode::Create(&manager, "outer");
  KZylNode* deep = KZylNode::Create(&manager, "hand");
  KZylNode* later = KZylNode::Create(&manager, "hand");
  source->GetRootNode()->AddChild(outer);
  outer->AddChild(deep);
  source->GetRootNode()->AddChild(later);
  AddSkinnedMesh(source, KZylNode::Create(&manager, "hand"));
  ASSERT_TRUE(reader->CopyScene(scene, source));
  KZylNode* expected = scene->FindNodeByName("hand");
  EXPECT_EQ(expected->GetParent()->GetName(), "outer");
  EXPECT_EQ(FirstCluster(scene->FindNodeByName("body"))->GetLink(), expected);
}

TEST_F(CopyTest, AClusterWaitsForTheCopyThatBringsItsNodeAndLaterCopiesKeepTheFirst) {
  KZylScene* body = KZylScene::Create(&manager, "");
  AddSkinnedMesh(body, KZylNode::Create(&manager, "rig:hand"));
  KZylScene* skeleton = KZylScene::Create(&manager, "");
  skeleton->GetRootNode()->AddChild(KZylNode::Create(&manager, "hand"));
  ASSERT_TRUE(reader->CopyScene(scene, body));
  ASSERT_TRUE(reader->CopyScene(scene, skeleton));
  ASSERT_TRUE(reader->CopyScene(scene, body));
  ASSERT_TRUE(reader->CopyScene(scene, skeleton));
  KZylNode* root = scene->GetRootNode();
  ASSERT_EQ(root->GetChildCount(), 4);
  // Both bodies link to the first hand, the one the second copy brought.
  EXPECT_EQ(FirstCluster(root->GetChild(0))->GetLink(), root->GetChild(1));
  EXPECT_EQ(FirstCluster(root->GetChild(2))->GetLink(), root->GetChild(1));
}

TEST_F(CopyTest, AClusterFindsNodesThatCopiesWithoutSkinsBroughtBefore) {
  KZylScene* skeleton = KZylScene::Create(&manager, "");
  skeleton->GetRootNode()->AddChild(KZylNode::Create(&manager, "hand"));
  KZylScene* body = KZylScene::Create(&manager, "");
  AddSkinnedMesh(body, KZylNode::Create(&manager, "rig:hand"));
  ASSERT_TRUE(reader->CopyScene(scene, skeleton));
  ASSERT_TRUE(reader->CopyScene(scene, skeleton));
  ASSERT_TRUE(reader->CopyScene(scene, body));
  KZylNode* root = scene->GetRootNode();
  ASSERT_EQ(root->GetChildCount(), 3);
  // The first hand of the scene, brought by the first of two copies that had no skin.
  EXPECT_EQ(FirstCluster(root->GetChild(2))->GetLink(), root->GetChild(0));
}

TEST_F(CopyTest, AClusterFindsANodeTheSceneHadBeforeItsFirstCopy) {
  KZylNode* earlier = KZylNode::Create(&manager, "hand");
  scene->GetRootNode()->AddChild(earlier);
  KZylScene* body = KZylScene::Create(&manager, "");
  AddSkinnedMesh(body, KZylNode::Create(&manager, "rig:hand"));
  body->GetRootNode()->AddChild(KZylNode::Create(&manager, "hand"));
  ASSERT_TRUE(reader->CopyScene(scene, body));
  KZylNode* root = scene->GetRootNode();
  ASSERT_EQ(root->GetChildCount(), 3);
  // The scene's own node comes first in pre-order, before the hand the copy brought.
  EXPECT_EQ(FirstCluster(root->GetChild(1))->GetLink(), earlier);
}

}  // namespace
