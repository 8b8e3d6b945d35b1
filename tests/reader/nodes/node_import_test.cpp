// Node import: the child walk, attributes from instances, the default attribute, failures, and
// deep hierarchies.

#include "tests/reader/nodes/scene_documents.h"
#include "tests/support/reader_fixture.h"

namespace {

using namespace zylsdk;
using zyltest::MutableState;
using zyltest::SceneDocument;

class NodeImportTest : public zyltest::ReaderTest {
 protected:
  bool Import(const std::string& xml, const char* id = "n") {
    node = KZylNode::Create(&manager, id);
    return reader->ImportNode(Parse(xml), *node, id);
  }
  KZylNode* node = nullptr;
};

TEST_F(NodeImportTest, ANodeWithoutChildrenOrTypeGetsANull) {
  ASSERT_TRUE(Import("<node id=\"n\"/>"));
  ASSERT_NE(node->GetNodeAttribute(), nullptr);
  EXPECT_EQ(node->GetNodeAttribute()->GetAttributeType(), KZylNodeAttribute::eNull);
  EXPECT_TRUE(Messages().empty());
}

TEST_F(NodeImportTest, AJointWithoutInstanceGetsALimbNodeSkeleton) {
  ASSERT_TRUE(Import("<node id=\"n\" type=\"JOINT\"/>"));
  ASSERT_EQ(node->GetNodeAttribute()->GetAttributeType(), KZylNodeAttribute::eSkeleton);
  EXPECT_EQ(static_cast<KZylSkeleton*>(node->GetNodeAttribute())->GetSkeletonType(), KZylSkeleton::eLimbNode);
}

TEST_F(NodeImportTest, AJointWithAnInstanceKeepsTheInstancedAttribute) {
  KZylLight* light = KZylLight::Create(&manager, "");
  MutableState(*reader).nodeAttributes.Add("L", light);
  ASSERT_TRUE(Import("<node id=\"n\" type=\"JOINT\"><instance_light url=\"#L\"/></node>"));
  ASSERT_EQ(node->GetNodeAttribute()->GetAttributeType(), KZylNodeAttribute::eLight);
  // A copy, not the library object.
  EXPECT_NE(node->GetNodeAttribute(), light);
}

TEST_F(NodeImportTest, AnyInstanceKindLooksUpTheSameRegistry) {
  MutableState(*reader).nodeAttributes.Add("L", KZylLight::Create(&manager, ""));
  ASSERT_TRUE(Import("<node id=\"n\"><instance_geometry url=\"#L\"/></node>"));
  EXPECT_EQ(node->GetNodeAttribute()->GetAttributeType(), KZylNodeAttribute::eLight);
  ASSERT_TRUE(Import("<node id=\"n\"><instance url=\"#L\"/></node>"));
  EXPECT_EQ(node->GetNodeAttribute()->GetAttributeType(), KZylNodeAttribute::eLight);
}

TEST_F(NodeImportTest, TheLastOfSeveralInstancesDecides) {
  MutableState(*reader).nodeAttributes.Add("L", KZylLight::Create(&manager, ""));
  MutableState(*reader).nodeAttributes.Add("C", KZylCamera::Create(&manager, ""));
  ASSERT_TRUE(Import("<node id=\"n\"><instance_light url=\"#L\"/><instance_camera url=\"#C\"/></node>"));
  EXPECT_EQ(node->GetNodeAttribute()->GetAttributeType(), KZylNodeAttribute::eCamera);
}

TEST_F(NodeImportTest, ARegisteredNullGivesNoAttributeAndNoMessage) {
  MutableState(*reader).nodeAttributes.Add("ambient", static_cast<KZylNodeAttribute*>(nullptr));
  ASSERT_TRUE(Import("<node id=\"n\"><instance_light url=\"#ambient\"/></node>"));
  EXPECT_EQ(node->GetNodeAttribute()->GetAttributeType(), KZylNodeAttribute::eNull);
  EXPECT_TRUE(Messages().empty());
}

TEST_F(NodeImportTest, AnUrlThatNamesNothingFailsWithTheUrlAsWritten) {
  EXPECT_FALSE(Import("<node id=\"n\"><instance_geometry url=\"#nothing\"/></node>"));
  EXPECT_EQ(CountMessage("ERROR: Library not found: #nothing"), 1);
}

TEST_F(NodeImportTest, AControllerWhoseTargetIsMissingFails) {
  auto record = std::make_unique<ControllerRecord>();
  record->id = "skin";
  record->source = "#missing";
  MutableState(*reader).controllers.Add("skin", std::move(record));
  EXPECT_FALSE(Import("<node id=\"n\"><instance_controller url=\"#skin\"/></node>"));
  EXPECT_EQ(CountMessage("ERROR: Library not found for controller target: #missing"), 1);
}

TEST_F(NodeImportTest, ChildNodesAreNamedByTheirIdAndKeptInOrder) {
  ASSERT_TRUE(Import("<node id=\"n\"><node id=\"a\" name=\"Alpha\"/><node id=\"b\" name=\"Beta\"><node id=\"c\"/></node>"
                     "</node>"));
  ASSERT_EQ(node->GetChildCount(), 2);
  EXPECT_EQ(node->GetChild(0)->GetName(), "a");
  EXPECT_EQ(node->GetChild(1)->GetName(), "b");
  ASSERT_EQ(node->GetChild(1)->GetChildCount(), 1);
  EXPECT_EQ(node->GetChild(1)->GetChild(0)->GetName(), "c");
  EXPECT_EQ(node->GetChild(1)->GetChild(0)->GetNodeAttribute()->GetAttributeType(), KZylNodeAttribute::eNull);
}

TEST_F(NodeImportTest, NestedDefaultViewsAreDroppedWithoutAWord) {
  ASSERT_TRUE(Import("<node id=\"n\"><node id=\"persp\"><node id=\"inside\"/></node><node id=\"Persp\"/></node>"));
  ASSERT_EQ(node->GetChildCount(), 1);
  EXPECT_EQ(node->GetChild(0)->GetName(), "Persp");
  for (int i = 0; i < manager.GetSrcObjectCount<KZylNode>(); ++i) {
    EXPECT_NE(manager.GetSrcObject<KZylNode>(i)->GetName(), "persp");
    EXPECT_NE(manager.GetSrcObject<KZylNode>(i)->GetName(), "inside");
  }
  EXPECT_TRUE(Messages().empty());
}

TEST_F(NodeImportTest, UnknownChildFailsWithoutLineFeedWhenTheTransformsAcceptIt) {
  EXPECT_FALSE(Import("<node id=\"n\"><perspective/></node>"));
  EXPECT_EQ(Messages(), (std::vector<std::string>{"Warning: <perspective> is not supported.",
                                                  "ERROR: structure perspective unknown"}));
}

TEST_F(NodeImportTest, AFailingChildFailsItsParents) {
  EXPECT_FALSE(Import("<node id=\"n\"><node id=\"a\"><node id=\"b\"><asset/></node></node></node>"));
  EXPECT_EQ(CountMessage("ERROR: structure asset unknown\n"), 1);
  // Nothing was attached after the failure.
  EXPECT_EQ(node->GetChildCount(), 0);
  EXPECT_FALSE(reader->GetStatus());
}

TEST_F(NodeImportTest, BoundingBoxesWarnOnce) {
  ASSERT_TRUE(Import("<node id=\"n\"><boundingbox/><node id=\"a\"><boundingbox/></node></node>"));
  ASSERT_TRUE(Import("<node id=\"m\"><boundingbox/></node>", "m"));
  EXPECT_EQ(CountMessage("Warning: Bounding boxes are not supported"), 1);
}

TEST_F(NodeImportTest, AnExtraMetBeforeSilencesBoundingBoxes) {
  ASSERT_TRUE(Import("<node id=\"n\"><extra/><boundingbox/></node>"));
  EXPECT_EQ(CountMessage("Warning: Bounding boxes are not supported"), 0);
  EXPECT_EQ(CountMessage("Warning: Extra node is not supported in node"), 1);
}

TEST(NodeDocument, InstanceNodeFailsTheNodeAndItsAncestors) {
  zyldae::ReadResult read = zyltest::ReadText(
      SceneDocument("", "<node id=\"outer\"><node id=\"mid\"><instance_node url=\"#outer\"/></node></node>"));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(zyltest::CountMessage(read, "ERROR: structure instance_node unknown\n"), 1);
  EXPECT_EQ(zyltest::CountMessage(read, "ERROR: Unable to parse xml/dae file\n"), 1);
}

TEST(NodeDocument, AnUrlThatNamesNothingFailsTheRead) {
  zyldae::ReadResult read = zyltest::ReadText(SceneDocument("", "<node id=\"a\"><instance_light url=\"#gone\"/></node>"));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(zyltest::Messages(read), (std::vector<std::string>{"ERROR: Library not found: #gone",
                                                               "ERROR: Unable to parse xml/dae file\n"}));
}

TEST(NodeDocument, AnUnknownChildFailsTheWholeRead) {
  zyldae::Json dump = zyltest::DumpText(SceneDocument("", "<node id=\"outer\"><node id=\"a\"><asset/></node></node>"));
  EXPECT_EQ(dump["ok"], false);
  EXPECT_EQ(dump["scene"]["root"]["children"].size(), 0u);
}

TEST(NodeDocument, NodesOfTheSceneAreCopiesOfTheVisualScenesNodes) {
  zyldae::ReadResult read = zyltest::ReadText(SceneDocument("", "<node id=\"a\"><node id=\"b\"/></node>"));
  ASSERT_TRUE(read.ok);
  KZylNode* a = read.scene->FindNodeByName("a");
  ASSERT_NE(a, nullptr);
  EXPECT_EQ(a->GetChild(0)->GetName(), "b");
  // The manager holds each node twice: in the visual scene's scene and in the read scene.
  int named = 0;
  for (int i = 0; i < read.manager->GetSrcObjectCount<KZylNode>(); ++i) {
    KZylNode* node = read.manager->GetSrcObject<KZylNode>(i);
    if (node->GetName() == "a") {
      ++named;
      if (node != a) {
        EXPECT_NE(node->GetScene(), read.scene);
      }
    }
  }
  EXPECT_EQ(named, 2);
}

std::string Chain(int depth) {
  std::string nodes;
  for (int i = 0; i < depth; ++i) nodes += "<node id=\"n" + std::to_string(i) + "\"><translate>0 1 0</translate>";
  for (int i = 0; i < depth; ++i) nodes += "</node>";
  return nodes;
}

TEST(NodeDocument, AChainOfTwoThousandNestedNodesReads) {
  const int depth = 2000;
  zyldae::ReadResult read = zyltest::ReadText(SceneDocument("", Chain(depth)));
  ASSERT_TRUE(read.ok);
  KZylNode* node = read.scene->GetRootNode();
  for (int i = 0; i < depth; ++i) {
    ASSERT_EQ(node->GetChildCount(), 1) << "at depth " << i;
    node = node->GetChild(0);
    ASSERT_EQ(node->GetName(), ("n" + std::to_string(i)).c_str());
  }
  EXPECT_EQ(node->GetChildCount(), 0);
  EXPECT_EQ(node->GetNodeAttribute()->GetAttributeType(), KZylNodeAttribute::eNull);
  EXPECT_DOUBLE_EQ(node->GetGlobalFromDefaultTake().Get(3, 1), depth);
}

}  // namespace
