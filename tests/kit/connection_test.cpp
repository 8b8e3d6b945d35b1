// Connections with many sources: an object keeps each source once, in the order of
// connection, however many it has, and disconnecting or destroying a source forgets it.

#include <gtest/gtest.h>

#include <vector>

#include "kit/zylsdk.h"

namespace {

using namespace zylsdk;

class ConnectionTest : public ::testing::Test {
 protected:
  // More sources than an object looks through one by one.
  static constexpr int kMany = 100;

  void SetUp() override {
    for (int i = 0; i < kMany; ++i)
      materials.push_back(KZylSurfaceLambert::Create(&manager, ("m" + std::to_string(i)).c_str()));
    for (KZylSurfaceLambert* material : materials) ASSERT_TRUE(node->ConnectZylSrc(material));
  }

  std::vector<KZylObject*> Sources() const {
    std::vector<KZylObject*> sources;
    for (int i = 0; i < node->GetSrcObjectCount(); ++i) sources.push_back(node->GetSrcObject(i));
    return sources;
  }

  KZylSdkManager manager;
  KZylNode* node = KZylNode::Create(&manager, "n");
  std::vector<KZylSurfaceLambert*> materials;
};

TEST_F(ConnectionTest, EachSourceOnceInConnectionOrder) {
  for (KZylSurfaceLambert* material : materials) EXPECT_FALSE(node->ConnectZylSrc(material));
  EXPECT_FALSE(node->ConnectZylSrc(node));
  EXPECT_FALSE(node->ConnectZylSrc(nullptr));
  EXPECT_EQ(Sources(), std::vector<KZylObject*>(materials.begin(), materials.end()));
  for (KZylSurfaceLambert* material : materials) {
    EXPECT_TRUE(node->IsConnectedZylSrc(material));
    ASSERT_EQ(material->GetDstObjectCount(), 1);
    EXPECT_EQ(material->GetDstObject(0), node);
  }
  KZylSurfaceLambert* stranger = KZylSurfaceLambert::Create(&manager, "stranger");
  EXPECT_FALSE(node->IsConnectedZylSrc(stranger));
  EXPECT_FALSE(node->IsConnectedZylSrc(nullptr));
}

TEST_F(ConnectionTest, DisconnectedSourcesAreForgottenAndComeBackLast) {
  std::vector<KZylObject*> kept;
  for (int i = 0; i < kMany; ++i) {
    if (i % 3 == 0) {
      EXPECT_TRUE(node->DisconnectZylSrc(materials[i]));
      EXPECT_FALSE(node->DisconnectZylSrc(materials[i]));
      EXPECT_EQ(materials[i]->GetDstObjectCount(), 0);
    } else {
      kept.push_back(materials[i]);
    }
  }
  EXPECT_EQ(Sources(), kept);
  for (int i = 0; i < kMany; ++i) EXPECT_EQ(node->IsConnectedZylSrc(materials[i]), i % 3 != 0) << i;

  EXPECT_TRUE(node->ConnectZylSrc(materials[0]));
  EXPECT_FALSE(node->ConnectZylSrc(materials[0]));
  kept.push_back(materials[0]);
  EXPECT_EQ(Sources(), kept);
}

TEST_F(ConnectionTest, DestroyedSourcesAreForgotten) {
  materials[5]->Destroy();
  materials[kMany - 1]->Destroy();
  EXPECT_EQ(node->GetSrcObjectCount(), kMany - 2);
  for (int i = 0; i < node->GetSrcObjectCount(); ++i) {
    EXPECT_NE(node->GetSrcObject(i), materials[5]);
    EXPECT_NE(node->GetSrcObject(i), materials[kMany - 1]);
  }
  // A new object may be made where a destroyed one was; it is not a source for that.
  KZylSurfaceLambert* fresh = KZylSurfaceLambert::Create(&manager, "fresh");
  EXPECT_FALSE(node->IsConnectedZylSrc(fresh));
  EXPECT_TRUE(node->ConnectZylSrc(fresh));
  EXPECT_EQ(node->GetSrcObject(node->GetSrcObjectCount() - 1), fresh);
}

TEST_F(ConnectionTest, DestroyingTheDestinationReleasesEverySource) {
  node->Destroy();
  for (KZylSurfaceLambert* material : materials) EXPECT_EQ(material->GetDstObjectCount(), 0);
}

TEST_F(ConnectionTest, SourcesOfAClassFollowConnections) {
  // Every fourth source becomes a texture among the materials.
  std::vector<KZylObject*> textures;
  for (int i = 0; i < kMany; i += 4) {
    ASSERT_TRUE(node->DisconnectZylSrc(materials[i]));
    textures.push_back(KZylTexture::Create(&manager, ("t" + std::to_string(i)).c_str()));
    ASSERT_TRUE(node->ConnectZylSrc(textures.back()));
  }
  auto ofClass = [&](const KZylClassId& classId) {
    std::vector<KZylObject*> found;
    for (int i = 0; i < node->GetSrcObjectCount(classId); ++i) found.push_back(node->GetSrcObject(classId, i));
    EXPECT_EQ(node->GetSrcObject(classId, -1), nullptr);
    EXPECT_EQ(node->GetSrcObject(classId, node->GetSrcObjectCount(classId)), nullptr);
    return found;
  };
  std::vector<KZylObject*> lamberts;
  for (int i = 0; i < kMany; ++i)
    if (i % 4 != 0) lamberts.push_back(materials[i]);
  EXPECT_EQ(ofClass(KZylSurfaceMaterial::ClassId), lamberts);
  EXPECT_EQ(ofClass(KZylTexture::ClassId), textures);
  EXPECT_EQ(node->GetSrcObjectCount(KZylObject::ClassId), kMany);

  // A source connected or disconnected after a question is seen by the next one.
  KZylSurfacePhong* phong = KZylSurfacePhong::Create(&manager, "phong");
  ASSERT_TRUE(node->ConnectZylSrc(phong));
  lamberts.push_back(phong);
  EXPECT_EQ(ofClass(KZylSurfaceMaterial::ClassId), lamberts);
  EXPECT_EQ(ofClass(KZylSurfacePhong::ClassId), std::vector<KZylObject*>{phong});
  ASSERT_TRUE(node->DisconnectZylSrc(lamberts.front()));
  lamberts.erase(lamberts.begin());
  EXPECT_EQ(ofClass(KZylSurfaceMaterial::ClassId), lamberts);
  EXPECT_EQ(ofClass(KZylTexture::ClassId), textures);
}

// Objects that were never connected (most of a large scene's) answer as having no sources and no
// destinations, and can be destroyed, as can one whose only connection was undone.
TEST(Connections, AnObjectNeverConnectedHasNone) {
  KZylSdkManager manager;
  const int objectsBefore = manager.GetObjectCount();
  KZylNode* lonely = KZylNode::Create(&manager, "lonely");
  KZylSurfaceLambert* material = KZylSurfaceLambert::Create(&manager, "material");
  for (KZylObject* object : std::vector<KZylObject*>{lonely, material}) {
    EXPECT_EQ(object->GetSrcObjectCount(), 0);
    EXPECT_EQ(object->GetDstObjectCount(), 0);
    EXPECT_EQ(object->GetSrcObject(0), nullptr);
    EXPECT_EQ(object->GetDstObject(0), nullptr);
    EXPECT_EQ(object->GetSrcObjectCount(KZylObject::ClassId), 0);
    EXPECT_EQ(object->GetDstObjectCount(KZylObject::ClassId), 0);
    EXPECT_EQ(object->GetSrcObject(KZylObject::ClassId, 0), nullptr);
    EXPECT_EQ(object->GetDstObject(KZylObject::ClassId, 0), nullptr);
  }
  EXPECT_FALSE(lonely->IsConnectedZylSrc(material));
  EXPECT_FALSE(lonely->DisconnectZylSrc(material));

  ASSERT_TRUE(lonely->ConnectZylSrc(material));
  EXPECT_EQ(material->GetDstObject(KZylNode::ClassId, 0), lonely);
  ASSERT_TRUE(lonely->DisconnectZylSrc(material));
  EXPECT_EQ(lonely->GetSrcObjectCount(), 0);
  EXPECT_EQ(material->GetDstObjectCount(), 0);
  material->Destroy();
  lonely->Destroy();
  EXPECT_EQ(manager.GetObjectCount(), objectsBefore);
}

}  // namespace
