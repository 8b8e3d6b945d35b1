// Skinned meshes read end to end: the controller, the node that instances it, the joints and the
// copy into the application's scene, seen through the kit and through the dump.

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/reader/geometry/skin_morph_xml.h"
#include "tests/reader/nodes/scene_documents.h"

namespace zyltest {
namespace {

using namespace zylsdk;

// A triangle skinned to `names` (each a joint: its inverse bind matrix moves by -1, -2, ... in y),
// with the bind shape matrix moving by 5 in z. Weights: the first joint holds vertex 0 fully and
// vertex 1 by a quarter, the second vertex 1 by three quarters and vertex 2 fully.
std::string SkinLibraries(const std::string& names = "hip knee", int jointCount = 2) {
  std::string matrices;
  for (int i = 1; i <= jointCount; ++i) matrices += Translation(0, -i, 0);
  return "<library_geometries>" + TriangleGeometry("body-geo", "0 0 0  1 0 0  0 1 0") +
         "</library_geometries><library_controllers>" +
         Controller("body-skin", "<skin source=\"#body-geo\"><bind_shape_matrix>" + Translation(0, 0, 5) +
                                     "</bind_shape_matrix>" + NameSource("joints", names) +
                                     MatrixSource("ibm", matrices) + FloatSource("weights", "1 0.25 0.75", 1) +
                                     JointsElement() + VertexWeights("1 2 1", "0 0  0 1 1 2  1 0") + "</skin>") +
         "</library_controllers>";
}

const std::string kJoints =
    "<node id=\"hip\" name=\"hip\" type=\"JOINT\"><translate>0 1 0</translate>"
    "<node id=\"knee\" name=\"knee\" type=\"JOINT\"><translate>0 1 0</translate></node></node>";
const std::string kBody = "<node id=\"body\" name=\"body\"><instance_controller url=\"#body-skin\"/></node>";

bool IsSceneNode(const KZylScene& scene, const KZylNode* node) {
  const std::vector<KZylNode*> nodes = scene.GetNodes();
  return std::find(nodes.begin(), nodes.end(), node) != nodes.end();
}

const KZylSkin* SkinOf(const KZylScene& scene, const char* node) {
  KZylNode* found = scene.FindNodeByName(node);
  KZylGeometry* geometry = found ? found->GetGeometry() : nullptr;
  return geometry ? static_cast<const KZylSkin*>(geometry->GetDeformer(0, KZylDeformer::eSkin)) : nullptr;
}

// `vertices` points on a line, skinned to hip and knee: each vertex weighed 0.25 by the hip and
// 0.75 by the knee, which makes a `v` list of four values a vertex.
std::string LongSkinLibraries(int vertices) {
  std::string points, vcount, v;
  for (int i = 0; i < vertices; ++i) {
    points += std::to_string(i) + " 0 0 ";
    vcount += "2 ";
    v += "0 0 1 1 ";
  }
  return "<library_geometries>" +
         Geometry("body-geo", Mesh(FloatSource("body-pos", points, 3) +
                                   "<vertices id=\"body-vtx\"><input semantic=\"POSITION\" source=\"#body-pos\"/></vertices>" +
                                   "<triangles count=\"1\"><input semantic=\"VERTEX\" source=\"#body-vtx\" offset=\"0\"/>"
                                   "<p>0 1 2</p></triangles>")) +
         "</library_geometries><library_controllers>" +
         Controller("body-skin", "<skin source=\"#body-geo\">" + NameSource("joints", "hip knee") +
                                     MatrixSource("ibm", Translation(0, -1, 0) + Translation(0, -2, 0)) +
                                     FloatSource("weights", "0.25 0.75", 1) + JointsElement() +
                                     VertexWeights(vcount, v) + "</skin>") +
         "</library_controllers>";
}

TEST(SkinScene, ALongSkinGetsEveryWeightWhileTheListsItReadAreGivenBack) {
  // 200,000 values of `v`, given back in several steps while the clusters fill.
  constexpr int kVertices = 50000;
  const std::string document = SceneDocument(LongSkinLibraries(kVertices), kJoints + kBody);
  for (const zyldae::ReadSettings& settings : BothModes()) {
    const zyldae::ReadResult read = ReadText(document, settings);
    ASSERT_TRUE(read.ok);
    const KZylSkin* skin = SkinOf(*read.scene, "body");
    ASSERT_NE(skin, nullptr);
    ASSERT_EQ(skin->GetClusterCount(), 2);
    for (int joint = 0; joint < 2; ++joint) {
      const std::vector<int>& indices = skin->GetCluster(joint)->GetControlPointIndices().Std();
      const std::vector<double>& weights = skin->GetCluster(joint)->GetControlPointWeights().Std();
      ASSERT_EQ(indices.size(), static_cast<size_t>(kVertices)) << joint;
      ASSERT_EQ(weights.size(), static_cast<size_t>(kVertices)) << joint;
      for (int vertex = 0; vertex < kVertices; ++vertex) {
        ASSERT_EQ(indices[static_cast<size_t>(vertex)], vertex) << joint;
        ASSERT_EQ(weights[static_cast<size_t>(vertex)], joint == 0 ? 0.25 : 0.75) << joint << " " << vertex;
      }
    }
  }
}

TEST(SkinScene, TheSkinnedMeshEndsWithClustersLinkedToTheScenesJoints) {
  const zyldae::ReadResult read = ReadText(SceneDocument(SkinLibraries(), kJoints + kBody));
  ASSERT_TRUE(read.ok);
  EXPECT_TRUE(Messages(read).empty());
  const KZylScene& scene = *read.scene;
  KZylNode* body = scene.FindNodeByName("body");
  ASSERT_NE(body, nullptr);
  ASSERT_NE(body->GetGeometry(), nullptr);
  EXPECT_EQ(body->GetGeometry()->GetDeformerCount(KZylDeformer::eSkin), 1);
  const KZylSkin* skin = SkinOf(scene, "body");
  ASSERT_NE(skin, nullptr);
  ASSERT_EQ(skin->GetClusterCount(), 2);

  const char* const joints[] = {"hip", "knee"};
  const std::vector<int> indices[] = {{0, 1}, {1, 2}};
  const std::vector<double> weights[] = {{1, 0.25}, {0.75, 1}};
  for (int i = 0; i < 2; ++i) {
    const KZylCluster* cluster = skin->GetCluster(i);
    KZylNode* link = cluster->GetLink();
    // The scene's own joint: not a placeholder, not the node of the visual scene's build.
    EXPECT_EQ(link, scene.FindNodeByName(joints[i]));
    EXPECT_TRUE(IsSceneNode(scene, link));
    ASSERT_NE(link->GetNodeAttribute(), nullptr);
    EXPECT_EQ(link->GetNodeAttribute()->GetAttributeType(), KZylNodeAttribute::eSkeleton);
    EXPECT_EQ(cluster->GetControlPointIndices().Std(), indices[i]);
    EXPECT_EQ(cluster->GetControlPointWeights().Std(), weights[i]);
    EXPECT_EQ(cluster->GetLinkMode(), KZylCluster::eNormalize);
    EXPECT_EQ(cluster->GetTransformMatrix().GetT(), KZylVector4(0, 0, 5, 1));
    EXPECT_EQ(cluster->GetTransformLinkMatrix().GetT(), KZylVector4(0, i + 1.0, 0, 1));
  }
  // The joints' global matrices agree with their bind matrices.
  EXPECT_EQ(scene.FindNodeByName("knee")->GetGlobalFromDefaultTake().GetT(), KZylVector4(0, 2, 0, 1));
}

TEST(SkinScene, TheBindPoseIsInTheScene) {
  const zyldae::ReadResult read = ReadText(SceneDocument(SkinLibraries(), kJoints + kBody));
  ASSERT_TRUE(read.ok);
  ASSERT_EQ(read.scene->GetPoseCount(), 1);
  const KZylPose* pose = read.scene->GetPose(0);
  EXPECT_EQ(pose->GetName(), "body-skin");
  EXPECT_TRUE(pose->IsBindPose());
  // The joints at their bind matrices, then the skinned node at the bind shape matrix.
  ASSERT_EQ(pose->GetCount(), 3);
  const char* const names[] = {"hip", "knee", "body"};
  const KZylVector4 translations[] = {KZylVector4(0, 1, 0, 1), KZylVector4(0, 2, 0, 1), KZylVector4(0, 0, 5, 1)};
  for (int i = 0; i < 3; ++i) {
    ASSERT_NE(pose->GetNode(i), nullptr);
    EXPECT_EQ(pose->GetNode(i)->GetName(), names[i]);
    EXPECT_EQ(KZylXMatrix(pose->GetMatrix(i)).GetT(), translations[i]);
  }
}

TEST(SkinScene, TwoInstancesDeformIndependently) {
  const std::string second = "<node id=\"body2\" name=\"body2\"><instance_controller url=\"#body-skin\"/></node>";
  const zyldae::ReadResult read = ReadText(SceneDocument(SkinLibraries(), kJoints + kBody + second));
  ASSERT_TRUE(read.ok);
  const KZylSkin* first = SkinOf(*read.scene, "body");
  const KZylSkin* other = SkinOf(*read.scene, "body2");
  ASSERT_NE(first, nullptr);
  ASSERT_NE(other, nullptr);
  ASSERT_EQ(other->GetClusterCount(), 2);
  for (int i = 0; i < 2; ++i) {
    EXPECT_NE(first->GetCluster(i), other->GetCluster(i));
    EXPECT_EQ(first->GetCluster(i)->GetLink(), other->GetCluster(i)->GetLink());
  }
  EXPECT_EQ(read.scene->GetPoseCount(), 2);
}

TEST(SkinScene, JointsAfterTheSkinnedNodeAreNotFoundInItsPose) {
  const zyldae::ReadResult read = ReadText(SceneDocument(SkinLibraries(), kBody + kJoints));
  ASSERT_TRUE(read.ok);
  // The pose holds the placeholders, which the joints replace in the clusters only. A joint
  // takes over after its children, so the knee comes first.
  EXPECT_EQ(Messages(read), (std::vector<std::string>{"Warning: joint knee not found in pose body-skin",
                                                      "Warning: joint hip not found in pose body-skin"}));
  const KZylSkin* skin = SkinOf(*read.scene, "body");
  ASSERT_NE(skin, nullptr);
  EXPECT_EQ(skin->GetCluster(0)->GetLink(), read.scene->FindNodeByName("hip"));
  EXPECT_EQ(skin->GetCluster(1)->GetLink(), read.scene->FindNodeByName("knee"));
  ASSERT_EQ(read.scene->GetPoseCount(), 1);
  EXPECT_EQ(read.scene->GetPose(0)->GetCount(), 3);
}

TEST(SkinScene, TwoJointsOfOneNameFailTheRead) {
  const std::string joints =
      "<node id=\"hip\" type=\"JOINT\"/><node id=\"knee\" type=\"JOINT\"/>"
      "<node id=\"group\"><node id=\"hip\" type=\"JOINT\"/></node>";
  const zyldae::ReadResult read = ReadText(SceneDocument(SkinLibraries(), kBody + joints));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(CountMessage(read, "ERROR: link has two joints"), 1);
}

TEST(SkinScene, PrefixedJointNamesFindTheScenesNodes) {
  // Plain nodes, not joints: only the copy into the scene re-links the clusters, by the name
  // without its prefix. "rig:tail" names no node and keeps its placeholder.
  const std::string nodes = "<node id=\"hip\"><node id=\"knee\"/></node>" + kBody;
  const zyldae::ReadResult read = ReadText(SceneDocument(SkinLibraries("rig:hip rig:knee rig:tail", 3), nodes));
  ASSERT_TRUE(read.ok);
  const KZylSkin* skin = SkinOf(*read.scene, "body");
  ASSERT_NE(skin, nullptr);
  ASSERT_EQ(skin->GetClusterCount(), 3);
  EXPECT_EQ(skin->GetCluster(0)->GetLink(), read.scene->FindNodeByName("hip"));
  EXPECT_EQ(skin->GetCluster(1)->GetLink(), read.scene->FindNodeByName("knee"));
  KZylNode* tail = skin->GetCluster(2)->GetLink();
  ASSERT_NE(tail, nullptr);
  EXPECT_EQ(tail->GetName(), "rig:tail");
  EXPECT_FALSE(IsSceneNode(*read.scene, tail));
}

TEST(SkinScene, PrefixedNamesAlsoMatchJointNodes) {
  const zyldae::ReadResult read = ReadText(SceneDocument(SkinLibraries("rig:hip rig:knee"), kJoints + kBody));
  ASSERT_TRUE(read.ok);
  const KZylSkin* skin = SkinOf(*read.scene, "body");
  ASSERT_NE(skin, nullptr);
  EXPECT_EQ(skin->GetCluster(0)->GetLink(), read.scene->FindNodeByName("hip"));
  EXPECT_EQ(skin->GetCluster(1)->GetLink(), read.scene->FindNodeByName("knee"));
}

TEST(SkinScene, TheDumpShowsClustersAndTheBindPose) {
  const zyldae::Json dump = DumpText(SceneDocument(SkinLibraries("hip knee rig:tail", 3), kJoints + kBody));
  ASSERT_TRUE(dump["ok"].get<bool>());
  const zyldae::Json* body = FindDumpNode(dump["scene"]["root"], "body");
  ASSERT_NE(body, nullptr);
  const zyldae::Json& skins = (*body)["attribute"]["skins"];
  ASSERT_EQ(skins.size(), 1u);
  const zyldae::Json& clusters = skins[0]["clusters"];
  ASSERT_EQ(clusters.size(), 3u);
  EXPECT_EQ(clusters[0]["linkMode"], 0);
  EXPECT_EQ(clusters[0]["link"], (zyldae::Json{{"name", "hip"}, {"inScene", true}}));
  EXPECT_EQ(clusters[0]["indices"], (zyldae::Json{0, 1}));
  EXPECT_EQ(clusters[0]["weights"], (zyldae::Json{1.0, 0.25}));
  EXPECT_EQ(clusters[1]["link"], (zyldae::Json{{"name", "knee"}, {"inScene", true}}));
  EXPECT_EQ(clusters[1]["weights"], (zyldae::Json{0.75, 1.0}));
  // No node is named "tail": the placeholder stays, outside the scene.
  EXPECT_EQ(clusters[2]["link"], (zyldae::Json{{"name", "rig:tail"}, {"inScene", false}}));
  EXPECT_EQ(clusters[2]["indices"], zyldae::Json::array());
  EXPECT_EQ(clusters[1]["transformMatrix"][14], 5.0);
  EXPECT_EQ(clusters[1]["transformLinkMatrix"][13], 2.0);

  const zyldae::Json& poses = dump["scene"]["poses"];
  ASSERT_EQ(poses.size(), 1u);
  EXPECT_EQ(poses[0]["name"], "body-skin");
  EXPECT_EQ(poses[0]["isBindPose"], true);
  const zyldae::Json& entries = poses[0]["entries"];
  ASSERT_EQ(entries.size(), 4u);
  EXPECT_EQ(entries[0]["node"], "hip");
  EXPECT_EQ(entries[2]["node"], "rig:tail");
  EXPECT_EQ(entries[2]["matrix"][13], 3.0);
  EXPECT_EQ(entries[3]["node"], "body");
  EXPECT_EQ(entries[3]["matrix"][14], 5.0);
  // A copied pose keeps the nodes it was made with, none of them the scene's.
  for (const zyldae::Json& entry : entries) EXPECT_EQ(entry["inScene"], false);
}

TEST(SkinScene, TheBriefDumpKeepsCountsOnly) {
  const zyldae::Json dump = DumpText(SceneDocument(SkinLibraries(), kJoints + kBody), true);
  const zyldae::Json* body = FindDumpNode(dump["scene"]["root"], "body");
  ASSERT_NE(body, nullptr);
  const zyldae::Json& cluster = (*body)["attribute"]["skins"][0]["clusters"][1];
  EXPECT_EQ(cluster["indexCount"], 2);
  EXPECT_FALSE(cluster.contains("indices"));
  EXPECT_FALSE(cluster.contains("weights"));
}

}  // namespace
}  // namespace zyltest
