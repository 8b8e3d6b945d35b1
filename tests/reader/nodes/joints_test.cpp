// Skins on instanced meshes and joints: clusters and bind poses copied per instance, clusters
// re-linked from placeholders to the joint nodes, and the bind-pose entries moved.

#include <map>

#include "tests/reader/nodes/library_objects.h"
#include "tests/reader/nodes/scene_documents.h"
#include "tests/support/reader_fixture.h"

namespace {

using namespace zylsdk;
using zyltest::MutableState;

class JointsTest : public zyltest::ReaderTest {
 protected:
  // A skin controller "skin" over the mesh "geo", with one cluster per joint name, each linked to
  // a placeholder node of that name, and a bind pose over the placeholders.
  ControllerRecord& AddSkin(const char* id, const std::vector<const char*>& joints) {
    if (!reader->GetState().nodeAttributes.Contains("geo"))
      MutableState(*reader).nodeAttributes.Add("geo", static_cast<KZylNodeAttribute*>(zyltest::MakeLibraryMesh(manager, {})));
    auto record = std::make_unique<ControllerRecord>();
    record->id = id;
    record->source = "#geo";
    record->bindShapeMatrix.SetT(KZylVector4(1, 2, 3));
    record->bindPose = KZylPose::Create(&manager, id);
    int index = 0;
    for (const char* joint : joints) {
      KZylCluster* cluster = reader->CreateCluster();
      cluster->AddControlPointIndex(index, 0.5);
      cluster->SetTransformLinkMatrix(KZylXMatrix(KZylVector4(index, 0, 0), KZylVector4(), KZylVector4(1, 1, 1)));
      KZylNode* placeholder = KZylNode::Create(&manager, joint);
      cluster->SetLink(placeholder);
      KZylMatrix matrix;
      matrix.Set(3, 0, index++);
      record->bindPose->Add(placeholder, matrix, false);
      record->clusters.Add(cluster);
    }
    return *MutableState(*reader).controllers.Add(id, std::move(record));
  }
  KZylNode* Import(const std::string& xml, const char* id) {
    KZylNode* node = KZylNode::Create(&manager, id);
    result = reader->ImportNode(Parse(xml), *node, id);
    return node;
  }
  static KZylSkin* SkinOf(KZylNode* node) {
    return static_cast<KZylSkin*>(node->GetGeometry()->GetDeformer(0, KZylDeformer::eSkin));
  }

  bool result = false;
};

TEST_F(JointsTest, AnInstancedSkinGetsCopiedClustersAndABindPose) {
  ControllerRecord& skin = AddSkin("skin", {"j1", "j2"});
  KZylNode* node = Import("<node id=\"body\"><instance_controller url=\"#skin\"/></node>", "body");
  ASSERT_TRUE(result);
  ASSERT_EQ(node->GetNodeAttribute()->GetAttributeType(), KZylNodeAttribute::eMesh);
  KZylSkin* deformer = SkinOf(node);
  ASSERT_NE(deformer, nullptr);
  ASSERT_EQ(deformer->GetClusterCount(), 2);
  for (int i = 0; i < 2; ++i) {
    KZylCluster* cluster = deformer->GetCluster(i);
    EXPECT_NE(cluster, skin.clusters[i]);
    EXPECT_EQ(cluster->GetLink(), skin.clusters[i]->GetLink());
    EXPECT_EQ(cluster->GetControlPointIndices(), skin.clusters[i]->GetControlPointIndices());
    EXPECT_EQ(cluster->GetControlPointWeights(), skin.clusters[i]->GetControlPointWeights());
    EXPECT_EQ(cluster->GetTransformLinkMatrix(), skin.clusters[i]->GetTransformLinkMatrix());
  }
  // Every cluster made is remembered, in creation order.
  EXPECT_EQ(reader->GetState().clusters.size(), 4u);
  EXPECT_EQ(reader->GetState().clusters[2], deformer->GetCluster(0));

  ASSERT_EQ(reader->GetState().bindPoses.GetCount(), 1);
  KZylPose* pose = reader->GetState().bindPoses[0];
  EXPECT_NE(pose, skin.bindPose);
  EXPECT_EQ(pose->GetName(), "skin");
  EXPECT_TRUE(pose->IsBindPose());
  ASSERT_EQ(pose->GetCount(), 3);
  EXPECT_EQ(pose->GetNode(0)->GetName(), "j1");
  EXPECT_EQ(pose->GetNode(2), node);
  EXPECT_EQ(pose->GetMatrix(2).Get(3, 2), 3.0);
}

TEST_F(JointsTest, AMorphGivesShapesKeyedByItsWeightsAndNamedByTheNode) {
  MutableState(*reader).nodeAttributes.Add("geo", static_cast<KZylNodeAttribute*>(zyltest::MakeLibraryMesh(manager, {})));
  MutableState(*reader).nodeAttributes.Add("smile", static_cast<KZylNodeAttribute*>(zyltest::MakeLibraryMesh(manager, {})));
  auto record = std::make_unique<ControllerRecord>();
  record->id = "morph";
  record->source = "#geo";
  record->morphTargets.Add("smile");
  record->morphWeights.Add(0.5);
  record->morphWeightSource = "morph-weights";
  MutableState(*reader).controllers.Add("morph", std::move(record));
  KZylNode* face = Import("<node><instance_controller url=\"#morph\"/></node>", "face");
  ASSERT_TRUE(result);
  Import("<node><instance_controller url=\"#morph\"/></node>", "other");
  ASSERT_TRUE(result);

  KZylGeometry* geometry = face->GetGeometry();
  ASSERT_NE(geometry, nullptr);
  EXPECT_EQ(geometry->GetDeformerCount(), 0);
  ASSERT_EQ(geometry->GetShapeCount(), 1);
  EXPECT_EQ(geometry->GetShapeName(0), "smile");
  EXPECT_EQ(geometry->FindProperty("smile").GetDouble(), 0.5);
  EXPECT_EQ(reader->GetState().bindPoses.GetCount(), 0);
  const ShapeRecordList* records = reader->GetState().shapes.Lookup("morph-weights");
  ASSERT_NE(records, nullptr);
  ASSERT_EQ(records->GetCount(), 2);
  EXPECT_EQ((*records)[0].name, "face");
  EXPECT_EQ((*records)[1].name, "other");
}

TEST_F(JointsTest, TwoNodesInstancingOneSkinDeformIndependently) {
  AddSkin("skin", {"j1"});
  KZylNode* first = Import("<node><instance_controller url=\"#skin\"/></node>", "a");
  KZylNode* second = Import("<node><instance_controller url=\"#skin\"/></node>", "b");
  ASSERT_NE(SkinOf(first)->GetCluster(0), SkinOf(second)->GetCluster(0));
  ASSERT_NE(first->GetGeometry(), second->GetGeometry());
  EXPECT_EQ(reader->GetState().bindPoses.GetCount(), 2);
}

TEST_F(JointsTest, AJointTakesOverTheClustersOfItsNameWithoutPrefix) {
  ControllerRecord& skin = AddSkin("skin", {"rig:j1", "j2"});
  KZylNode* body = Import("<node><instance_controller url=\"#skin\"/></node>", "body");
  KZylNode* joint = Import("<node id=\"j1\" type=\"JOINT\"/>", "j1");
  ASSERT_TRUE(result);
  // The record's cluster and the instance's copy both link to the joint now.
  EXPECT_EQ(skin.clusters[0]->GetLink(), joint);
  EXPECT_EQ(SkinOf(body)->GetCluster(0)->GetLink(), joint);
  EXPECT_EQ(skin.clusters[1]->GetLink()->GetName(), "j2");
  EXPECT_EQ(joint->GetDstObjectCount(KZylCluster::ClassId), 2);
}

TEST_F(JointsTest, ASecondJointOfTheSameNameFails) {
  AddSkin("skin", {"j1"});
  Import("<node type=\"JOINT\"/>", "j1");
  ASSERT_TRUE(result);
  Import("<node type=\"JOINT\"/>", "j1");
  EXPECT_FALSE(result);
  EXPECT_EQ(CountMessage("ERROR: link has two joints"), 1);
}

TEST_F(JointsTest, JointsOfOtherNamesAndPrefixedIdsTakeNothing) {
  ControllerRecord& skin = AddSkin("skin", {"j1"});
  KZylNode* placeholder = skin.clusters[0]->GetLink();
  Import("<node type=\"JOINT\"/>", "j10");
  Import("<node type=\"JOINT\"/>", "x:j1");
  EXPECT_EQ(skin.clusters[0]->GetLink(), placeholder);
}

TEST_F(JointsTest, AJointMissingFromTheInstancesBindPoseWarns) {
  AddSkin("skin", {"j1"});
  Import("<node><instance_controller url=\"#skin\"/></node>", "body");
  Import("<node type=\"JOINT\"/>", "j1");
  ASSERT_TRUE(result);
  // The pose holds the placeholder, not the joint node.
  EXPECT_EQ(CountMessage("Warning: joint j1 not found in pose skin"), 1);
}

TEST_F(JointsTest, TheJointsEntryGivesItsMatrixToTheEntryThatFollowed) {
  AddSkin("skin", {"j1"});
  KZylNode* joint = KZylNode::Create(&manager, "j1");
  KZylNode* before = KZylNode::Create(&manager, "before");
  KZylNode* after = KZylNode::Create(&manager, "after");
  // A pose whose name has a name-space prefix, holding the joint node itself.
  KZylPose* pose = KZylPose::Create(&manager, "ns:skin");
  KZylMatrix jointMatrix;
  jointMatrix.Set(3, 1, 42.0);
  pose->Add(before, KZylMatrix(), false);
  pose->Add(joint, jointMatrix, false);
  pose->Add(after, KZylMatrix(), false);
  // One that ends with the joint: nothing follows it.
  KZylPose* last = KZylPose::Create(&manager, "skin");
  last->Add(before, KZylMatrix(), false);
  last->Add(joint, jointMatrix, false);
  MutableState(*reader).bindPoses.Add(pose);
  MutableState(*reader).bindPoses.Add(last);

  ASSERT_TRUE(reader->ImportNode(Parse("<node id=\"j1\" type=\"JOINT\"/>"), *joint, "j1"));
  ASSERT_EQ(pose->GetCount(), 3);
  EXPECT_EQ(pose->GetNode(0), before);
  EXPECT_EQ(pose->GetNode(1), after);
  EXPECT_EQ(pose->GetNode(2), after);
  EXPECT_EQ(pose->GetMatrix(2), jointMatrix);
  ASSERT_EQ(last->GetCount(), 1);
  EXPECT_EQ(last->GetNode(0), before);
  EXPECT_TRUE(Messages().empty());
}

TEST_F(JointsTest, PosesOfOtherControllersAreLeftAlone) {
  AddSkin("skin", {"j1"});
  KZylNode* joint = KZylNode::Create(&manager, "j1");
  KZylPose* other = KZylPose::Create(&manager, "otherSkin");
  other->Add(joint, KZylMatrix(), false);
  MutableState(*reader).bindPoses.Add(other);
  ASSERT_TRUE(reader->ImportNode(Parse("<node type=\"JOINT\"/>"), *joint, "j1"));
  EXPECT_EQ(other->GetCount(), 1);
}

// The re-targeting must give exactly what a scan of every cluster at each joint gives, also
// when clusters are made between joints: a cluster links to a joint when a joint of its link's
// name without prefix was imported after the cluster was made.
TEST_F(JointsTest, InterleavedJointsMatchAScanOfAllClusters) {
  const std::vector<const char*> names = {"a", "ns:b", "c", "x:y:a", "d"};
  const char* const jointIds[] = {"a", "c", "d"};
  struct Made {
    int round;
    std::string name;  // the link's name without prefix
  };
  std::map<KZylCluster*, Made> made;
  for (int round = 0; round < 3; ++round) {
    ControllerRecord& skin = AddSkin(("skin" + std::to_string(round)).c_str(), names);
    for (KZylCluster* cluster : skin.clusters)
      made[cluster] = {round, cluster->GetLink()->GetNameWithoutNameSpacePrefix().Buffer()};
    Import("<node type=\"JOINT\"/>", jointIds[round]);
    ASSERT_TRUE(result);
  }
  ASSERT_EQ(made.size(), 15u);
  for (const auto& [cluster, what] : made) {
    bool joined = false;
    for (int round = what.round; round < 3; ++round) joined |= what.name == jointIds[round];
    KZylNode* link = cluster->GetLink();
    EXPECT_EQ(link->GetNodeAttribute() != nullptr, joined) << what.name << " made in round " << what.round;
    EXPECT_EQ(link->GetNameWithoutNameSpacePrefix(), what.name.c_str());
  }
}

}  // namespace
