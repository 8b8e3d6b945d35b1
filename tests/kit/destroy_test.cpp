// Connections between objects, and Destroy removing an object from every place that refers to
// it: node children, attributes, connections, layer-element arrays, skins, cluster links,
// poses, scenes.

#include <gtest/gtest.h>

#include "kit/zylsdk.h"

namespace {

using namespace zylsdk;

class DestroyTest : public ::testing::Test {
 protected:
  KZylSdkManager manager;
  KZylScene* scene = KZylScene::Create(&manager, "scene");
};

TEST_F(DestroyTest, ConnectionsRefuseNullSelfAndDuplicates) {
  KZylNode* node = KZylNode::Create(&manager, "n");
  KZylSurfaceLambert* material = KZylSurfaceLambert::Create(&manager, "m");
  EXPECT_FALSE(node->ConnectZylSrc(nullptr));
  EXPECT_FALSE(node->ConnectZylSrc(node));
  EXPECT_TRUE(node->ConnectZylSrc(material));
  EXPECT_FALSE(node->ConnectZylSrc(material));
  EXPECT_TRUE(node->IsConnectedZylSrc(material));
  EXPECT_EQ(node->GetSrcObjectCount(), 1);
  EXPECT_EQ(node->GetSrcObject(0), material);
  EXPECT_EQ(node->GetSrcObject(1), nullptr);
  EXPECT_EQ(material->GetDstObjectCount(), 1);
  EXPECT_EQ(material->GetDstObject(0), node);
  EXPECT_EQ(node->GetSrcObjectCount(KZylSurfaceMaterial::ClassId), 1);
  EXPECT_EQ(node->GetSrcObjectCount(KZylTexture::ClassId), 0);
  EXPECT_TRUE(node->DisconnectZylSrc(material));
  EXPECT_FALSE(node->DisconnectZylSrc(material));
  EXPECT_EQ(material->GetDstObjectCount(), 0);
}

TEST_F(DestroyTest, MaterialsConnectedToASceneBelongToIt) {
  KZylSurfacePhong* material = KZylSurfacePhong::Create(&manager, "m");
  EXPECT_EQ(material->GetScene(), nullptr);
  scene->ConnectZylSrc(material);
  EXPECT_EQ(material->GetScene(), scene);
  EXPECT_EQ(scene->GetMaterialCount(), 1);
  EXPECT_EQ(scene->GetMaterial(0), material);
}

TEST_F(DestroyTest, DestroyedNodeLeavesItsParentAttributeClusterAndPose) {
  KZylNode* parent = KZylNode::Create(&manager, "parent");
  KZylNode* node = KZylNode::Create(&manager, "joint");
  KZylNode* child = KZylNode::Create(&manager, "child");
  ASSERT_TRUE(scene->GetRootNode()->AddChild(parent));
  ASSERT_TRUE(parent->AddChild(node));
  ASSERT_TRUE(node->AddChild(child));
  KZylSkeleton* skeleton = KZylSkeleton::Create(&manager, "skeleton");
  node->SetNodeAttribute(skeleton);
  KZylCluster* cluster = KZylCluster::Create(&manager, "");
  cluster->SetLink(node);
  KZylPose* pose = KZylPose::Create(&manager, "pose");
  pose->Add(parent, KZylMatrix());
  pose->Add(node, KZylMatrix());
  pose->Add(child, KZylMatrix());
  uint64_t id = node->GetUniqueID();
  int objects = manager.GetObjectCount();

  node->Destroy();

  EXPECT_FALSE(manager.Holds(node, id));
  EXPECT_EQ(manager.GetObjectCount(), objects - 1);
  EXPECT_EQ(parent->GetChildCount(), 0);
  EXPECT_EQ(child->GetParent(), nullptr);
  EXPECT_EQ(skeleton->GetNodeCount(), 0);
  EXPECT_EQ(cluster->GetLink(), nullptr);
  EXPECT_EQ(cluster->GetSrcObjectCount(), 0);
  ASSERT_EQ(pose->GetCount(), 2);
  EXPECT_EQ(pose->GetNode(0), parent);
  EXPECT_EQ(pose->GetNode(1), child);
  EXPECT_EQ(scene->FindNodeByName("joint"), nullptr);
}

TEST_F(DestroyTest, DestroyedMaterialBecomesNullInLayerElements) {
  KZylMesh* mesh = KZylMesh::Create(&manager, "mesh");
  KZylNode* node = KZylNode::Create(&manager, "node");
  node->SetNodeAttribute(mesh);
  KZylSurfaceLambert* kept = KZylSurfaceLambert::Create(&manager, "kept");
  KZylSurfaceLambert* gone = KZylSurfaceLambert::Create(&manager, "gone");
  KZylLayer* layer = mesh->GetLayer(mesh->CreateLayer());
  KZylLayerElementMaterial* element = manager.CreateKZylLayerElementMaterial("");
  element->GetDirectArray().Add(gone);
  element->GetDirectArray().Add(kept);
  element->GetDirectArray().Add(gone);
  layer->SetMaterials(element);
  node->ConnectZylSrc(gone);
  scene->ConnectZylSrc(gone);

  gone->Destroy();

  const KArrayTemplate<KZylSurfaceMaterial*>& direct = layer->GetMaterials()->GetDirectArray();
  ASSERT_EQ(direct.GetCount(), 3);
  EXPECT_EQ(direct[0], nullptr);
  EXPECT_EQ(direct[1], kept);
  EXPECT_EQ(direct[2], nullptr);
  EXPECT_EQ(node->GetSrcObjectCount(), 0);
  EXPECT_EQ(scene->GetMaterialCount(), 0);
  EXPECT_EQ(mesh->GMI("kept"), 1);
  EXPECT_EQ(mesh->GMI("gone"), -1);
}

TEST_F(DestroyTest, DestroyedTextureBecomesNullInTextureElements) {
  KZylMesh* mesh = KZylMesh::Create(&manager, "mesh");
  KZylTexture* texture = KZylTexture::Create(&manager, "wood");
  KZylLayer* layer = mesh->GetLayer(mesh->CreateLayer());
  KZylLayerElementTexture* element = manager.CreateKZylLayerElementTexture("");
  element->GetDirectArray().Add(texture);
  layer->SetTextures(KZylLayerElement::eDiffuseTextures, element);
  texture->Destroy();
  ASSERT_EQ(layer->GetTextures(KZylLayerElement::eDiffuseTextures)->GetDirectArray().GetCount(), 1);
  EXPECT_EQ(layer->GetTextures(KZylLayerElement::eDiffuseTextures)->GetDirectArray()[0], nullptr);
}

TEST_F(DestroyTest, DestroyedClusterShapeAndAttributeLeaveTheirHolders) {
  KZylMesh* mesh = KZylMesh::Create(&manager, "mesh");
  KZylNode* node = KZylNode::Create(&manager, "node");
  node->SetNodeAttribute(mesh);
  KZylCluster* first = KZylCluster::Create(&manager, "");
  KZylCluster* second = KZylCluster::Create(&manager, "");
  ASSERT_TRUE(mesh->AddLink(first));
  ASSERT_TRUE(mesh->AddLink(second));
  ASSERT_EQ(mesh->GetDeformerCount(KZylDeformer::eSkin), 1);
  auto* skin = static_cast<KZylSkin*>(mesh->GetDeformer(0, KZylDeformer::eSkin));
  ASSERT_EQ(skin->GetClusterCount(), 2);
  KZylShape* shape = KZylShape::Create(&manager, "smile");
  ASSERT_EQ(mesh->AddShape(shape, "smile"), 0);

  first->Destroy();
  EXPECT_EQ(skin->GetClusterCount(), 1);
  EXPECT_EQ(skin->GetCluster(0), second);
  shape->Destroy();
  EXPECT_EQ(mesh->GetShapeCount(), 0);
  skin->Destroy();
  EXPECT_EQ(mesh->GetDeformerCount(), 0);
  mesh->Destroy();
  EXPECT_EQ(node->GetNodeAttribute(), nullptr);
}

TEST_F(DestroyTest, DestroyedPoseAndSceneInfoLeaveTheScene) {
  KZylPose* pose = KZylPose::Create(&manager, "bind");
  KZylScene* other = KZylScene::Create(&manager, "other");
  scene->AddPose(pose);
  other->AddPose(pose);  // a pose may be shared
  KZylSceneInfo* info = KZylSceneInfo::Create(&manager, "");
  scene->SetSceneInfo(info);
  pose->Destroy();
  info->Destroy();
  EXPECT_EQ(scene->GetPoseCount(), 0);
  EXPECT_EQ(other->GetPoseCount(), 0);
  EXPECT_EQ(scene->GetSceneInfo(), nullptr);
}

TEST_F(DestroyTest, DestroyingSeveralObjectsAtOnceAndForeignObjects) {
  KZylNode* a = KZylNode::Create(&manager, "a");
  KZylNode* b = KZylNode::Create(&manager, "b");
  ASSERT_TRUE(a->AddChild(b));
  KZylSdkManager otherManager;
  KZylNode* foreign = KZylNode::Create(&otherManager, "foreign");
  int before = manager.GetObjectCount();
  manager.DestroyObjects({a, b, nullptr, foreign});
  EXPECT_EQ(manager.GetObjectCount(), before - 2);
  EXPECT_EQ(otherManager.GetObjectCount(), 1);
  EXPECT_EQ(foreign->GetName(), "foreign");
}

TEST_F(DestroyTest, ManagerListsObjectsByClassInCreationOrder) {
  KZylSurfacePhong* phong = KZylSurfacePhong::Create(&manager, "p");
  KZylSurfaceLambert* lambert = KZylSurfaceLambert::Create(&manager, "l");
  KZylSurfaceMaterial* plain = KZylSurfaceMaterial::Create(&manager, "s");
  ASSERT_EQ(manager.GetSrcObjectCount<KZylSurfaceMaterial>(), 3);
  EXPECT_EQ(manager.GetSrcObject<KZylSurfaceMaterial>(0), phong);
  EXPECT_EQ(manager.GetSrcObject<KZylSurfaceMaterial>(1), lambert);
  EXPECT_EQ(manager.GetSrcObject<KZylSurfaceMaterial>(2), plain);
  EXPECT_EQ(manager.GetSrcObjectCount<KZylSurfaceLambert>(), 2);
  lambert->Destroy();
  ASSERT_EQ(manager.GetSrcObjectCount<KZylSurfaceMaterial>(), 2);
  EXPECT_EQ(manager.GetSrcObject<KZylSurfaceMaterial>(1), plain);
  EXPECT_EQ(manager.GetSrcObject<KZylSurfaceMaterial>(2), nullptr);
}

TEST_F(DestroyTest, PoseFindMatchesTheNodeObjectItself) {
  KZylNode* first = KZylNode::Create(&manager, "joint");
  KZylNode* twin = KZylNode::Create(&manager, "joint");
  KZylPose* pose = KZylPose::Create(&manager, "bind");
  KZylMatrix matrix;
  matrix.mData[3][0] = 2.0;
  EXPECT_EQ(pose->Add(first, KZylMatrix()), 0);
  EXPECT_EQ(pose->Add(twin, matrix, true), 1);
  EXPECT_EQ(pose->Find(twin), 1);
  EXPECT_EQ(pose->Find(first), 0);
  EXPECT_EQ(pose->Find(nullptr), -1);
  EXPECT_EQ(pose->GetMatrix(1), matrix);
  EXPECT_TRUE(pose->IsLocalMatrix(1));
  EXPECT_FALSE(pose->IsLocalMatrix(0));
  EXPECT_TRUE(pose->GetMatrix(5).IsIdentity());
  EXPECT_EQ(pose->GetNode(-1), nullptr);
  pose->Remove(0);
  pose->Remove(9);
  EXPECT_EQ(pose->Find(twin), 0);
  EXPECT_EQ(pose->Find(first), -1);
}

}  // namespace
