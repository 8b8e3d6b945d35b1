// Material binding: the geometry import leaves a placeholder material in each material slot of
// a mesh, named after the slot's symbol; `bind_material` of the instance element says which
// document material each symbol stands for. The complete reading also places the bound
// materials' textures on the mesh there.

#include <optional>
#include <unordered_map>
#include <vector>

#include "reader/dom/dom.h"
#include "reader/dom/numbers.h"
#include "reader/nodes/material_slot_index.h"
#include "reader/nodes/node_steps.h"

namespace zylsdk {
namespace {

// The UV set that `bind_vertex_input` binds to a texture's `texcoord`; 0 when none does.
int BoundUVSet(const DaeElement* instanceMaterial, const KString& texcoord) {
  for (DaeElement* input = firstChildElement(instanceMaterial); input; input = nextSiblingElement(input)) {
    if (!DAE_IsElement(input, "bind_vertex_input") || DAE_GetProperty(input, "semantic") != texcoord) continue;
    const KString set = DAE_GetProperty(input, "input_set");
    const char* cursor = set.Buffer();
    return strtoint(&cursor);
  }
  return 0;
}

// A material bound to a slot of the mesh, through one `instance_material`.
struct BoundMaterial {
  const DaeElement* instanceMaterial;
  KString materialId;
  int slot;
};

// The texture element of `use`'s channel on the layer of the UV set the texture uses (layers
// are numbered by UV set), or on layer 0 when that layer has no UVs; made when missing.
KZylLayerElementTexture* TextureElementFor(const TextureUse& use, const DaeElement* instanceMaterial, KZylMesh& mesh) {
  KZylLayer* layer = mesh.GetLayer(BoundUVSet(instanceMaterial, use.texcoord));
  if (!layer || !layer->GetUVs()) layer = mesh.GetLayer(0);
  if (!layer) return nullptr;
  if (!layer->GetTextures(use.layerKind))
    layer->SetTextures(use.layerKind, mesh.GetZylSdkManager()->CreateKZylLayerElementTexture(""));
  KZylLayerElementTexture* element = layer->GetTextures(use.layerKind);
  element->SetMappingMode(KZylLayerElement::eByPolygon);
  element->SetReferenceMode(KZylLayerElement::eIndexToDirect);
  const bool additive = use.texture->GetBlendMode() != KZylTexture::eNormal;
  element->SetBlendMode(additive ? KZylLayerElementTexture::eAdditive : KZylLayerElementTexture::eTranslucent);
  return element;
}

// The complete reading places the textures of the bound materials on the polygons of their
// slots: each texture once in its element, and one index per polygon.
void PlaceBoundTextures(const NodeImportContext& context, const std::vector<BoundMaterial>& bound, KZylMesh& mesh) {
  struct Placement {
    std::unordered_map<const KZylTexture*, int> positions;
    std::unordered_map<int, int> positionOfSlot;
  };
  std::unordered_map<KZylLayerElementTexture*, Placement> placements;
  for (const BoundMaterial& material : bound) {
    auto effect = context.state.materialEffects.find(material.materialId);
    if (effect == context.state.materialEffects.end()) continue;
    auto textures = context.state.effectTextures.find(effect->second);
    if (textures == context.state.effectTextures.end()) continue;
    for (const TextureUse& use : *textures->second) {
      KZylLayerElementTexture* element = TextureElementFor(use, material.instanceMaterial, mesh);
      if (!element) continue;
      Placement& placement = placements[element];
      auto known = placement.positions.find(use.texture);
      const int position = known != placement.positions.end() ? known->second : element->GetDirectArray().Add(use.texture);
      placement.positions.emplace(use.texture, position);
      placement.positionOfSlot[material.slot] = position;
    }
  }
  for (auto& [element, placement] : placements) {
    std::vector<int>& indices = element->GetIndexArray().Std();
    indices.assign(static_cast<size_t>(mesh.GetPolygonCount()), -1);
    for (int polygon = 0; polygon < mesh.GetPolygonCount(); ++polygon) {
      auto position = placement.positionOfSlot.find(mesh.GetPolygonMaterial(polygon));
      if (position != placement.positionOfSlot.end()) indices[static_cast<size_t>(polygon)] = position->second;
    }
  }
}

// Binds one `instance_material`: false after an error. The traditional reading binds the first
// slot that holds a material named by the symbol, as the slots are at that moment (a slot
// already bound goes by its new material's name); the complete reading binds every slot the
// symbol named before any binding (a mesh has one per primitive element that names it), so its
// index is never updated, and lists what it bound in `bound` to place the textures afterwards.
bool BindMaterial(const NodeImportContext& context, DaeElement* instanceMaterial, const KZylNode& node, KZylMesh& mesh,
                  MaterialSlotIndex& slotIndex, std::vector<BoundMaterial>& bound) {
  KZylReaderCollada& reader = context.reader;
  const bool complete = reader.IsComplete();
  const KString symbol = DAE_GetProperty(instanceMaterial, "symbol");
  const KString target = DAE_GetProperty(instanceMaterial, "target");
  std::vector<int> slots;
  if (complete) {
    slots = slotIndex.SlotsNamed(symbol);
  } else if (const int first = slotIndex.FirstSlotNamed(symbol); first >= 0) {
    slots.push_back(first);
  }
  if (slots.empty()) {
    reader.AddNotificationWarning("material of symbol " + symbol + " not found for node " + node.GetName());
    return true;
  }
  const int found = context.state.materials.Find(target.Mid(1));
  if (found < 0) {
    // The complete reading leaves the slot's placeholder material in place.
    if (complete) {
      reader.AddNotificationWarning("instance of a missing element not read: " + target);
      return true;
    }
    // The message ends in the digit 1, as it always has.
    reader.AddNotificationError("Library not found: " + target + 1);
    return false;
  }
  // The slot was found in layer 0's material element, so both exist.
  KZylLayer* layer = mesh.GetLayer(0);
  KZylLayerElementMaterial* element = layer ? layer->GetMaterials() : nullptr;
  if (!element) return true;
  element->SetReferenceMode(KZylLayerElement::eIndexToDirect);
  KArrayTemplate<KZylSurfaceMaterial*>& materials = element->GetDirectArray();
  for (const int slot : slots) {
    reader.AddToMaterialSet(materials[slot]);
    KZylSurfaceMaterial* const before = materials[slot];
    materials[slot] = context.state.materials.Get(found);
    if (complete) {
      bound.push_back({instanceMaterial, target.Mid(1), slot});
    } else {
      slotIndex.Rebind(slot, before, materials[slot]);
    }
  }
  return true;
}

}  // namespace

bool BindMaterials(const NodeImportContext& context, DaeElement* instance, const KZylNode& node, KZylMesh& mesh) {
  std::vector<BoundMaterial> bound;
  const bool complete = context.reader.IsComplete();
  // Made at the first binding: most instances bind nothing.
  std::optional<MaterialSlotIndex> slotIndex;
  for (DaeElement* binding = firstChildElement(instance); binding; binding = nextSiblingElement(binding)) {
    if (!DAE_IsElement(binding, "bind_material")) continue;
    DaeElement* technique = getTechniqueCommonNode(binding);
    if (!technique) {
      context.reader.AddNotificationError("no <technique_common> node found for bind_material node ");
      return false;
    }
    if (!slotIndex) slotIndex.emplace(mesh);
    for (DaeElement* child = firstChildElement(technique); child; child = nextSiblingElement(child))
      if (DAE_IsElement(child, "instance_material") && !BindMaterial(context, child, node, mesh, *slotIndex, bound))
        return false;
  }
  if (complete) PlaceBoundTextures(context, bound, mesh);
  return true;
}

}  // namespace zylsdk
