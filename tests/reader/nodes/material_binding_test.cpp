// Material binding of instanced meshes: placeholders replaced by the document's materials, the
// replaced ones kept in the reader's material set, and the failures.

#include "tests/reader/nodes/library_objects.h"
#include "tests/reader/nodes/scene_documents.h"
#include "tests/support/reader_fixture.h"

namespace {

using namespace zylsdk;
using zyltest::MutableState;

class MaterialBindingTest : public zyltest::ReaderTest {
 protected:
  void SetUp() override {
    library = zyltest::MakeLibraryMesh(manager, {"symA", "symB"});
    MutableState(*reader).nodeAttributes.Add("geo", static_cast<KZylNodeAttribute*>(library));
    material = KZylSurfacePhong::Create(&manager, "red");
    MutableState(*reader).materials.Add("red", static_cast<KZylSurfaceMaterial*>(material));
  }
  bool Import(const std::string& bindings) {
    node = KZylNode::Create(&manager, "n");
    return reader->ImportNode(Parse("<node id=\"n\"><instance_geometry url=\"#geo\">" + bindings +
                                    "</instance_geometry></node>"),
                              *node, "n");
  }
  KZylLayerElementMaterial* NodeMaterials() const {
    return static_cast<KZylMesh*>(node->GetNodeAttribute())->GetLayer(0)->GetMaterials();
  }
  static std::string Bind(const std::string& symbol, const std::string& target) {
    return "<bind_material><technique_common><instance_material symbol=\"" + symbol + "\" target=\"" + target +
           "\"/></technique_common></bind_material>";
  }

  KZylMesh* library = nullptr;
  KZylSurfacePhong* material = nullptr;
  KZylNode* node = nullptr;
};

TEST_F(MaterialBindingTest, TheBoundMaterialReplacesThePlaceholderOfItsSlot) {
  KZylSurfaceMaterial* placeholder = library->GetLayer(0)->GetMaterials()->GetDirectArray()[1];
  ASSERT_TRUE(Import(Bind("symB", "#red")));
  KZylLayerElementMaterial* materials = NodeMaterials();
  ASSERT_EQ(materials->GetDirectArray().GetCount(), 2);
  EXPECT_EQ(materials->GetDirectArray()[0]->GetName(), "symA");
  EXPECT_EQ(materials->GetDirectArray()[1], material);
  EXPECT_EQ(materials->GetReferenceMode(), KZylLayerElement::eIndexToDirect);
  EXPECT_TRUE(reader->GetMaterialSet().Contains(placeholder));
  // The library mesh keeps its placeholders.
  EXPECT_EQ(library->GetLayer(0)->GetMaterials()->GetDirectArray()[1], placeholder);
}

TEST_F(MaterialBindingTest, RebindingTheSameSlotKeepsDocumentMaterialsOutOfTheSet) {
  ASSERT_TRUE(Import(Bind("symA", "#red") + Bind("red", "#red")));
  EXPECT_EQ(NodeMaterials()->GetDirectArray()[0], material);
  EXPECT_FALSE(reader->GetMaterialSet().Contains(material));
  EXPECT_EQ(reader->GetMaterialSet().GetCount(), 1);
}

TEST_F(MaterialBindingTest, AnUnknownSymbolWarnsAndGoesOn) {
  ASSERT_TRUE(Import(Bind("nope", "#red") + Bind("symA", "#red")));
  EXPECT_EQ(CountMessage("Warning: material of symbol nope not found for node n"), 1);
  EXPECT_EQ(NodeMaterials()->GetDirectArray()[0], material);
}

TEST_F(MaterialBindingTest, AnUnknownMaterialFailsWithTheDigitOne) {
  EXPECT_FALSE(Import(Bind("symA", "#blue")));
  EXPECT_EQ(CountMessage("ERROR: Library not found: #blue1"), 1);
}

TEST_F(MaterialBindingTest, ABindMaterialWithoutCommonTechniqueFails) {
  EXPECT_FALSE(Import("<bind_material><technique profile=\"X\"/></bind_material>"));
  EXPECT_EQ(CountMessage("ERROR: no <technique_common> node found for bind_material node "), 1);
}

TEST_F(MaterialBindingTest, NoBindingForAttributesOtherThanMeshes) {
  MutableState(*reader).nodeAttributes.Add("light", KZylLight::Create(&manager, ""));
  node = KZylNode::Create(&manager, "n");
  ASSERT_TRUE(reader->ImportNode(Parse("<node><instance_light url=\"#light\"><bind_material/></instance_light></node>"),
                                 *node, "n"));
  EXPECT_TRUE(Messages().empty());
}

TEST_F(MaterialBindingTest, TwoNodesInstancingOneGeometryBindIndependently) {
  ASSERT_TRUE(Import(Bind("symA", "#red")));
  KZylLayerElementMaterial* first = NodeMaterials();
  ASSERT_TRUE(Import(""));
  KZylLayerElementMaterial* second = NodeMaterials();
  EXPECT_EQ(first->GetDirectArray()[0], material);
  EXPECT_EQ(second->GetDirectArray()[0]->GetName(), "symA");
  EXPECT_NE(second->GetDirectArray()[0], material);
}

}  // namespace
