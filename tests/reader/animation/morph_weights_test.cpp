// Morph weights: "weights(index)" drives the shape channel of the index's target on every node
// that instances the morph, in percent.

#include <gtest/gtest.h>

#include "tests/reader/animation/animation_documents.h"

namespace {

using namespace zylsdk;
using zyltest::Keys;

// A geometry of one triangle whose first point is at height `y`.
std::string Triangle(const std::string& id, const std::string& y) {
  return "<geometry id=\"" + id + "\"><mesh>" +
         zyltest::FloatSource(id + "-positions", "0 " + y + " 0  1 0 0  0 1 0", {"X", "Y", "Z"}) + "<vertices id=\"" +
         id + "-vertices\"><input semantic=\"POSITION\" source=\"#" + id +
         "-positions\"/></vertices><polygons count=\"1\"><input semantic=\"VERTEX\" source=\"#" + id +
         "-vertices\" offset=\"0\"/><p>0 1 2</p></polygons></mesh></geometry>";
}

// The base triangle, targets "smile" and "blink", and the morph "face-morph" of `targets` with
// the weights source "face-weights".
std::string MorphLibraries(const std::string& targets, const std::string& weights) {
  std::string names = "<source id=\"face-targets\"><IDREF_array id=\"face-targets-array\">" + targets +
                      "</IDREF_array><technique_common><accessor source=\"#face-targets-array\"><param "
                      "name=\"MORPH_TARGET\" type=\"IDREF\"/></accessor></technique_common></source>";
  return "<library_geometries>" + Triangle("base", "0") + Triangle("smile", "0.5") + Triangle("blink", "-0.5") +
         "</library_geometries><library_controllers><controller id=\"face-morph\"><morph source=\"#base\" "
         "method=\"RELATIVE\">" +
         names + zyltest::FloatSource("face-weights", weights, {"MORPH_WEIGHT"}) +
         "<targets><input semantic=\"MORPH_TARGET\" source=\"#face-targets\"/><input semantic=\"MORPH_WEIGHT\" "
         "source=\"#face-weights\"/></targets></morph></controller></library_controllers>";
}

std::string FaceNode(const std::string& id) {
  return "<node id=\"" + id + "\" name=\"" + id + "\"><instance_controller url=\"#face-morph\"/></node>";
}

class MorphWeightsTest : public ::testing::Test {
 protected:
  void Read(const std::string& libraries, const std::string& nodes, const std::string& animations) {
    read = zyltest::ReadText(zyltest::AnimatedDocument(libraries, nodes, animations));
  }
  int Count(const std::string& text) const { return zyltest::CountMessage(read, text); }

  zyldae::ReadResult read;
};

TEST_F(MorphWeightsTest, AWeightOfOneBecomesAHundred) {
  Read(MorphLibraries("smile blink", "0.5 1"), FaceNode("face"),
       zyltest::Animation("a", "face-weights(1)", {"0 1", "0 1"}));
  ASSERT_TRUE(read.ok);
  const KFCurve* curve = zyltest::FindShapeCurve(read.scene, "face", 1);
  ASSERT_NE(curve, nullptr);
  ASSERT_EQ(curve->KeyGetCount(), 2);
  EXPECT_EQ(curve->KeyGetValue(0), 0.0f);
  EXPECT_EQ(curve->KeyGetValue(1), 100.0f);
  EXPECT_EQ(zyltest::FindShapeCurve(read.scene, "face", 0), nullptr);
  // The static weight stays as the document has it.
  const KZylGeometry* geometry = read.scene->FindNodeByName("face")->GetGeometry();
  KZylProperty weight = geometry->FindProperty("blink", true);
  ASSERT_TRUE(weight.IsValid());
  EXPECT_EQ(weight.GetDouble(), 1.0);
}

TEST_F(MorphWeightsTest, TangentsOfAWeightAreScaledToo) {
  Read(MorphLibraries("smile blink", "0.5 1"), FaceNode("face"),
       zyltest::Animation("a", "face-weights(0)", {"0 1", "0 1", "BEZIER BEZIER", "0 0", "0.01 0"}));
  const KFCurve* curve = zyltest::FindShapeCurve(read.scene, "face", 0);
  ASSERT_NE(curve, nullptr);
  EXPECT_EQ(curve->KeyGetRightDerivative(0), 3.0f);
}

TEST_F(MorphWeightsTest, EveryNodeThatInstancesTheMorphIsDriven) {
  Read(MorphLibraries("smile blink", "0.5 1"), FaceNode("face1") + FaceNode("face2"),
       zyltest::Animation("a", "face-weights(0)", {"0 1", "0.25 0.75"}));
  ASSERT_TRUE(read.ok);
  for (const char* name : {"face1", "face2"}) {
    const KFCurve* curve = zyltest::FindShapeCurve(read.scene, name, 0);
    ASSERT_NE(curve, nullptr) << name;
    EXPECT_EQ(curve->KeyGetValue(0), 25.0f);
    EXPECT_EQ(curve->KeyGetValue(1), 75.0f);
  }
}

TEST_F(MorphWeightsTest, TheIndexNamesTheTargetPositionNotTheShapeIndex) {
  // The first target has no geometry: "blink", second among the targets, is shape 0.
  Read(MorphLibraries("nowhere blink", "0.5 1"), FaceNode("face"),
       zyltest::Animation("a", "face-weights(1)", {"0", "0.5"}) +
           zyltest::Animation("b", "face-weights(0)", {"0", "0.5"}));
  ASSERT_TRUE(read.ok);
  const KFCurve* curve = zyltest::FindShapeCurve(read.scene, "face", 0);
  ASSERT_NE(curve, nullptr);
  EXPECT_EQ(curve->KeyGetValue(0), 50.0f);
  EXPECT_EQ(Count("Warning: Could not get shape channel for shape 0, node: face"), 1);
}

TEST_F(MorphWeightsTest, AnIndexWithoutAShapeWarns) {
  Read(MorphLibraries("smile blink", "0.5 1"), FaceNode("face"),
       zyltest::Animation("a", "face-weights(5)", {"0", "1"}));
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(Count("Warning: Could not get shape channel for shape 5, node: face"), 1);
}

TEST_F(MorphWeightsTest, AnUnknownWeightSourceFailsTheRead) {
  Read(MorphLibraries("smile blink", "0.5 1"), FaceNode("face"),
       zyltest::Animation("a", "other-weights(0)", {"0", "1"}));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(Count("ERROR: shape not found for animation: other-weights(0)"), 1);
}

}  // namespace
