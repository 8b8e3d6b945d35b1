// The complete reading binds textures the way COLLADA does: instance_material -> material ->
// effect -> texture -> sampler2D -> surface -> image, with bind_vertex_input choosing the UV set.

#include <gtest/gtest.h>

#include "tests/reader/geometry/complete_scene_xml.h"

namespace zyltest {
namespace {

std::string Libraries(const std::string& profile) {
  return "<library_images><image id=\"img\"><init_from>wood.png</init_from></image></library_images>"
         "<library_effects><effect id=\"fx\">" +
         profile +
         "</effect></library_effects>"
         "<library_materials><material id=\"mat\"><instance_effect url=\"#fx\"/></material></library_materials>";
}

const std::string kTexturedProfile =
    "<profile_COMMON><newparam sid=\"surf\"><surface type=\"2D\"><init_from>img</init_from></surface></newparam>"
    "<newparam sid=\"samp\"><sampler2D><source>surf</source></sampler2D></newparam>"
    "<technique sid=\"t\"><phong><diffuse><texture texture=\"samp\" texcoord=\"UVSET1\"/></diffuse></phong>"
    "</technique></profile_COMMON>";

// Two triangles of the symbol "sym" with UV sets 0 and 1.
std::string TexturedMesh() {
  return FloatSource("uv", "0 0  1 0  1 1  0 1", 2) + FloatSource("uv1", "0 0  2 0  2 2  0 2", 2) +
         "<triangles material=\"sym\">" + VertexInput() +
         "<input semantic=\"TEXCOORD\" source=\"#uv\" offset=\"0\" set=\"0\"/>"
         "<input semantic=\"TEXCOORD\" source=\"#uv1\" offset=\"0\" set=\"1\"/><p>0 1 2  0 2 3</p></triangles>";
}

std::string Binding(const std::string& vertexInput) {
  return "<bind_material><technique_common><instance_material symbol=\"sym\" target=\"#mat\">" + vertexInput +
         "</instance_material></technique_common></bind_material>";
}

const std::string kSet1 = "<bind_vertex_input semantic=\"UVSET1\" input_semantic=\"TEXCOORD\" input_set=\"1\"/>";

TEST(CompleteTextures, TextureReachesTheBoundMeshOnTheLayerOfItsUVSet) {
  const zyldae::Json dump =
      DumpText(SquareMeshScene(TexturedMesh(), Binding(kSet1), Libraries(kTexturedProfile)), false, Complete());
  ASSERT_TRUE(dump["ok"]);
  const zyldae::Json& layers = FirstNodeAttribute(dump)["layers"];
  EXPECT_FALSE(layers[0].contains("textures"));
  const zyldae::Json& textures = layers[1]["textures"]["3"];
  EXPECT_EQ(textures["mapping"], 3);
  EXPECT_EQ(textures["reference"], 2);
  EXPECT_EQ(textures["index"], zyldae::Json::parse("[0,0]"));
  ASSERT_EQ(textures["direct"].size(), 1u);
  const int uid = textures["direct"][0];
  bool found = false;
  for (const zyldae::Json& texture : dump["scene"]["textures"])
    if (texture["uid"] == uid) found = texture["fileName"] == "wood.png";
  EXPECT_TRUE(found);
}

TEST(CompleteTextures, WithoutBindVertexInputTheTextureUsesTheFirstLayer) {
  const zyldae::Json dump =
      DumpText(SquareMeshScene(TexturedMesh(), Binding(""), Libraries(kTexturedProfile)), false, Complete());
  EXPECT_EQ(FirstNodeAttribute(dump)["layers"][0]["textures"]["3"]["index"], zyldae::Json::parse("[0,0]"));
}

TEST(CompleteTextures, TheTraditionalReadingPlacesNoTextureWithoutExtra) {
  const zyldae::Json dump = DumpText(SquareMeshScene(TexturedMesh(), Binding(kSet1), Libraries(kTexturedProfile)));
  ASSERT_TRUE(dump["ok"]);
  for (const zyldae::Json& layer : FirstNodeAttribute(dump)["layers"]) EXPECT_FALSE(layer.contains("textures"));
}

TEST(CompleteTextures, EffectWithoutCommonProfileReadsAsADefaultLambert) {
  const std::string document = SquareMeshScene(
      TexturedMesh(), Binding(""), Libraries("<profile_GLSL><technique sid=\"t\"><pass/></technique></profile_GLSL>"));
  const zyldae::ReadResult read = ReadText(document, Complete());
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(CountMessage(read, "Warning: effect fx has no profile_COMMON shading: read as a default lambert"), 1);
  const zyldae::Json dump = DumpText(document, false, Complete());
  ASSERT_EQ(dump["scene"]["materials"].size(), 1u);
  EXPECT_EQ(dump["scene"]["materials"][0]["name"], "mat");
  EXPECT_EQ(dump["scene"]["materials"][0]["class"], "lambert");
}

TEST(CompleteTextures, ImagesDeclaredInsideTheEffectAreFound) {
  const std::string profile =
      "<profile_COMMON><image id=\"inner\"><init_from>inner.png</init_from></image>"
      "<newparam sid=\"surf\"><surface type=\"2D\"><init_from>inner</init_from></surface></newparam>"
      "<newparam sid=\"samp\"><sampler2D><source>surf</source></sampler2D></newparam>"
      "<technique sid=\"t\"><lambert><diffuse><texture texture=\"samp\" texcoord=\"UVSET0\"/></diffuse>"
      "</lambert></technique></profile_COMMON>";
  const zyldae::Json dump = DumpText(SquareMeshScene(TexturedMesh(), Binding(""), Libraries(profile)), false, Complete());
  ASSERT_TRUE(dump["ok"]);
  ASSERT_EQ(dump["scene"]["textures"].size(), 1u);
  EXPECT_EQ(dump["scene"]["textures"][0]["fileName"], "inner.png");
}

TEST(CompleteTextures, EverySlotOfASymbolIsBound) {
  // Two primitive elements name one symbol: both slots take the bound material.
  const std::string triangles = "<triangles material=\"sym\">" + VertexInput() + "<p>0 1 2</p></triangles>";
  const zyldae::Json dump = DumpText(SquareMeshScene(triangles + triangles, Binding(""), Libraries(kTexturedProfile)),
                                     false, Complete());
  ASSERT_TRUE(dump["ok"]);
  ASSERT_EQ(dump["scene"]["materials"].size(), 1u);
  EXPECT_EQ(dump["scene"]["materials"][0]["name"], "mat");
}

// COLLADA 1.5: the image's address in init_from/ref, the sampler naming its image directly.
const std::string kVersion15Libraries =
    "<library_images><image id=\"img\"><init_from>\n  <ref>./wood.png</ref>\n</init_from></image></library_images>"
    "<library_effects><effect id=\"fx\"><profile_COMMON>"
    "<newparam sid=\"samp\"><sampler2D><instance_image url=\"#img\"/></sampler2D></newparam>"
    "<technique sid=\"t\"><phong><diffuse><texture texture=\"samp\" texcoord=\"UVSET1\"/></diffuse></phong>"
    "</technique></profile_COMMON></effect></library_effects>"
    "<library_materials><material id=\"mat\"><instance_effect url=\"#fx\"/></material></library_materials>";

TEST(CompleteTextures, Version15ImagesAndSamplersAreFollowed) {
  const std::string document = SquareMeshScene(TexturedMesh(), Binding(kSet1), kVersion15Libraries);
  const zyldae::Json dump = DumpText(document, false, Complete());
  ASSERT_TRUE(dump["ok"]);
  const zyldae::Json& textures = FirstNodeAttribute(dump)["layers"][1]["textures"]["3"];
  ASSERT_EQ(textures["direct"].size(), 1u);
  ASSERT_EQ(dump["scene"]["textures"].size(), 1u);
  EXPECT_EQ(dump["scene"]["textures"][0]["fileName"], "wood.png");
  // The default reading binds no texture through a sampler, so this one reaches no scene.
  EXPECT_TRUE(DumpText(document)["scene"]["textures"].empty());
}

}  // namespace
}  // namespace zyltest
