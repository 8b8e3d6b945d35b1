// Effects into surface materials, and materials into named copies of them.

#include <gtest/gtest.h>

#include "tests/support/documents.h"
#include "tests/support/reader_fixture.h"

namespace zyltest {
namespace {

using namespace zylsdk;

std::string Effect(const std::string& id, const std::string& shading, const std::string& parameters) {
  return "<effect id=\"" + id + "\"><profile_COMMON><technique sid=\"common\"><" + shading + ">" + parameters + "</" +
         shading + "></technique></profile_COMMON></effect>";
}
std::string Color(const std::string& parameter, const std::string& value) {
  return "<" + parameter + "><color>" + value + "</color></" + parameter + ">";
}
std::string Float(const std::string& parameter, const std::string& value) {
  return "<" + parameter + "><float>" + value + "</float></" + parameter + ">";
}
std::string Material(const std::string& id, const std::string& effectUrl) {
  return "<material id=\"" + id + "\"><instance_effect url=\"" + effectUrl + "\"/></material>";
}

class EffectsTest : public ReaderTest {
 protected:
  KZylSurfaceMaterial* ReadEffect(const std::string& xml, bool expected = true) {
    EXPECT_EQ(reader->ImportEffect(Parse(xml)), expected);
    const auto& effects = reader->GetState().effects;
    return effects.GetCount() ? effects.Get(effects.GetCount() - 1) : nullptr;
  }
  static std::vector<double> Numbers(const KZylSurfaceMaterial& material, const char* property) {
    return material.FindProperty(property).GetNumbers();
  }
};

TEST_F(EffectsTest, PhongTakesColoursFactorsAndNumbersAsWritten) {
  KZylSurfaceMaterial* material = ReadEffect(Effect(
      "fx", "phong",
      Color("emission", "0.1 0.2 0.3 1") + Color("ambient", "0.4 0.5 0.6 1") + Color("diffuse", "0.7 0.8 0.9 0.5") +
          Color("specular", "1 1 1 1") + Float("shininess", "20") + Color("reflective", "0.25 0.5 0.75 1") +
          Float("transparency", "0.3") + Float("transparent", "0.9 0.8 0.7")));
  ASSERT_NE(material, nullptr);
  ASSERT_TRUE(material->Is(KZylSurfacePhong::ClassId));
  EXPECT_EQ(material->GetName(), "fx");
  EXPECT_EQ(material->GetShadingModel().GetString(), "phong");
  EXPECT_EQ(Numbers(*material, "EmissiveColor"), std::vector<double>({0.1, 0.2, 0.3}));
  EXPECT_EQ(Numbers(*material, "AmbientColor"), std::vector<double>({0.4, 0.5, 0.6}));
  EXPECT_EQ(Numbers(*material, "DiffuseColor"), std::vector<double>({0.7, 0.8, 0.9}));
  EXPECT_EQ(Numbers(*material, "SpecularColor"), std::vector<double>({1, 1, 1}));
  EXPECT_EQ(Numbers(*material, "ReflectionColor"), std::vector<double>({0.25, 0.5, 0.75}));
  EXPECT_EQ(Numbers(*material, "TransparentColor"), std::vector<double>({0.9, 0.8, 0.7}));
  EXPECT_EQ(material->FindProperty("Shininess").GetDouble(), 20.0);
  EXPECT_EQ(material->FindProperty("TransparencyFactor").GetDouble(), 0.3);
  for (const char* factor : {"EmissiveFactor", "AmbientFactor", "DiffuseFactor", "SpecularFactor"})
    EXPECT_EQ(material->FindProperty(factor).GetDouble(), 1.0) << factor;
  // Not reflective without reflectivity, whatever the reflective colour.
  EXPECT_EQ(material->FindProperty("ReflectionFactor").GetDouble(), 0.0);
  EXPECT_TRUE(Messages().empty());
}

TEST_F(EffectsTest, ReflectivityIsKeptAsWritten) {
  KZylSurfaceMaterial* material = ReadEffect(Effect("fx", "phong", Float("reflectivity", "0.5")));
  EXPECT_EQ(material->FindProperty("ReflectionFactor").GetDouble(), 0.5);
}

TEST_F(EffectsTest, ShadingNameIgnoresCaseButParameterNamesDoNot) {
  KZylSurfaceMaterial* material = ReadEffect(Effect("fx", "PHONG", Color("Diffuse", "1 0 0 1")));
  ASSERT_TRUE(material->Is(KZylSurfacePhong::ClassId));
  // The kit's default diffuse colour is untouched.
  EXPECT_EQ(Numbers(*material, "DiffuseColor"), std::vector<double>({0.8, 0.8, 0.8}));
  EXPECT_TRUE(Messages().empty());
}

TEST_F(EffectsTest, LambertReadsItsParametersAndReportsThePhongOnes) {
  KZylSurfaceMaterial* material = ReadEffect(
      Effect("fx", "lambert",
             Color("diffuse", "0.5 0.5 0.5 1") + Color("specular", "1 0 0 1") + Float("shininess", "3") +
                 Color("reflective", "1 1 1 1") + Float("reflectivity", "1") + Float("index_of_refraction", "1.5") +
                 Float("transparency", "0.75")));
  ASSERT_TRUE(material->Is(KZylSurfaceLambert::ClassId));
  EXPECT_FALSE(material->Is(KZylSurfacePhong::ClassId));
  EXPECT_EQ(Numbers(*material, "DiffuseColor"), std::vector<double>({0.5, 0.5, 0.5}));
  EXPECT_EQ(material->FindProperty("TransparencyFactor").GetDouble(), 0.75);
  EXPECT_FALSE(material->FindProperty("Shininess").IsValid());
  EXPECT_EQ(CountMessage("Warning: Material parameter not supported: reflective"), 1);
  EXPECT_EQ(CountMessage("Warning: Material parameter not supported: reflectivity"), 1);
  EXPECT_EQ(CountMessage("Warning: Material parameter not supported: index_of_refraction"), 1);
  // specular and shininess are not lambert parameters: skipped without a word.
  EXPECT_EQ(Messages().size(), 3u);
}

TEST_F(EffectsTest, OtherShadingModelsKeepTheirValuesInNewProperties) {
  KZylSurfaceMaterial* material = ReadEffect(
      Effect("blinnfx", "blinn",
             Color("emission", "0.1 0.1 0.1 1") + Color("ambient", "0.2 0.2 0.2 1") + Color("diffuse", "0.3 0.4 0.5 1") +
                 Color("specular", "0.6 0.6 0.6 1") + Float("shininess", "0.4") + Float("transparency", "1") +
                 Color("transparent", "1 1 1 1") + Color("transparent", "0 0 0 1")));
  ASSERT_NE(material, nullptr);
  EXPECT_FALSE(material->Is(KZylSurfaceLambert::ClassId));
  EXPECT_EQ(material->GetShadingModel().GetString(), "blinn");
  KZylProperty diffuse = material->FindProperty(KZylSurfaceMaterial::sDiffuse);
  ASSERT_TRUE(diffuse.IsValid());
  EXPECT_TRUE(diffuse.IsDynamic());
  EXPECT_EQ(diffuse.GetPropertyDataType(), DTColor3);
  EXPECT_EQ(diffuse.GetNumbers(), std::vector<double>({0.3, 0.4, 0.5}));
  EXPECT_EQ(Numbers(*material, KZylSurfaceMaterial::sEmissive), std::vector<double>({0.1, 0.1, 0.1}));
  EXPECT_EQ(Numbers(*material, KZylSurfaceMaterial::sAmbient), std::vector<double>({0.2, 0.2, 0.2}));
  EXPECT_EQ(Numbers(*material, KZylSurfaceMaterial::sSpecular), std::vector<double>({0.6, 0.6, 0.6}));
  KZylProperty shininess = material->FindProperty(KZylSurfaceMaterial::sShininess);
  EXPECT_EQ(shininess.GetPropertyDataType(), DTDouble);
  EXPECT_EQ(shininess.GetDouble(), 0.4);
  EXPECT_EQ(material->FindProperty(KZylSurfaceMaterial::sTransparencyFactor).GetDouble(), 1.0);
  EXPECT_FALSE(material->FindProperty("DiffuseFactor").IsValid());
  EXPECT_EQ(CountMessage("Warning: Material parameter not supported: transparent"), 1);
}

TEST_F(EffectsTest, ShadingModelKeepsTheNameAsWritten) {
  KZylSurfaceMaterial* material = ReadEffect(Effect("fx", "Constant", ""));
  EXPECT_EQ(material->GetShadingModel().GetString(), "Constant");
}

TEST_F(EffectsTest, MissingValueChildSetsNothing) {
  KZylSurfaceMaterial* material = ReadEffect(
      Effect("fx", "phong", "<diffuse><texture texture=\"img\" texcoord=\"uv\"/></diffuse>" + Float("specular", "1") +
                                Color("transparent", "1 0 0 1")));
  EXPECT_EQ(Numbers(*material, "DiffuseColor"), std::vector<double>({0.8, 0.8, 0.8}));
  EXPECT_EQ(Numbers(*material, "SpecularColor"), std::vector<double>({0.2, 0.2, 0.2}));
  // `transparent` is read from a float child only.
  EXPECT_EQ(Numbers(*material, "TransparentColor"), std::vector<double>({0, 0, 0}));
  EXPECT_TRUE(Messages().empty());
}

TEST_F(EffectsTest, NoCommonProfileIsAnErrorAndNoMaterial) {
  EXPECT_FALSE(reader->ImportEffect(Parse("<effect id=\"glsl\"><profile_GLSL/><profile_CG/></effect>")));
  EXPECT_EQ(CountMessage("ERROR: no common profile found for library glsl"), 1);
  EXPECT_EQ(reader->GetState().effects.GetCount(), 0);
  EXPECT_EQ(manager.GetSrcObjectCount<KZylSurfaceMaterial>(), 0);
}

TEST_F(EffectsTest, NoTechniqueOrNoShadingFailsSilently) {
  EXPECT_FALSE(reader->ImportEffect(Parse("<effect id=\"a\"><profile_COMMON/></effect>")));
  EXPECT_FALSE(reader->ImportEffect(Parse("<effect id=\"b\"><profile_COMMON><technique/></profile_COMMON></effect>")));
  EXPECT_TRUE(Messages().empty());
  EXPECT_EQ(reader->GetState().effects.GetCount(), 0);
}

TEST_F(EffectsTest, UnsupportedParameterIsReportedOncePerReader) {
  ReadEffect(Effect("a", "phong", Float("index_of_refraction", "1.3")));
  ReadEffect(Effect("b", "phong", Float("index_of_refraction", "1.3")));
  EXPECT_EQ(CountMessage("Warning: Material parameter not supported: index_of_refraction"), 1);
  EXPECT_EQ(reader->GetState().effects.GetCount(), 2);
}

// ---------------------------------------------------------------- materials

TEST_F(EffectsTest, MaterialIsANamedCopyOfItsEffect) {
  ReadEffect(Effect("fx", "phong", Color("diffuse", "0.1 0.2 0.3 1")));
  ASSERT_TRUE(reader->ImportMaterial(Parse(Material("red", "#fx"))));
  ASSERT_TRUE(reader->ImportMaterial(Parse(Material("blue", "#fx"))));
  const auto& materials = reader->GetState().materials;
  ASSERT_EQ(materials.GetCount(), 2);
  KZylSurfaceMaterial* red = materials.Lookup("red");
  KZylSurfaceMaterial* blue = materials.Lookup("blue");
  ASSERT_NE(red, nullptr);
  ASSERT_NE(blue, nullptr);
  EXPECT_NE(red, blue);
  EXPECT_NE(red, reader->GetState().effects.Lookup("fx"));
  EXPECT_EQ(red->GetName(), "red");
  EXPECT_EQ(blue->GetName(), "blue");
  EXPECT_TRUE(red->Is(KZylSurfacePhong::ClassId));
  EXPECT_EQ(Numbers(*blue, "DiffuseColor"), std::vector<double>({0.1, 0.2, 0.3}));
  // The copies are independent.
  red->FindProperty("DiffuseColor").Set(KZylColor(1, 0, 0));
  EXPECT_EQ(Numbers(*blue, "DiffuseColor"), std::vector<double>({0.1, 0.2, 0.3}));
  EXPECT_EQ(reader->GetState().effects.Lookup("fx")->GetName(), "fx");
}

TEST_F(EffectsTest, MaterialWithoutInstanceEffectFails) {
  EXPECT_FALSE(reader->ImportMaterial(Parse("<material id=\"lost\"/>")));
  EXPECT_EQ(CountMessage("ERROR: no instance effect found for library lost"), 1);
  EXPECT_EQ(reader->GetState().materials.GetCount(), 0);
}

TEST_F(EffectsTest, MaterialOfAnUnknownEffectFails) {
  EXPECT_FALSE(reader->ImportMaterial(Parse(Material("m", "#nowhere"))));
  EXPECT_EQ(CountMessage("ERROR: Effect not found: #nowhere"), 1);
  EXPECT_EQ(reader->GetState().materials.GetCount(), 0);
  EXPECT_EQ(manager.GetSrcObjectCount<KZylSurfaceMaterial>(), 0);
}

TEST_F(EffectsTest, MaterialOfAFailedEffectFailsAndTheLibraryGoesOn) {
  const std::string document = Collada(
      "<library_effects>" + std::string("<effect id=\"bad\"><profile_CG/></effect>") +
      Effect("good", "lambert", "") + "</library_effects><library_materials>" + Material("m1", "#bad") +
      Material("m2", "#good") + "</library_materials>");
  zyldae::ReadResult read = ReadText(document);
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(zyltest::CountMessage(read, "ERROR: no common profile found for library bad"), 1);
  EXPECT_EQ(zyltest::CountMessage(read, "ERROR: Effect not found: #bad"), 1);
  // The effect's material and the copy for m2.
  EXPECT_EQ(read.manager->GetSrcObjectCount<KZylSurfaceMaterial>(), 2);
}

}  // namespace
}  // namespace zyltest
