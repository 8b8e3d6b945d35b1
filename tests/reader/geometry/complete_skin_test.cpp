// The complete reading of skins: joints named by sid under the instance's skeleton roots, by
// node id or by node name, clusters linked to those nodes, and bind poses made of them.

#include <gtest/gtest.h>

#include "tests/reader/geometry/skin_morph_xml.h"
#include "tests/support/documents.h"

namespace zyltest {
namespace {

// Joint names written in a Name_array whose param has no name, as some exporters write them.
std::string UnnamedNameSource(const std::string& id, const std::string& names) {
  return "<source id=\"" + id + "\"><Name_array id=\"" + id + "-array\">" + names +
         "</Name_array><technique_common><accessor source=\"#" + id +
         "-array\" stride=\"1\"><param type=\"name\"/></accessor></technique_common></source>";
}

// A skinned triangle whose controller names its joints `names`; the armature holds two joint
// nodes (ids "arm_a" and "arm_b", sids "a" and "b", names "A" and "B"); the skinned node names
// `skeleton` as its skeleton root when it is not empty.
std::string SkinnedScene(const std::string& names, const std::string& skeleton) {
  const std::string skin = "<skin source=\"#tri\">" + UnnamedNameSource("joints", names) +
                           MatrixSource("ibm", Translation(0, -1, 0) + Translation(0, -2, 0)) +
                           FloatSource("weights", "1 0.5", 1) + JointsElement() +
                           VertexWeights("1 2 1", "0 0  0 1 1 1  1 0") + "</skin>";
  return Collada("<library_geometries>" + TriangleGeometry("tri", "0 0 0  1 0 0  0 1 0") +
                 "</library_geometries><library_controllers>" + Controller("ctrl", skin) +
                 "</library_controllers><library_visual_scenes><visual_scene id=\"vs\">"
                 "<node id=\"armature\"><node id=\"arm_a\" sid=\"a\" name=\"A\" type=\"JOINT\">"
                 "<translate>0 1 0</translate><node id=\"arm_b\" sid=\"b\" name=\"B\" type=\"JOINT\">"
                 "<translate>0 1 0</translate></node></node></node>"
                 "<node id=\"body\"><instance_controller url=\"#ctrl\">" +
                 (skeleton.empty() ? "" : "<skeleton>#" + skeleton + "</skeleton>") +
                 "</instance_controller></node></visual_scene></library_visual_scenes>"
                 "<scene><instance_visual_scene url=\"#vs\"/></scene>");
}

// The link names of the skinned node's clusters, and whether each is a node of the scene.
std::vector<std::pair<std::string, bool>> Links(const zyldae::Json& dump) {
  std::vector<std::pair<std::string, bool>> links;
  for (const zyldae::Json& cluster : dump["scene"]["root"]["children"][1]["attribute"]["skins"][0]["clusters"])
    links.emplace_back(cluster["link"].is_null() ? "" : cluster["link"]["name"].get<std::string>(),
                       !cluster["link"].is_null() && cluster["link"]["inScene"].get<bool>());
  return links;
}

using Links_ = std::vector<std::pair<std::string, bool>>;

TEST(CompleteSkin, SidsAreFoundUnderTheSkeletonRoot) {
  const zyldae::Json dump = DumpText(SkinnedScene("a b", "arm_a"), false, Complete());
  ASSERT_TRUE(dump["ok"]);
  EXPECT_EQ(Links(dump), Links_({{"arm_a", true}, {"arm_b", true}}));
}

TEST(CompleteSkin, NodeIdsThenNamesAreTriedWithoutSkeleton) {
  const zyldae::Json dump = DumpText(SkinnedScene("arm_a B", ""), false, Complete());
  ASSERT_TRUE(dump["ok"]);
  EXPECT_EQ(Links(dump), Links_({{"arm_a", true}, {"arm_b", true}}));
}

TEST(CompleteSkin, AJointFoundNowhereLeavesItsClusterWithoutLinkAndAWarning) {
  const zyldae::ReadResult read = ReadText(SkinnedScene("a missing", "arm_a"), Complete());
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(CountMessage(read, "Warning: joint missing of controller ctrl not found: its cluster is left without a link"),
            1);
  const zyldae::Json dump = DumpText(SkinnedScene("a missing", "arm_a"), false, Complete());
  EXPECT_EQ(Links(dump), Links_({{"arm_a", true}, {"", false}}));
}

TEST(CompleteSkin, TheBindPoseHoldsTheJointsOfTheScene) {
  const zyldae::Json dump = DumpText(SkinnedScene("a b", "arm_a"), false, Complete());
  ASSERT_EQ(dump["scene"]["poses"].size(), 1u);
  const zyldae::Json& entries = dump["scene"]["poses"][0]["entries"];
  ASSERT_EQ(entries.size(), 3u);
  EXPECT_EQ(entries[0]["node"], "arm_a");
  EXPECT_EQ(entries[1]["node"], "arm_b");
  EXPECT_EQ(entries[2]["node"], "body");
  for (const zyldae::Json& entry : entries) EXPECT_TRUE(entry["inScene"]);
  // The joint's bind matrix: the inverse of the document's inverse bind matrix (row vectors,
  // translation in the fourth row).
  EXPECT_EQ(entries[1]["matrix"][13], 2.0);
}

TEST(CompleteSkin, TheTraditionalReadingReadsNoNameThroughAnUnnamedParam) {
  const zyldae::Json dump = DumpText(SkinnedScene("a b", "arm_a"));
  ASSERT_TRUE(dump["ok"]);
  EXPECT_EQ(Links(dump), Links_({{"", false}, {"", false}}));
}

}  // namespace
}  // namespace zyltest
