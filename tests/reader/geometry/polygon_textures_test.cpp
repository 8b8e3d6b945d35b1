// Textures of the materials of a mesh's polygons, placed on the mesh's texture layer elements.

#include <gtest/gtest.h>

#include "tests/reader/geometry/mesh_xml.h"
#include "tests/support/reader_fixture.h"

namespace zyltest {
namespace {

using namespace zylsdk;

class PolygonTexturesTest : public ReaderTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(reader->ImportImage(Parse("<image id=\"wood\"><init_from>./wood.tga</init_from></image>")));
    ASSERT_TRUE(reader->ImportImage(Parse("<image id=\"rust\"><init_from>./rust.tga</init_from></image>")));
  }
  // An effect and a material `id` whose phong channels hold the given texture references.
  void AddMaterial(const std::string& id, const std::string& channels) {
    ASSERT_TRUE(reader->ImportEffect(Parse("<effect id=\"" + id + "-fx\"><profile_COMMON><technique><phong>" + channels +
                                           "</phong></technique></profile_COMMON></effect>")));
    ASSERT_TRUE(reader->ImportMaterial(Parse("<material id=\"" + id + "\"><instance_effect url=\"#" + id +
                                             "-fx\"/></material>")));
  }
  static std::string Channel(const std::string& channel, const std::string& image, const std::string& blend = "") {
    std::string koru = blend.empty() ? "" : "<technique profile=\"KORU\"><blend_mode>" + blend + "</blend_mode></technique>";
    return "<" + channel + "><texture texture=\"" + image + "\"><extra>" + koru + "</extra></texture></" + channel + ">";
  }
  KZylMesh* ReadMesh(const std::string& elements) {
    EXPECT_TRUE(reader->ImportGeometry(Parse(Geometry("g", Mesh(SquarePositions() + PositionVertices() + elements)))));
    return static_cast<KZylMesh*>(reader->GetState().nodeAttributes.Lookup("g"));
  }
  static std::string Triangle(const std::string& material) {
    return "<triangles material=\"" + material + "\">" + VertexInput() + "<p>0 1 2</p></triangles>";
  }
};

TEST_F(PolygonTexturesTest, TexturesGoToTheLayerOfTheirChannel) {
  AddMaterial("m1", Channel("diffuse", "wood") + Channel("specular", "rust", "ADD"));
  KZylMesh* mesh = ReadMesh(Triangle("m1"));
  ASSERT_NE(mesh, nullptr);
  const KZylLayer* layer = mesh->GetLayer(0);
  const KZylLayerElementTexture* diffuse = layer->GetTextures(KZylLayerElement::eDiffuseTextures);
  const KZylLayerElementTexture* specular = layer->GetTextures(KZylLayerElement::eSpecularTextures);
  ASSERT_NE(diffuse, nullptr);
  ASSERT_NE(specular, nullptr);
  EXPECT_EQ(diffuse->GetMappingMode(), KZylLayerElement::eByPolygon);
  EXPECT_EQ(diffuse->GetReferenceMode(), KZylLayerElement::eIndexToDirect);
  EXPECT_EQ(diffuse->GetBlendMode(), KZylLayerElementTexture::eTranslucent);
  EXPECT_EQ(specular->GetBlendMode(), KZylLayerElementTexture::eAdditive);
  ASSERT_EQ(diffuse->GetDirectArray().GetCount(), 1);
  EXPECT_EQ(diffuse->GetDirectArray()[0]->GetFileName(), "wood.tga");
  EXPECT_EQ(specular->GetDirectArray()[0]->GetName(), "rust");
  EXPECT_EQ(diffuse->GetIndexArray(), KArrayTemplate<int>({0}));
  EXPECT_EQ(layer->GetTextures(KZylLayerElement::eAmbientTextures), nullptr);
  // The polygons carry the index of the material's last texture.
  EXPECT_EQ(mesh->GetPolygonTexture(0), 0);
  EXPECT_EQ(mesh->GetPolygonMaterial(0), 0);
}

TEST_F(PolygonTexturesTest, EveryElementHasASlotAndTexturesAreKeptOncePerName) {
  AddMaterial("a", Channel("diffuse", "wood"));
  AddMaterial("b", Channel("diffuse", "rust"));
  AddMaterial("c", Channel("diffuse", "wood"));
  KZylMesh* mesh = ReadMesh("<polygons>" + VertexInput() + "<p>0 1 2</p></polygons>" + Triangle("a") + Triangle("b") +
                            Triangle("c") + Triangle("none"));
  const KZylLayerElementTexture* diffuse = mesh->GetLayer(0)->GetTextures(KZylLayerElement::eDiffuseTextures);
  ASSERT_NE(diffuse, nullptr);
  // Two textures named "wood" (one per effect) share a slot.
  ASSERT_EQ(diffuse->GetDirectArray().GetCount(), 2);
  EXPECT_EQ(diffuse->GetDirectArray()[0]->GetName(), "wood");
  EXPECT_EQ(diffuse->GetDirectArray()[1]->GetName(), "rust");
  EXPECT_EQ(diffuse->GetIndexArray(), KArrayTemplate<int>({-1, 0, 1, 0, -1}));
  std::vector<int> textures;
  for (int i = 0; i < mesh->GetPolygonCount(); ++i) textures.push_back(mesh->GetPolygonTexture(i));
  EXPECT_EQ(textures, std::vector<int>({-1, 0, 1, 0, -1}));
  // Four elements name a material; the material slots are by polygon.
  const KZylLayerElementMaterial* materials = mesh->GetLayer(0)->GetMaterials();
  EXPECT_EQ(materials->GetMappingMode(), KZylLayerElement::eByPolygon);
  EXPECT_EQ(materials->GetIndexArray(), KArrayTemplate<int>({0, 1, 2, 3}));
}

TEST_F(PolygonTexturesTest, MaterialWithoutPlacedTexturesGivesNoTextureElement) {
  // A texture reference without `extra` makes a texture that no mesh receives.
  AddMaterial("plain", "<diffuse><color>1 0 0 1</color><texture texture=\"wood\"/></diffuse>");
  KZylMesh* mesh = ReadMesh(Triangle("plain"));
  EXPECT_TRUE(mesh->GetLayer(0)->GetTextureChannels().empty());
  EXPECT_EQ(mesh->GetPolygonTexture(0), -1);
}

}  // namespace
}  // namespace zyltest
