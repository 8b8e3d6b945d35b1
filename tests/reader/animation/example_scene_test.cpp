// The project's example scene, key by key through the dump: a linear translation, a Bezier
// rotation with tangents, a stepped whole scale, a light's colour and intensity, a camera's
// field of view and a morph weight.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "tests/support/documents.h"

namespace {

using zyldae::Json;

const Json* FindNode(const Json& node, const std::string& name) {
  if (node.at("name") == name) return &node;
  for (const Json& child : node.at("children"))
    if (const Json* found = FindNode(child, name)) return found;
  return nullptr;
}

class ExampleSceneTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    std::ifstream file(ZYL_SOURCE_DIR "/examples/scene.dae", std::ios::binary);
    std::stringstream contents;
    contents << file.rdbuf();
    dump = new Json(zyltest::DumpText(contents.str()));
  }
  static void TearDownTestSuite() {
    delete dump;
    dump = nullptr;
  }

  // The curves of the node `name` in "Take 001"; an empty object when it has none.
  static const Json& Curves(const std::string& name) {
    static const Json none = Json::object();
    const Json* node = FindNode(dump->at("scene").at("root"), name);
    EXPECT_NE(node, nullptr) << name;
    if (!node || !node->at("takes").contains("Take 001")) return none;
    return node->at("takes").at("Take 001");
  }

  // Checks every key's time, value, interpolation and tangent mode.
  static void ExpectKeys(const Json& curve, const std::vector<double>& times, const std::vector<float>& values,
                         int interpolation, int tangentMode) {
    const Json& keys = curve.at("keys");
    ASSERT_EQ(keys.size(), times.size());
    for (size_t k = 0; k < times.size(); ++k) {
      EXPECT_EQ(keys[k]["time"].get<double>(), times[k]) << k;
      EXPECT_EQ(keys[k]["value"].get<double>(), static_cast<double>(values[k])) << k;
      EXPECT_EQ(keys[k]["interpolation"], interpolation) << k;
      EXPECT_EQ(keys[k]["tangentMode"], tangentMode) << k;
    }
  }

  static Json* dump;
};

Json* ExampleSceneTest::dump = nullptr;

TEST_F(ExampleSceneTest, ReadsWithoutMessages) {
  EXPECT_EQ((*dump)["ok"], true);
  EXPECT_TRUE((*dump)["notifications"].empty()) << (*dump)["notifications"].dump();
}

TEST_F(ExampleSceneTest, TheBoxSlidesWithLinearKeys) {
  const Json& curves = Curves("box");
  ExpectKeys(curves.at("T.X"), {0, 1, 2}, {-3, 0, -3}, 4, 0x100);
  EXPECT_FALSE(curves.contains("T.Y"));
  EXPECT_FALSE(curves.contains("T.Z"));
}

TEST_F(ExampleSceneTest, TheBoxTurnsWithBezierKeysAndTheirTangents) {
  const Json& turn = Curves("box").at("R.Y");
  ExpectKeys(turn, {0, 2}, {20, 200}, 8, 0x400);
  // An out-tangent of 60 over two seconds with a weight of one third.
  const float derivative = static_cast<float>(60.0 / (2.0 * 0.33333334f));
  EXPECT_EQ(turn.at("keys")[0]["rightDerivative"].get<double>(), static_cast<double>(derivative));
  EXPECT_EQ(turn.at("keys")[0]["leftDerivative"].get<double>(), 0.0);
  EXPECT_EQ(turn.at("keys")[1]["leftDerivative"].get<double>(), 0.0);
  EXPECT_EQ(turn.at("keys")[1]["rightDerivative"].get<double>(), 0.0);
  EXPECT_EQ(turn.at("keys")[0]["break"], false);
  EXPECT_EQ(turn.at("keys")[1]["break"], false);
  EXPECT_FALSE(Curves("box").contains("R.X"));
}

TEST_F(ExampleSceneTest, TheBoxGrowsInStepsOnAllThreeAxes) {
  for (const char* axis : {"S.X", "S.Y", "S.Z"}) ExpectKeys(Curves("box").at(axis), {0, 1}, {1, 1.5f}, 2, 0x100);
}

TEST_F(ExampleSceneTest, TheSunReddens) {
  const Json& curves = Curves("sun");
  ExpectKeys(curves.at("Color.R"), {0, 2}, {1, 1}, 4, 0x100);
  ExpectKeys(curves.at("Color.G"), {0, 2}, {0.95f, 0.5f}, 4, 0x100);
  ExpectKeys(curves.at("Color.B"), {0, 2}, {0.9f, 0.3f}, 4, 0x100);
}

TEST_F(ExampleSceneTest, TheLampDimsInPercent) {
  ExpectKeys(Curves("lamp").at("Intensity"), {0, 2}, {80, 20}, 4, 0x100);
}

TEST_F(ExampleSceneTest, TheCameraZooms) {
  ExpectKeys(Curves("main-camera-node").at("FieldOfView"), {0.5, 2}, {40, 25}, 4, 0x100);
}

TEST_F(ExampleSceneTest, TheFaceSmilesInPercent) {
  const Json& curves = Curves("face");
  ExpectKeys(curves.at("Shape.0"), {0, 1}, {25, 100}, 4, 0x100);
  EXPECT_FALSE(curves.contains("Shape.1"));
}

TEST_F(ExampleSceneTest, NodesWithoutAnimationHaveNoTake) {
  for (const char* name : {"pyramid", "plan-camera-node", "spot", "rig", "arm"})
    EXPECT_TRUE(Curves(name).empty()) << name;
}

TEST_F(ExampleSceneTest, TheTakeSpansTheLastAnimationFromItsFirstKey) {
  // The last animation, the box's turn, runs from 0 to 2 s; the take spans it alone.
  const Json& take = (*dump)["scene"]["takes"][0];
  EXPECT_EQ(take["name"], "Take 001");
  EXPECT_EQ(take["localTimeSpan"]["startTicks"], 0);
  EXPECT_EQ(take["localTimeSpan"]["stop"], 2.0);
  EXPECT_EQ(take["referenceTimeSpan"]["stop"], 2.0);
  EXPECT_EQ((*dump)["scene"]["currentTake"], "Take 001");
}

}  // namespace
