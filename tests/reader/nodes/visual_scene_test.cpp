// Visual scenes and the scene element: default views left out, the chosen visual scenes copied
// into the application's scene, and the structures they refuse.

#include "tests/reader/nodes/scene_documents.h"
#include "tests/support/reader_fixture.h"

namespace {

using namespace zylsdk;
using zyltest::Collada;
using zyltest::CountMessage;
using zyltest::ReadText;
using zyltest::SceneDocument;

const char* const kLightLibrary =
    "<library_lights><light id=\"lamp\"><technique_common><point><color>1 1 1</color></point></technique_common>"
    "</light></library_lights>";

std::vector<std::string> ChildNames(const KZylNode* node) {
  std::vector<std::string> names;
  for (int i = 0; i < node->GetChildCount(); ++i) names.push_back(node->GetChild(i)->GetName().Std());
  return names;
}

TEST(VisualScene, ATopLevelDefaultViewIsLeftOutWhateverItHolds) {
  zyldae::ReadResult read = ReadText(SceneDocument(
      kLightLibrary, "<node id=\"persp\"><instance_light url=\"#lamp\"/></node><node id=\"Persp\"/><node id=\"side\"/>"));
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(ChildNames(read.scene->GetRootNode()), std::vector<std::string>{"Persp"});
  EXPECT_EQ(CountMessage(read, "Warning: Camera persp will not be imported."), 1);
  EXPECT_EQ(CountMessage(read, "Warning: Camera side will not be imported."), 1);
}

TEST(VisualScene, EveryDefaultViewName) {
  std::string nodes;
  for (const char* id : {"persp", "top", "bottom", "left", "right", "side", "front", "back", "Top", "frontal"})
    nodes += std::string("<node id=\"") + id + "\"/>";
  zyldae::ReadResult read = ReadText(SceneDocument("", nodes));
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(ChildNames(read.scene->GetRootNode()), (std::vector<std::string>{"Top", "frontal"}));
  EXPECT_EQ(zyltest::Messages(read).size(), 8u);
}

TEST(VisualScene, NodesAreNamedByIdNotByName) {
  zyldae::ReadResult read = ReadText(SceneDocument("", "<node id=\"id1\" name=\"Pretty\"/>"));
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(ChildNames(read.scene->GetRootNode()), std::vector<std::string>{"id1"});
  EXPECT_EQ(read.scene->GetRootNode()->GetChild(0)->GetTransformationInheritType(), eInheritRSrs);
}

TEST(VisualScene, TheInstancedSceneIsFoundAmongSeveral) {
  zyldae::ReadResult read = ReadText(Collada(
      "<library_visual_scenes><visual_scene id=\"first\"><node id=\"a\"/></visual_scene>"
      "<visual_scene id=\"second\"><node id=\"b\"/></visual_scene></library_visual_scenes>"
      "<scene><instance_visual_scene url=\"#second\"/></scene>"));
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(ChildNames(read.scene->GetRootNode()), std::vector<std::string>{"b"});
}

TEST(VisualScene, AVisualSceneFromALaterLibraryIsFound) {
  zyldae::ReadResult read = ReadText(Collada(
      "<library_visual_scenes><visual_scene id=\"first\"><node id=\"a\"/></visual_scene></library_visual_scenes>"
      "<library_visual_scenes><visual_scene id=\"later\"><node id=\"b\"/></visual_scene></library_visual_scenes>"
      "<scene><instance_visual_scene url=\"#later\"/></scene>"));
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(ChildNames(read.scene->GetRootNode()), std::vector<std::string>{"b"});
}

TEST(VisualScene, TwoInstancesCopyBothInOrderAndNoneLeavesTheSceneEmpty) {
  const std::string library =
      "<library_visual_scenes><visual_scene id=\"first\"><node id=\"a\"/></visual_scene>"
      "<visual_scene id=\"second\"><node id=\"b\"/></visual_scene></library_visual_scenes>";
  zyldae::ReadResult both = ReadText(Collada(
      library + "<scene><instance_visual_scene url=\"#second\"/><instance_visual_scene url=\"#first\"/></scene>"));
  ASSERT_TRUE(both.ok);
  EXPECT_EQ(ChildNames(both.scene->GetRootNode()), (std::vector<std::string>{"b", "a"}));
  zyldae::ReadResult none = ReadText(Collada(library + "<scene/>"));
  ASSERT_TRUE(none.ok);
  EXPECT_EQ(none.scene->GetRootNode()->GetChildCount(), 0);
}

TEST(VisualScene, AnUnknownVisualSceneFails) {
  zyldae::ReadResult read = ReadText(Collada(
      "<library_visual_scenes><visual_scene id=\"vs\"/></library_visual_scenes>"
      "<scene><instance_visual_scene url=\"#nothing\"/></scene>"));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(CountMessage(read, "ERROR: Scene not found: nothing"), 1);
}

TEST(VisualScene, PhysicsScenesWarnAndOtherSceneChildrenFail) {
  const std::string library = "<library_visual_scenes><visual_scene id=\"vs\"/></library_visual_scenes>";
  zyldae::ReadResult physics = ReadText(Collada(
      library + "<scene><instance_physics_scene url=\"#p\"/><instance_visual_scene url=\"#vs\"/></scene>"));
  EXPECT_TRUE(physics.ok);
  EXPECT_EQ(CountMessage(physics, "Warning: structure instance_physics_scene is not supported."), 1);
  zyldae::ReadResult other = ReadText(Collada(library + "<scene><extra/></scene>"));
  EXPECT_FALSE(other.ok);
  EXPECT_EQ(CountMessage(other, "ERROR: structure extra unknown"), 1);
}

TEST(VisualScene, ExtraWarnsWithTheVisualScenesElementName) {
  zyldae::ReadResult read = ReadText(SceneDocument("", "<extra/><node id=\"a\"/><extra/>"));
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(CountMessage(read, "Warning: Extra node is not supported in node visual_scene"), 2);
}

TEST(VisualScene, TwoBoundingBoxesWarnOnce) {
  zyldae::ReadResult read = ReadText(SceneDocument("", "<boundingbox/><node id=\"a\"><boundingbox/></node><boundingbox/>"));
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(CountMessage(read, "Warning: Bounding boxes are not supported"), 1);
}

TEST(VisualScene, AnUnknownChildFails) {
  zyldae::ReadResult read = ReadText(SceneDocument("", "<node id=\"a\"/><asset/>"));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(CountMessage(read, "ERROR: structure asset unknown"), 1);
}

class VisualSceneImportTest : public zyltest::ReaderTest {};

TEST_F(VisualSceneImportTest, EveryVisualSceneReceivesTheBindPosesMadeSoFar) {
  KZylPose* pose = KZylPose::Create(&manager, "skin");
  zyltest::MutableState(*reader).bindPoses.Add(pose);
  ASSERT_TRUE(reader->ImportVisualScene(Parse("<visual_scene id=\"one\"/>")));
  ASSERT_TRUE(reader->ImportVisualScene(Parse("<visual_scene id=\"two\"/>")));
  const auto& scenes = reader->GetState().visualScenes;
  ASSERT_EQ(scenes.GetCount(), 2);
  for (int i = 0; i < 2; ++i) {
    ASSERT_EQ(scenes.Get(i)->GetPoseCount(), 1);
    EXPECT_EQ(scenes.Get(i)->GetPose(0), pose);
  }
  EXPECT_EQ(reader->GetState().bindPoses.GetCount(), 1);
  // Copied into the scene being read, the pose arrives as a new bind pose of the same name.
  ASSERT_TRUE(reader->ImportScene(*scene, Parse("<scene><instance_visual_scene url=\"#two\"/></scene>")));
  ASSERT_EQ(scene->GetPoseCount(), 1);
  EXPECT_NE(scene->GetPose(0), pose);
  EXPECT_EQ(scene->GetPose(0)->GetName(), "skin");
}

TEST_F(VisualSceneImportTest, IsNodeExportableWarnsForDefaultViews) {
  EXPECT_FALSE(reader->IsNodeExportable("front"));
  EXPECT_TRUE(reader->IsNodeExportable("Front"));
  EXPECT_EQ(Messages(), std::vector<std::string>{"Warning: Camera front will not be imported."});
}

TEST(VisualScene, TheDumpShowsTheCopiedHierarchy) {
  zyldae::Json dump = zyltest::DumpText(SceneDocument(kLightLibrary, "<node id=\"a\"><node id=\"b\">"
                                                                     "<instance_light url=\"#lamp\"/></node></node>"));
  ASSERT_EQ(dump["ok"], true);
  const zyldae::Json& root = dump["scene"]["root"];
  ASSERT_EQ(root["children"].size(), 1u);
  EXPECT_EQ(root["children"][0]["name"], "a");
  EXPECT_EQ(root["children"][0]["attribute"]["type"], "null");
  EXPECT_EQ(root["children"][0]["inheritType"], 1);
  EXPECT_EQ(root["children"][0]["children"][0]["attribute"]["type"], "light");
  EXPECT_EQ(root["children"][0]["children"][0]["shadingMode"], 0);
}

}  // namespace
