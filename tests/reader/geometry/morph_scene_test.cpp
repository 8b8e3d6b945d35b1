// Morphs read end to end: nodes that instance a morph controller get their own shapes, weighted
// as the document says, seen through the kit and through the dump.

#include <gtest/gtest.h>

#include "tests/reader/geometry/skin_morph_xml.h"
#include "tests/reader/nodes/scene_documents.h"

namespace zyltest {
namespace {

using namespace zylsdk;

std::string MorphLibraries(const std::string& targets = "smile frown", const std::string& weights = "0.5 1") {
  return "<library_geometries>" + TriangleGeometry("face", "0 0 0  1 0 0  0 1 0") +
         TriangleGeometry("smile", "0 0 1  1 0 1  0 1 1") + TriangleGeometry("frown", "0 0 -1  1 0 -1  0 1 -1") +
         "</library_geometries><library_controllers>" + Controller("face-morph", Morph("face", targets, weights)) +
         "</library_controllers>";
}

std::string Instance(const std::string& id) {
  return "<node id=\"" + id + "\" name=\"" + id + "\"><instance_controller url=\"#face-morph\"/></node>";
}

KZylMesh* MeshOf(const KZylScene& scene, const char* name) {
  KZylNode* node = scene.FindNodeByName(name);
  KZylNodeAttribute* attribute = node ? node->GetNodeAttribute() : nullptr;
  return attribute && attribute->Is(KZylMesh::ClassId) ? static_cast<KZylMesh*>(attribute) : nullptr;
}

TEST(MorphScene, TwoNodesGetTheirOwnShapesWithTheDocumentsWeights) {
  const zyldae::ReadResult read = ReadText(SceneDocument(MorphLibraries(), Instance("a") + Instance("b")));
  ASSERT_TRUE(read.ok);
  EXPECT_TRUE(Messages(read).empty());
  KZylMesh* a = MeshOf(*read.scene, "a");
  KZylMesh* b = MeshOf(*read.scene, "b");
  ASSERT_NE(a, nullptr);
  ASSERT_NE(b, nullptr);
  ASSERT_NE(a, b);
  for (KZylMesh* mesh : {a, b}) {
    ASSERT_EQ(mesh->GetShapeCount(), 2);
    EXPECT_EQ(mesh->GetShapeName(0), "smile");
    EXPECT_EQ(mesh->GetShapeName(1), "frown");
    EXPECT_EQ(mesh->FindProperty("smile").GetDouble(), 0.5);
    EXPECT_EQ(mesh->FindProperty("frown").GetDouble(), 1.0);
    EXPECT_EQ(mesh->GetShape(0)->GetControlPointAt(0), KZylVector4(0, 0, 1, 0));
    EXPECT_EQ(mesh->GetShape(1)->GetControlPointAt(0), KZylVector4(0, 0, -1, 0));
  }
  EXPECT_NE(a->GetShape(0), b->GetShape(0));
  EXPECT_NE(a->GetShape(1), b->GetShape(1));
  // Changing one node's weight leaves the other's.
  a->FindProperty("smile").Set(0.25);
  EXPECT_EQ(b->FindProperty("smile").GetDouble(), 0.5);
}

TEST(MorphScene, TheDumpShowsShapesWithWeights) {
  const zyldae::Json dump = DumpText(SceneDocument(MorphLibraries(), Instance("a") + Instance("b")));
  ASSERT_TRUE(dump["ok"].get<bool>());
  for (const char* name : {"a", "b"}) {
    const zyldae::Json* node = FindDumpNode(dump["scene"]["root"], name);
    ASSERT_NE(node, nullptr);
    const zyldae::Json& shapes = (*node)["attribute"]["shapes"];
    ASSERT_EQ(shapes.size(), 2u);
    EXPECT_EQ(shapes[0]["name"], "smile");
    EXPECT_EQ(shapes[0]["index"], 0);
    EXPECT_EQ(shapes[0]["weight"], 0.5);
    EXPECT_EQ(shapes[0]["controlPointCount"], 3);
    EXPECT_EQ(shapes[0]["controlPoints"][2], (zyldae::Json{0.0, 1.0, 1.0, 0.0}));
    EXPECT_EQ(shapes[1]["name"], "frown");
    EXPECT_EQ(shapes[1]["index"], 1);
    EXPECT_EQ(shapes[1]["weight"], 1.0);
    EXPECT_EQ(shapes[1]["normals"]["directCount"], 3);
    EXPECT_EQ((*node)["attribute"]["skins"], zyldae::Json::array());
  }
}

TEST(MorphScene, AMissingTargetGeometryIsSkipped) {
  const zyldae::ReadResult read =
      ReadText(SceneDocument(MorphLibraries("smile nowhere frown", "0.5 0.2 1"), Instance("a")));
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(Messages(read), (std::vector<std::string>{"Warning: Morph target not found: nowhere"}));
  KZylMesh* mesh = MeshOf(*read.scene, "a");
  ASSERT_NE(mesh, nullptr);
  ASSERT_EQ(mesh->GetShapeCount(), 2);
  EXPECT_EQ(mesh->GetShapeName(1), "frown");
  EXPECT_EQ(mesh->FindProperty("frown").GetDouble(), 1.0);
}

TEST(MorphScene, AShapeFailureIsReportedAndTheReadGoesOn) {
  // Listing a target twice makes the second add fail: the name is taken.
  const zyldae::ReadResult read = ReadText(SceneDocument(MorphLibraries("smile smile", "0.5 1"), Instance("a")));
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(CountMessage(
                read, "ERROR: could not add shape smile to mesh a;\nError code is A shape named smile already exists"),
            1);
  KZylMesh* mesh = MeshOf(*read.scene, "a");
  ASSERT_NE(mesh, nullptr);
  EXPECT_EQ(mesh->GetShapeCount(), 1);
}

TEST(MorphScene, AMorphOfAMissingBaseFailsTheNode) {
  const std::string libraries =
      "<library_controllers>" + Controller("face-morph", Morph("face", "smile", "1")) + "</library_controllers>";
  const zyldae::ReadResult read = ReadText(SceneDocument(libraries, Instance("a")));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(CountMessage(read, "ERROR: Library not found for controller target: #face"), 1);
}

TEST(MorphScene, ABadMorphFailsTheRead) {
  const zyldae::ReadResult read = ReadText(SceneDocument(MorphLibraries("smile frown extra", "0.5 1"), Instance("a")));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(CountMessage(read, "ERROR: in controller, number of targets 3 is different than number of weights 2"), 1);
}

}  // namespace
}  // namespace zyltest
