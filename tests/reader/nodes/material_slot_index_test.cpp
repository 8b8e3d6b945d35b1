// The index of a mesh's material slots by name, and binding through it: the traditional
// reading binds the first slot named by the symbol as the slots are at that moment, so a slot
// already bound answers to its new material's name, among many slots.

#include "reader/nodes/material_slot_index.h"
#include "tests/reader/nodes/library_objects.h"
#include "tests/reader/nodes/scene_documents.h"
#include "tests/support/reader_fixture.h"

namespace {

using namespace zylsdk;
using zyltest::MutableState;

std::vector<int> Slots(const MaterialSlotIndex& index, const char* name) { return index.SlotsNamed(name); }

TEST(MaterialSlotIndexTest, SlotsByNameFollowRebinding) {
  KZylSdkManager manager;
  KZylMesh* mesh = zyltest::MakeLibraryMesh(manager, {"a", "b", "a", "c"});
  MaterialSlotIndex index(*mesh);
  EXPECT_EQ(Slots(index, "a"), (std::vector<int>{0, 2}));
  EXPECT_EQ(Slots(index, "c"), (std::vector<int>{3}));
  EXPECT_EQ(Slots(index, "d"), std::vector<int>());
  EXPECT_EQ(index.FirstSlotNamed("a"), 0);
  EXPECT_EQ(index.FirstSlotNamed("d"), -1);

  KZylSurfaceMaterial* before = mesh->GetLayer(0)->GetMaterials()->GetDirectArray()[0];
  KZylSurfacePhong* after = KZylSurfacePhong::Create(&manager, "c");
  index.Rebind(0, before, after);
  EXPECT_EQ(Slots(index, "a"), (std::vector<int>{2}));
  EXPECT_EQ(Slots(index, "c"), (std::vector<int>{0, 3}));
  EXPECT_EQ(index.FirstSlotNamed("a"), 2);
  index.Rebind(2, before, nullptr);
  EXPECT_EQ(Slots(index, "a"), std::vector<int>());
  EXPECT_EQ(index.FirstSlotNamed("a"), -1);
}

// Slots of one name come back in order whichever order they arrive and leave in.
TEST(MaterialSlotIndexTest, SlotsOfOneNameStayInOrder) {
  KZylSdkManager manager;
  KZylMesh* mesh = zyltest::MakeLibraryMesh(manager, {"a", "b", "a", "b", "a"});
  MaterialSlotIndex index(*mesh);
  const KArrayTemplate<KZylSurfaceMaterial*>& materials = mesh->GetLayer(0)->GetMaterials()->GetDirectArray();
  KZylSurfaceMaterial* const a = materials[0];
  KZylSurfaceMaterial* const b = materials[1];
  index.Rebind(3, b, a);
  EXPECT_EQ(Slots(index, "a"), (std::vector<int>{0, 2, 3, 4}));
  index.Rebind(0, a, b);
  EXPECT_EQ(Slots(index, "a"), (std::vector<int>{2, 3, 4}));
  EXPECT_EQ(index.FirstSlotNamed("a"), 2);
  EXPECT_EQ(Slots(index, "b"), (std::vector<int>{0, 1}));
  index.Rebind(3, a, b);
  index.Rebind(2, a, b);
  EXPECT_EQ(Slots(index, "a"), (std::vector<int>{4}));
  EXPECT_EQ(Slots(index, "b"), (std::vector<int>{0, 1, 2, 3}));
  EXPECT_EQ(index.FirstSlotNamed("b"), 0);
}

// Each binding may bring a name the index has not seen: the index grows past the room it
// started with and still answers every name, shared or not.
TEST(MaterialSlotIndexTest, NamesBroughtByRebindingOutgrowItsFirstRoom) {
  KZylSdkManager manager;
  KZylMesh* mesh = zyltest::MakeLibraryMesh(manager, {"a", "a", "b"});
  MaterialSlotIndex index(*mesh);
  const KZylSurfaceMaterial* held = mesh->GetLayer(0)->GetMaterials()->GetDirectArray()[1];
  for (int i = 0; i < 200; ++i) {
    const KZylSurfaceMaterial* next = KZylSurfacePhong::Create(&manager, ("m" + std::to_string(i)).c_str());
    index.Rebind(1, held, next);
    held = next;
  }
  EXPECT_EQ(Slots(index, "a"), (std::vector<int>{0}));
  EXPECT_EQ(Slots(index, "b"), (std::vector<int>{2}));
  EXPECT_EQ(Slots(index, "m199"), (std::vector<int>{1}));
  EXPECT_EQ(index.FirstSlotNamed("m100"), -1);
  index.Rebind(2, mesh->GetLayer(0)->GetMaterials()->GetDirectArray()[2], held);
  index.Rebind(0, mesh->GetLayer(0)->GetMaterials()->GetDirectArray()[0], held);
  EXPECT_EQ(Slots(index, "m199"), (std::vector<int>{0, 1, 2}));
  EXPECT_EQ(Slots(index, "a"), std::vector<int>());
  EXPECT_EQ(index.FirstSlotNamed("b"), -1);
}

TEST(MaterialSlotIndexTest, AMeshWithoutMaterialsHasNoSlots) {
  KZylSdkManager manager;
  KZylMesh* mesh = KZylMesh::Create(&manager, "");
  EXPECT_EQ(MaterialSlotIndex(*mesh).SlotsNamed(""), std::vector<int>());
  EXPECT_EQ(MaterialSlotIndex(*mesh).FirstSlotNamed(""), -1);
}

class ManySlotsBindingTest : public zyltest::ReaderTest {
 protected:
  static constexpr int kSlots = 40;

  void SetUp() override {
    std::vector<std::string> symbols;
    for (int i = 0; i < kSlots; ++i) symbols.push_back("s" + std::to_string(i));
    symbols.push_back("red");
    MutableState(*reader).nodeAttributes.Add("geo", static_cast<KZylNodeAttribute*>(zyltest::MakeLibraryMesh(manager, symbols)));
    red = KZylSurfacePhong::Create(&manager, "red");
    blue = KZylSurfacePhong::Create(&manager, "blue");
    MutableState(*reader).materials.Add("red", static_cast<KZylSurfaceMaterial*>(red));
    MutableState(*reader).materials.Add("blue", static_cast<KZylSurfaceMaterial*>(blue));
  }
  const KArrayTemplate<KZylSurfaceMaterial*>& Import(const std::string& instances) {
    node = KZylNode::Create(&manager, "n");
    EXPECT_TRUE(reader->ImportNode(Parse("<node id=\"n\"><instance_geometry url=\"#geo\"><bind_material><technique_common>" +
                                         instances + "</technique_common></bind_material></instance_geometry></node>"),
                                   *node, "n"));
    return static_cast<KZylMesh*>(node->GetNodeAttribute())->GetLayer(0)->GetMaterials()->GetDirectArray();
  }
  static std::string Bind(const std::string& symbol, const std::string& target) {
    return "<instance_material symbol=\"" + symbol + "\" target=\"#" + target + "\"/>";
  }

  KZylSurfacePhong* red = nullptr;
  KZylSurfacePhong* blue = nullptr;
  KZylNode* node = nullptr;
};

TEST_F(ManySlotsBindingTest, ABoundSlotAnswersToItsNewName) {
  const KArrayTemplate<KZylSurfaceMaterial*>& slots = Import(Bind("s7", "red") + Bind("red", "blue") + Bind("red", "blue"));
  // Slot 7 now holds "red", before the placeholder "red" of slot 40: it is rebound first.
  EXPECT_EQ(slots[7], blue);
  EXPECT_EQ(slots[kSlots], blue);
  for (int i = 0; i < kSlots; ++i) {
    if (i == 7) continue;
    EXPECT_EQ(slots[i]->GetName(), "s" + std::to_string(i));
  }
  EXPECT_EQ(CountMessage("Warning: material of symbol red not found for node n"), 0);
}

TEST_F(ManySlotsBindingTest, EverySymbolFindsItsSlot) {
  std::string instances;
  for (int i = kSlots - 1; i >= 0; --i) instances += Bind("s" + std::to_string(i), i % 2 ? "red" : "blue");
  const KArrayTemplate<KZylSurfaceMaterial*>& slots = Import(instances);
  for (int i = 0; i < kSlots; ++i) EXPECT_EQ(slots[i], i % 2 ? red : blue) << i;
  EXPECT_EQ(slots[kSlots]->GetName(), "red");
  EXPECT_NE(slots[kSlots], red);
}

}  // namespace
