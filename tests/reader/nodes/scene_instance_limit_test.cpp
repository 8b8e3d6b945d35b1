// The read option "MAX SCENE INSTANCES": how many times the scene element may instance one
// visual scene before the further instances are skipped with a warning.

#include <gtest/gtest.h>

#include <string>

#include "reader/collada_import.h"
#include "tests/support/documents.h"

namespace {

using namespace zylsdk;
using zyltest::Collada;
using zyltest::CountMessage;

// A visual scene "vs" of one node "a" instanced `count` times, then "other" (node "b") once.
std::string Instanced(int count) {
  std::string instances;
  for (int i = 0; i < count; ++i) instances += "<instance_visual_scene url=\"#vs\"/>";
  return Collada(
      "<library_visual_scenes><visual_scene id=\"vs\"><node id=\"a\"/></visual_scene>"
      "<visual_scene id=\"other\"><node id=\"b\"/></visual_scene></library_visual_scenes><scene>" +
      instances + "<instance_visual_scene url=\"#other\"/></scene>");
}

const char* const kSkipped =
    "Warning: visual scene #vs is instanced more than 16 times: the other instances are skipped (read option MAX "
    "SCENE INSTANCES)";

TEST(SceneInstanceLimit, SixteenInstancesAreCopiedWithoutAWord) {
  zyldae::ReadResult read = zyltest::ReadText(Instanced(16));
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(read.scene->GetRootNode()->GetChildCount(), 17);
  EXPECT_EQ(CountMessage(read, kSkipped), 0);
}

TEST(SceneInstanceLimit, FurtherInstancesAreSkippedWithOneWarning) {
  for (const zyldae::ReadSettings& settings : zyltest::BothModes()) {
    zyldae::ReadResult read = zyltest::ReadText(Instanced(40), settings);
    ASSERT_TRUE(read.ok);
    const KZylNode* root = read.scene->GetRootNode();
    ASSERT_EQ(root->GetChildCount(), 17);
    // After the read, repeated names get a number suffix.
    EXPECT_EQ(root->GetChild(15)->GetName().Std(), "a15");
    // Another visual scene has a count of its own.
    EXPECT_EQ(root->GetChild(16)->GetName().Std(), "b");
    EXPECT_EQ(CountMessage(read, kSkipped), 1);
  }
}

TEST(SceneInstanceLimit, TheOptionRaisesTheLimit) {
  zyltest::TempFile file(Instanced(40));
  KZylSdkManager manager;
  RegisterColladaReader(manager);
  std::unique_ptr<KZylReader> reader = manager.CreateReader("dae");
  KZylScene* scene = KZylScene::Create(&manager, "");
  ASSERT_TRUE(reader->FileOpen(file.Path().c_str()));
  KZylStreamOptions* options = reader->GetReadOptions();
  ASSERT_EQ(options->GetOption("MAX SCENE INSTANCES").GetInt(), 16);
  options->GetOption("MAX SCENE INSTANCES").Set(40);
  ASSERT_TRUE(reader->Read(*scene, options));
  EXPECT_EQ(scene->GetRootNode()->GetChildCount(), 41);
  EXPECT_TRUE(zyltest::SceneViolations(*scene).empty());
}

}  // namespace
