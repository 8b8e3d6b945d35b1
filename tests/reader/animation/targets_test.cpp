// Channel targets: transforms of a node, parameters of the lights and cameras that nodes
// instance, and the messages of targets that lead nowhere.

#include <gtest/gtest.h>

#include "tests/reader/animation/animation_documents.h"

namespace {

using namespace zylsdk;
using zyltest::Keys;

const char* const kLights =
    "<library_lights>"
    "<light id=\"sun-light\"><technique_common><directional><color sid=\"color\">1 1 1</color></directional>"
    "</technique_common></light>"
    "<light id=\"lamp-light\"><technique_common><spot><color>1 1 1</color>"
    "<falloff_angle sid=\"falloff_angle\">30</falloff_angle></spot></technique_common>"
    "<technique profile=\"KORU\"><intensity sid=\"intensity\">1</intensity></technique></light>"
    "</library_lights>"
    "<library_cameras>"
    "<camera id=\"cam\"><optics><technique_common><perspective><xfov sid=\"xfov\">40</xfov>"
    "<znear sid=\"znear\">1</znear></perspective></technique_common></optics></camera>"
    "<camera id=\"cam2\"><optics><technique_common><perspective><yfov sid=\"yfov\">30</yfov>"
    "</perspective></technique_common></optics></camera>"
    "</library_cameras>";

const char* const kLightNodes =
    "<node id=\"sun\" name=\"sun\"><instance_light url=\"#sun-light\"/></node>"
    "<node id=\"lamp\" name=\"lamp\"><instance_light url=\"#lamp-light\"/></node>"
    "<node id=\"eye\" name=\"eye\"><instance_camera url=\"#cam\"/></node>"
    "<node id=\"eye2\" name=\"eye2\"><instance_camera url=\"#cam2\"/></node>";

class TargetsTest : public ::testing::Test {
 protected:
  // Reads the box, the lights and cameras with `animations`.
  void Read(const std::string& animations) {
    read = zyltest::ReadText(zyltest::AnimatedDocument(kLights, zyltest::BoxNode() + std::string(kLightNodes),
                                                       animations));
  }
  const KFCurve* Curve(const char* node, KZylTakeNode::EChannel channel) const {
    return zyltest::FindCurve(read.scene, node, channel);
  }
  int Count(const std::string& text) const { return zyltest::CountMessage(read, text); }

  zyldae::ReadResult read;
};

TEST_F(TargetsTest, ALightColourDrivesTheColourCurvesOfTheInstancingNode) {
  Keys keys{"0 1", "1 0.5 0.25  0 0 0"};
  keys.params = {"R", "G", "B"};
  Read(zyltest::Animation("a", "sun-light/color", keys));
  ASSERT_TRUE(read.ok);
  ASSERT_NE(Curve("sun", KZylTakeNode::eColorR), nullptr);
  EXPECT_EQ(Curve("sun", KZylTakeNode::eColorR)->KeyGetValue(0), 1.0f);
  EXPECT_EQ(Curve("sun", KZylTakeNode::eColorG)->KeyGetValue(0), 0.5f);
  EXPECT_EQ(Curve("sun", KZylTakeNode::eColorB)->KeyGetValue(0), 0.25f);
  EXPECT_TRUE(zyltest::Messages(read).empty());
}

TEST_F(TargetsTest, OneColourComponentDrivesOneCurve) {
  Read(zyltest::Animation("a", "sun-light/color.G", {"0 1", "0.2 0.4"}));
  ASSERT_NE(Curve("sun", KZylTakeNode::eColorG), nullptr);
  EXPECT_EQ(Curve("sun", KZylTakeNode::eColorG)->KeyGetValue(1), 0.4f);
  EXPECT_EQ(Curve("sun", KZylTakeNode::eColorR), nullptr);
  EXPECT_EQ(Curve("sun", KZylTakeNode::eColorB), nullptr);
}

TEST_F(TargetsTest, AnIntensityOfHalfBecomesFiftyAndItsTangentsScaleToo) {
  Read(zyltest::Animation("a", "lamp-light/intensity", {"0 1", "0.5 1", "BEZIER BEZIER", "0 0.02", "0.01 0"}));
  const KFCurve* curve = Curve("lamp", KZylTakeNode::eLightIntensity);
  ASSERT_NE(curve, nullptr);
  EXPECT_EQ(curve->KeyGetValue(0), 50.0f);
  EXPECT_EQ(curve->KeyGetValue(1), 100.0f);
  // 0.01 becomes 1 over one second: a derivative of 3; 0.02 becomes 2: 6.
  EXPECT_EQ(curve->KeyGetRightDerivative(0), 3.0f);
  EXPECT_EQ(curve->KeyGetLeftDerivative(1), 6.0f);
}

TEST_F(TargetsTest, AFalloffAngleDrivesTheConeAngleUnscaled) {
  Read(zyltest::Animation("a", "lamp-light/falloff_angle", {"0 1", "30 60"}));
  ASSERT_NE(Curve("lamp", KZylTakeNode::eLightConeAngle), nullptr);
  EXPECT_EQ(Curve("lamp", KZylTakeNode::eLightConeAngle)->KeyGetValue(1), 60.0f);
}

TEST_F(TargetsTest, BothFieldsOfViewDriveTheCameraFieldOfView) {
  Read(zyltest::Animation("a", "cam/xfov", {"0 1", "40 20"}) + zyltest::Animation("b", "cam2/yfov", {"0 1", "30 15"}));
  ASSERT_NE(Curve("eye", KZylTakeNode::eCameraFieldOfView), nullptr);
  EXPECT_EQ(Curve("eye", KZylTakeNode::eCameraFieldOfView)->KeyGetValue(1), 20.0f);
  ASSERT_NE(Curve("eye2", KZylTakeNode::eCameraFieldOfView), nullptr);
  EXPECT_EQ(Curve("eye2", KZylTakeNode::eCameraFieldOfView)->KeyGetValue(1), 15.0f);
}

TEST_F(TargetsTest, ANodeNamedAfterTheObjectIdIsTakenFirst) {
  // A node "sun-light" exists, so the instances of the light are not looked for.
  read = zyltest::ReadText(zyltest::AnimatedDocument(
      kLights, std::string(kLightNodes) + "<node id=\"sun-light\" name=\"sun-light\"/>",
      zyltest::Animation("a", "sun-light/color.R", {"0", "1"})));
  EXPECT_NE(Curve("sun-light", KZylTakeNode::eColorR), nullptr);
  EXPECT_EQ(Curve("sun", KZylTakeNode::eColorR), nullptr);
}

TEST_F(TargetsTest, InstancesAreLookedForInTheVisualSceneThatTheSceneInstances) {
  // The first visual scene also instances the light, on a node that the read scene does not
  // have; only the instanced visual scene counts.
  const std::string document = zyltest::Collada(
      std::string(kLights) +
      "<library_visual_scenes>"
      "<visual_scene id=\"unused\"><node id=\"other\" name=\"other\"><instance_light url=\"#sun-light\"/></node>"
      "</visual_scene>"
      "<visual_scene id=\"vs\"><node id=\"sun\" name=\"sun\"><instance_light url=\"#sun-light\"/></node>"
      "</visual_scene></library_visual_scenes><library_animations>" +
      zyltest::Animation("a", "sun-light/color.R", {"0", "1"}) +
      "</library_animations><scene><instance_visual_scene url=\"#vs\"/></scene>");
  read = zyltest::ReadText(document);
  ASSERT_TRUE(read.ok);
  EXPECT_NE(Curve("sun", KZylTakeNode::eColorR), nullptr);
  EXPECT_EQ(Count("Warning: node channel not found for animation: sun-light/color.R"), 0);
}

TEST_F(TargetsTest, AMissingNodeWarnsAndSkipsTheChannel) {
  Read(zyltest::Animation("a", "ghost/translate.X", {"0", "1"}) +
       zyltest::Animation("b", "box/translate.X", {"0", "1"}));
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(Count("Warning: node channel not found for animation: ghost/translate.X"), 1);
  EXPECT_NE(Curve("box", KZylTakeNode::eTranslationX), nullptr);
}

TEST_F(TargetsTest, AnUnregisteredPathWarnsAndSkipsTheChannel) {
  Read(zyltest::Animation("a", "box/nothing.X", {"0", "1"}));
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(Count("Warning: unknown animation channel: box/nothing"), 1);
  // The node received its take before the target was looked at, but no curve.
  const KZylNode* box = read.scene->FindNodeByName("box");
  ASSERT_NE(box->FindTakeNode("Take 001"), nullptr);
  EXPECT_EQ(Curve("box", KZylTakeNode::eTranslationX), nullptr);
}

TEST_F(TargetsTest, AnUnknownKindWarnsThatTheAnimationIsLost) {
  Read(zyltest::Animation("a", "cam/znear", {"0", "1"}));
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(Count("Warning: unknown animation channel: znear. This animation will be lost."), 1);
}

TEST_F(TargetsTest, MembersThatTheKindDoesNotTakeWarn) {
  Read(zyltest::Animation("a", "box/translate.W", {"0", "1"}) + zyltest::Animation("b", "box/rotateY.X", {"0", "1"}) +
       zyltest::Animation("c", "box/scale.ANGLE", {"0", "1"}) +
       zyltest::Animation("d", "lamp-light/intensity.X", {"0", "1"}) +
       zyltest::Animation("e", "sun-light/color.A", {"0", "1"}) + zyltest::Animation("f", "cam/xfov.Y", {"0", "1"}));
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(Count("Warning: unknown target in animation channel: W"), 1);
  EXPECT_EQ(Count("Warning: unknown target in animation channel: X"), 2);
  EXPECT_EQ(Count("Warning: unknown target in animation channel: ANGLE"), 1);
  EXPECT_EQ(Count("Warning: unknown target in animation channel: A"), 1);
  EXPECT_EQ(Count("Warning: unknown target in animation channel: Y"), 1);
  EXPECT_EQ(Curve("box", KZylTakeNode::eRotationY), nullptr);
  EXPECT_EQ(Curve("lamp", KZylTakeNode::eLightIntensity), nullptr);
}

TEST_F(TargetsTest, ARotationAboutAnotherAxisHasNoCurve) {
  Read(zyltest::Animation("a", "box/tilt.ANGLE", {"0", "1"}));
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(Count("Warning: could not find curve for target box/tilt.ANGLE"), 1);
}

TEST_F(TargetsTest, ATargetWithoutANodeIsTakenForAMissingShapeAndFailsTheRead) {
  Read(zyltest::Animation("a", "", {"0", "1"}));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(Count("ERROR: shape not found for animation: "), 1);
  EXPECT_EQ(Count("ERROR: Unable to parse xml/dae file\n"), 1);
}

}  // namespace
