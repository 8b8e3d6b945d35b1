// Lights: kinds, colour, cone angle and intensity, the scene's ambient colour, the unsupported
// parameters, animation targets, and the orientation of instanced lights.

#include "tests/reader/nodes/scene_documents.h"
#include "tests/support/reader_fixture.h"

namespace {

using namespace zylsdk;

class LightTest : public zyltest::ReaderTest {
 protected:
  // Imports a light `id` whose common technique holds `kinds` and, after it, `extra` elements.
  KZylLight* Import(const std::string& kinds, const std::string& extra = "", const char* id = "L1") {
    EXPECT_TRUE(reader->ImportLight(*scene, Parse(std::string("<light id=\"") + id + "\"><technique_common>" + kinds +
                                                  "</technique_common>" + extra + "</light>")));
    const auto& attributes = reader->GetState().nodeAttributes;
    return static_cast<KZylLight*>(attributes.Get(attributes.GetCount() - 1));
  }
};

TEST_F(LightTest, KindsGiveLightTypes) {
  EXPECT_EQ(Import("<directional/>")->GetLightType(), KZylLight::eDirectional);
  EXPECT_EQ(Import("<point/>")->GetLightType(), KZylLight::ePoint);
  EXPECT_EQ(Import("<spot/>")->GetLightType(), KZylLight::eSpot);
  EXPECT_EQ(reader->GetState().nodeAttributes.GetCount(), 3);
}

TEST_F(LightTest, ColourAndConeAngle) {
  KZylLight* light = Import("<spot><color>0.5 0.25 1</color><falloff_angle>30</falloff_angle></spot>");
  EXPECT_EQ(light->GetDefaultColor(), KZylColor(0.5, 0.25, 1.0, 1.0));
  EXPECT_EQ(light->GetDefaultConeAngle(), 30.0);
  EXPECT_TRUE(Messages().empty());
}

TEST_F(LightTest, AmbientLightsAddUpInTheSceneAndMakeNoObject) {
  EXPECT_EQ(Import("<ambient><color>0.1 0.1 0.1 1</color></ambient>", "", "A1"), nullptr);
  EXPECT_EQ(Import("<ambient><color>0.2 0.2 0.2 1</color></ambient>", "", "A2"), nullptr);
  const KZylColor& ambient = scene->GetGlobalLightSettings().GetAmbientColor();
  EXPECT_NEAR(ambient.mRed, 0.3, 1e-12);
  EXPECT_NEAR(ambient.mGreen, 0.3, 1e-12);
  EXPECT_NEAR(ambient.mBlue, 0.3, 1e-12);
  EXPECT_EQ(ambient.mAlpha, 1.0);
  // Both are registered, without an object.
  EXPECT_TRUE(reader->GetState().nodeAttributes.Contains("A1"));
  EXPECT_TRUE(reader->GetState().nodeAttributes.Contains("A2"));
}

TEST_F(LightTest, TheAmbientAlphaIsReplaced) {
  Import("<ambient><color>0.1 0.2 0.3 0.5</color></ambient>");
  EXPECT_EQ(scene->GetGlobalLightSettings().GetAmbientColor(), KZylColor(0.1, 0.2, 0.3, 0.5));
}

TEST_F(LightTest, AnUnknownKindWarnsAndItsColourGoesToTheAmbient) {
  EXPECT_EQ(Import("<area><color>0.5 0.5 0.5</color></area>"), nullptr);
  EXPECT_EQ(CountMessage("Warning: Unknown light type: area"), 1);
  EXPECT_EQ(scene->GetGlobalLightSettings().GetAmbientColor(), KZylColor(0.5, 0.5, 0.5, 1.0));
}

TEST_F(LightTest, AttenuationWarnsOnceEvenForTenLights) {
  for (int i = 0; i < 10; ++i) Import("<point><quadratic_attenuation>0.1</quadratic_attenuation></point>");
  EXPECT_EQ(CountMessage("Warning: light parameter not supported by ZYL: <quadratic_attenuation>"), 1);
  Import("<spot><constant_attenuation>1</constant_attenuation><linear_attenuation>0</linear_attenuation>"
         "<falloff_exponent>2</falloff_exponent></spot>");
  EXPECT_EQ(CountMessage("Warning: light parameter not supported by ZYL: <constant_attenuation>"), 1);
  EXPECT_EQ(CountMessage("Warning: light parameter not supported by ZYL: <linear_attenuation>"), 1);
  EXPECT_EQ(CountMessage("Warning: light parameter not supported by ZYL: <falloff_exponent>"), 1);
}

TEST_F(LightTest, AnUnknownParameterWarnsEveryTimeWithTheLightsId) {
  Import("<point><glow>1</glow><glow>2</glow></point>");
  EXPECT_EQ(CountMessage("Warning: Unknown light parameter <glow> on light \"L1\""), 2);
}

TEST_F(LightTest, VendorIntensityIsAPercentage) {
  KZylLight* light = Import("<point/>", "<technique profile=\"KORU\"><intensity>1.5</intensity>"
                                        "<shadow>1</shadow></technique>");
  EXPECT_EQ(light->GetDefaultIntensity(), 150.0);
  // Other vendor parameters are passed over silently.
  EXPECT_TRUE(Messages().empty());
}

TEST_F(LightTest, VendorIntensityOfAnAmbientLightDoesNothing) {
  EXPECT_EQ(Import("<ambient/>", "<technique profile=\"KORU\"><intensity sid=\"i\">2</intensity></technique>"),
            nullptr);
  EXPECT_EQ(scene->GetGlobalLightSettings().GetAmbientColor(), KZylColor(0, 0, 0, 1));
}

TEST_F(LightTest, PenumbraWarnsOnce) {
  Import("<spot/>", "<technique profile=\"KORU\"><penumbra_angle>5</penumbra_angle></technique>");
  Import("<spot/>", "<technique profile=\"KORU\"><penumbra_angle>5</penumbra_angle></technique>");
  EXPECT_EQ(CountMessage("Warning: light parameter not supported by ZYL: <penumbra_angle>"), 1);
}

TEST_F(LightTest, ParametersWithSidAreAnimationTargets) {
  Import("<point><color sid=\"color\">1 0 0</color><falloff_angle>3</falloff_angle></point>",
         "<technique profile=\"KORU\"><intensity sid=\"intensity\">1</intensity></technique>");
  const auto& targets = reader->GetState().animationTargets;
  ASSERT_EQ(targets.GetCount(), 2);
  ASSERT_TRUE(targets.Contains("L1/color"));
  EXPECT_EQ(targets.Lookup("L1/color")->kind, "color");
  EXPECT_EQ(targets.Lookup("L1/color")->axis, 0);
  EXPECT_EQ(targets.Lookup("L1/intensity")->kind, "intensity");
}

TEST_F(LightTest, WithoutCommonTechniqueNothingIsMadeAndNothingSaid) {
  ASSERT_TRUE(reader->ImportLight(*scene, Parse("<light id=\"bare\"/>")));
  EXPECT_TRUE(reader->GetState().nodeAttributes.Contains("bare"));
  EXPECT_EQ(reader->GetState().nodeAttributes.Lookup("bare"), nullptr);
  EXPECT_TRUE(Messages().empty());
}

TEST(LightDocument, InstancedLightsAndTheirOrientation) {
  zyldae::Json dump = zyltest::DumpText(zyltest::SceneDocument(
      "<library_lights>"
      "<light id=\"sun\"><technique_common><directional><color>1 0.5 0</color></directional></technique_common></light>"
      "<light id=\"bulb\"><technique_common><point/></technique_common></light>"
      "<light id=\"sky\"><technique_common><ambient><color>0.25 0.25 0.25</color></ambient></technique_common></light>"
      "</library_lights>",
      "<node id=\"s\"><instance_light url=\"#sun\"/></node><node id=\"b\"><instance_light url=\"#bulb\"/></node>"
      "<node id=\"k\"><instance_light url=\"#sky\"/></node>"));
  ASSERT_EQ(dump["ok"], true);
  const zyldae::Json& root = dump["scene"]["root"];
  const zyldae::Json* sun = zyltest::FindDumpNode(root, "s");
  const zyldae::Json* bulb = zyltest::FindDumpNode(root, "b");
  const zyldae::Json* sky = zyltest::FindDumpNode(root, "k");
  ASSERT_TRUE(sun && bulb && sky);
  EXPECT_EQ((*sun)["attribute"]["lightType"], 1);
  EXPECT_EQ((*sun)["attribute"]["color"], zyldae::Json::parse("[1, 0.5, 0, 1]"));
  EXPECT_EQ((*sun)["postRotation"], zyldae::Json::parse("[-90, 0, 0, 0]"));
  EXPECT_EQ((*bulb)["attribute"]["lightType"], 0);
  EXPECT_EQ((*bulb)["postRotation"], zyldae::Json::parse("[0, 0, 0, 0]"));
  // The ambient light is a registered null: the node ends with a null attribute.
  EXPECT_EQ((*sky)["attribute"]["type"], "null");
  EXPECT_EQ(dump["scene"]["ambientColor"], zyldae::Json::parse("[0.25, 0.25, 0.25, 1]"));
  EXPECT_TRUE(dump["notifications"].empty());
}

}  // namespace
