// The output budget: the keys of channels and the clusters of skin instances a read may make
// for a document of its size (read options "OUTPUT RATIO" and "OUTPUT FLOOR"). What would pass
// it is skipped with one warning of each kind.

#include <gtest/gtest.h>

#include <string>

#include "reader/output_budget.h"
#include "tests/reader/animation/animation_documents.h"
#include "tests/reader/geometry/mesh_xml.h"

namespace zyltest {
namespace {

using zylsdk::KZylTakeNode;
using zylsdk::OutputBudget;

// Nodes n0..n3, each with its own channel of four keys on translate.X.
std::string FourChannels() {
  std::string nodes, animations;
  const Keys keys{"0 1 2 3", "0 1 2 3"};
  for (int i = 0; i < 4; ++i) {
    const std::string id = "n" + std::to_string(i);
    nodes += "<node id=\"" + id + "\" name=\"" + id + "\"><translate sid=\"translate\">0 0 0</translate></node>";
    animations += Animation("a" + id, id + "/translate.X", keys);
  }
  return AnimatedDocument("", nodes, animations);
}

// The budget as a floor alone, ratio 0.
zyldae::ReadSettings Budget(int64_t bytes, bool complete = false) {
  zyldae::ReadSettings settings;
  settings.complete = complete;
  settings.integerOptions = {{"OUTPUT RATIO", 0}, {"OUTPUT FLOOR", static_cast<int>(bytes)}};
  return settings;
}

int KeysOf(const zyldae::ReadResult& read, const char* node) {
  const zylsdk::KFCurve* curve = FindCurve(read.scene, node, KZylTakeNode::eTranslationX);
  return curve ? curve->KeyGetCount() : 0;
}

TEST(OutputBudget, ChannelsPastTheBudgetAreSkippedWithOneWarning) {
  // Room for the keys of two channels and a half.
  const int64_t bytes = 10 * OutputBudget::kBytesPerKey;
  const std::string warning = "Warning: animation channels skipped: the read would make more than " +
                              std::to_string(bytes) +
                              " bytes of keys and skins, the limit for this document (read options OUTPUT RATIO and "
                              "OUTPUT FLOOR)";
  for (bool complete : {false, true}) {
    const zyldae::ReadResult read = ReadText(FourChannels(), Budget(bytes, complete));
    ASSERT_TRUE(read.ok);
    EXPECT_EQ(KeysOf(read, "n0"), 4);
    EXPECT_EQ(KeysOf(read, "n1"), 4);
    EXPECT_EQ(KeysOf(read, "n2"), 0);
    EXPECT_EQ(KeysOf(read, "n3"), 0);
    EXPECT_EQ(CountMessage(read, warning), 1);
  }
}

TEST(OutputBudget, TheDefaultBudgetReadsEveryChannel) {
  const zyldae::ReadResult read = ReadText(FourChannels());
  ASSERT_TRUE(read.ok);
  for (const char* node : {"n0", "n1", "n2", "n3"}) EXPECT_EQ(KeysOf(read, node), 4) << node;
}

TEST(OutputBudget, TheBudgetGrowsWithTheDocument) {
  EXPECT_EQ(OutputBudget(1000, 16, 64).Limit(), 16000);
  EXPECT_EQ(OutputBudget(1, 16, 64).Limit(), 64);
  EXPECT_EQ(OutputBudget(INT64_MAX / 2, 16, 64).Limit(), INT64_MAX);
  OutputBudget budget(0, 0, 10);
  EXPECT_TRUE(budget.Take(6));
  EXPECT_FALSE(budget.Take(5));
  EXPECT_TRUE(budget.Take(4));
  EXPECT_FALSE(budget.Take(-1));
}

// A triangle skinned by two joints, instanced by the nodes b0..b2; `weights` and `v` give the
// vertex weights (vcount 1 for each of `vertices` vertices).
std::string InstancedSkin(int vertices = 3, const std::string& v = "0 0 0 0 1 0") {
  std::string vcount, instances;
  for (int i = 0; i < vertices; ++i) vcount += "1 ";
  for (int i = 0; i < 3; ++i)
    instances += "<node id=\"b" + std::to_string(i) + "\"><instance_controller url=\"#skin\"><skeleton>#j0</skeleton>"
                 "</instance_controller></node>";
  const std::string skin =
      "<controller id=\"skin\"><skin source=\"#tri\"><bind_shape_matrix>1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1"
      "</bind_shape_matrix><source id=\"joints\"><Name_array id=\"joints-array\" count=\"2\">j0 j1</Name_array>"
      "<technique_common><accessor source=\"#joints-array\" count=\"2\"><param name=\"JOINT\" type=\"name\"/>"
      "</accessor></technique_common></source>" +
      FloatSource("ibm", "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1 1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1", 16) +
      FloatSource("w", "1", 1) +
      "<joints><input semantic=\"JOINT\" source=\"#joints\"/><input semantic=\"INV_BIND_MATRIX\" source=\"#ibm\"/>"
      "</joints><vertex_weights count=\"" + std::to_string(vertices) +
      "\"><input semantic=\"JOINT\" source=\"#joints\" offset=\"0\"/><input semantic=\"WEIGHT\" source=\"#w\" "
      "offset=\"1\"/><vcount>" + vcount + "</vcount><v>" + v + "</v></vertex_weights></skin></controller>";
  const std::string triangle =
      Geometry("tri", Mesh(FloatSource("pos", "0 0 0 1 0 0 0 1 0", 3) + PositionVertices() + "<triangles count=\"1\">" +
                           VertexInput() + "<p>0 1 2</p></triangles>"));
  return Collada("<library_geometries>" + triangle + "</library_geometries><library_controllers>" + skin +
                 "</library_controllers><library_visual_scenes><visual_scene id=\"vs\"><node id=\"j0\" sid=\"j0\" "
                 "type=\"JOINT\"><node id=\"j1\" sid=\"j1\" type=\"JOINT\"/></node>" + instances +
                 "</visual_scene></library_visual_scenes><scene><instance_visual_scene url=\"#vs\"/></scene>");
}

int SkinsOf(const zyldae::ReadResult& read, const char* node) {
  const zylsdk::KZylNode* found = read.scene->FindNodeByName(node);
  const zylsdk::KZylGeometry* geometry = found ? found->GetGeometry() : nullptr;
  return geometry ? geometry->GetDeformerCount(zylsdk::KZylDeformer::eSkin) : -1;
}

TEST(OutputBudget, SkinInstancesPastTheBudgetAreSkippedWithOneWarning) {
  // Room for the two joints of one instance and a half.
  const int64_t perInstance = 2 * OutputBudget::kBytesPerSkinJoint + 3 * (sizeof(int) + sizeof(double));
  const zyldae::ReadResult read = ReadText(InstancedSkin(), Budget(perInstance * 3 / 2));
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(SkinsOf(read, "b0"), 1);
  EXPECT_EQ(SkinsOf(read, "b1"), 0);
  EXPECT_EQ(SkinsOf(read, "b2"), 0);
  EXPECT_EQ(CountMessage(read, "Warning: skins skipped: the read would make more than " +
                                   std::to_string(perInstance * 3 / 2) +
                                   " bytes of keys and skins, the limit for this document (read options OUTPUT "
                                   "RATIO and OUTPUT FLOOR)"),
            1);
  const zyldae::ReadResult whole = ReadText(InstancedSkin());
  for (const char* node : {"b0", "b1", "b2"}) EXPECT_EQ(SkinsOf(whole, node), 1) << node;
}

TEST(OutputBudget, TheCompleteReadingLeavesOutWeightsOfPointsTheMeshDoesNotHave) {
  // A fourth weighted vertex, on a triangle of three points.
  const std::string document = InstancedSkin(4, "0 0 0 0 1 0 1 0");
  const zyldae::ReadResult complete = ReadText(document, Complete());
  ASSERT_TRUE(complete.ok);
  EXPECT_EQ(CountMessage(complete, "Warning: 1 weights of skin skin name points its mesh does not have: left out"), 3);
  const zyldae::ReadResult traditional = ReadText(document);
  ASSERT_TRUE(traditional.ok);
  const auto* mesh = traditional.scene->FindNodeByName("b0")->GetGeometry();
  const auto* skin = static_cast<const zylsdk::KZylSkin*>(mesh->GetDeformer(0, zylsdk::KZylDeformer::eSkin));
  EXPECT_EQ(skin->GetCluster(1)->GetControlPointIndices().Std(), (std::vector<int>{2, 3}));
  const auto* completeMesh = complete.scene->FindNodeByName("b0")->GetGeometry();
  const auto* completeSkin = static_cast<const zylsdk::KZylSkin*>(completeMesh->GetDeformer(0, zylsdk::KZylDeformer::eSkin));
  EXPECT_EQ(completeSkin->GetCluster(1)->GetControlPointIndices().Std(), (std::vector<int>{2}));
}

}  // namespace
}  // namespace zyltest
