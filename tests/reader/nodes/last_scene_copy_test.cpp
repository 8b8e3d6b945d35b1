// The last copy of a visual scene into the scene being read is made once the document is freed,
// when nothing reads the document afterwards: the copies, the animations read after the scene
// and whatever follows the scene element must all come out as they did with the document held.

#include "tests/reader/animation/animation_documents.h"
#include "tests/reader/nodes/scene_documents.h"
#include "tests/support/reader_fixture.h"

namespace {

using namespace zylsdk;
using zyltest::Collada;
using zyltest::CountMessage;
using zyltest::ReadText;

const char* const kVisualScene =
    "<library_visual_scenes><visual_scene id=\"vs\"><node id=\"a\"><translate>1 2 3</translate>"
    "<node id=\"b\"/></node></visual_scene></library_visual_scenes>";

// The names of the scene root's children, and of their children, depth first.
std::vector<std::string> NodeNames(const KZylScene& scene) {
  std::vector<std::string> names;
  std::vector<const KZylNode*> pending(1, scene.GetRootNode());
  while (!pending.empty()) {
    const KZylNode* node = pending.back();
    pending.pop_back();
    if (node != scene.GetRootNode()) names.push_back(node->GetName().Std());
    for (int i = node->GetChildCount() - 1; i >= 0; --i) pending.push_back(node->GetChild(i));
  }
  return names;
}

TEST(LastSceneCopy, EveryInstanceOfTheSceneArrivesWhole) {
  for (const zyldae::ReadSettings& settings : zyltest::BothModes()) {
    const zyldae::ReadResult read = ReadText(
        Collada(std::string(kVisualScene) +
                "<scene><instance_visual_scene url=\"#vs\"/><instance_visual_scene url=\"#vs\"/></scene>"),
        settings);
    ASSERT_TRUE(read.ok);
    ASSERT_NE(read.scene, nullptr);
    // The second copy's names are made unique once the read ends.
    EXPECT_EQ(NodeNames(*read.scene), (std::vector<std::string>{"a", "b", "a1", "b1"}));
    const KZylNode* first = read.scene->GetRootNode()->GetChild(0);
    const KZylNode* last = read.scene->GetRootNode()->GetChild(1);
    ASSERT_NE(last, nullptr);
    EXPECT_EQ(first->GetDefaultT()[1], 2.0);
    EXPECT_EQ(last->GetDefaultT(), first->GetDefaultT());
  }
}

TEST(LastSceneCopy, AnimationsReadAfterTheSceneStillFindTheirDocument) {
  const std::string document =
      zyltest::AnimatedDocument("", zyltest::BoxNode(), zyltest::Animation("a", "box/translate.X", {"0 1", "5 7"}));
  for (const zyldae::ReadSettings& settings : zyltest::BothModes()) {
    const zyldae::ReadResult read = ReadText(document, settings);
    ASSERT_TRUE(read.ok);
    const KFCurve* curve = zyltest::FindCurve(read.scene, "box", KZylTakeNode::eTranslationX);
    ASSERT_NE(curve, nullptr);
    ASSERT_EQ(curve->KeyGetCount(), 2);
    EXPECT_EQ(curve->KeyGetValue(1), 7.0f);
  }
}

TEST(LastSceneCopy, AnElementAfterTheSceneIsStillNamed) {
  const zyldae::ReadResult read =
      ReadText(Collada(std::string(kVisualScene) + "<scene><instance_visual_scene url=\"#vs\"/></scene><extra/>"));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(CountMessage(read, "ERROR: extra structure at the end of the main structure: <extra>"), 1);
}

class LastSceneCopyTest : public zyltest::ReaderTest {};

TEST_F(LastSceneCopyTest, MessagesOfTheLastCopyKeepTheirPlace) {
  // A node whose attribute the copy does not know: each copy warns where its instance stands.
  ASSERT_TRUE(reader->ImportVisualScene(Parse("<visual_scene id=\"vs\"/>")));
  KZylNode* node = KZylNode::Create(&manager, "m");
  node->SetNodeAttribute(KZylMarker::Create(&manager, ""));
  reader->GetState().visualScenes.Get(0)->GetRootNode()->AddChild(node);
  ASSERT_TRUE(reader->ImportScene(*scene,
                                  Parse("<scene id=\"s\">\n"
                                        "<instance_visual_scene url=\"#vs\"/>\n"
                                        "<instance_visual_scene url=\"#vs\" name=\"last\"/></scene>"),
                                  true));
  EXPECT_EQ(scene->GetRootNode()->GetChildCount(), 2);
  std::vector<std::pair<int, std::string>> places;
  for (const KZylUserNotification::Detail& detail : manager.GetUserNotification()->GetDetails())
    if (detail.text == "Warning: unknown attribute type found in node m")
      places.emplace_back(detail.location.line, detail.location.element.Std());
  EXPECT_EQ(places, (std::vector<std::pair<int, std::string>>{{2, "s"}, {3, "last"}}));
}

}  // namespace
