#include "reader/nodes/material_slot_index.h"

namespace zylsdk {

MaterialSlotIndex::MaterialSlotIndex(const KZylMesh& mesh) {
  const KZylLayer* layer = mesh.GetLayer(0);
  const KZylLayerElementMaterial* element = layer ? layer->GetMaterials() : nullptr;
  if (!element) return;
  const KArrayTemplate<KZylSurfaceMaterial*>& materials = element->GetDirectArray();
  for (int i = 0; i < materials.GetCount(); ++i)
    if (materials[i]) mSlots[materials[i]->GetName()].insert(i);
}

const std::set<int>* MaterialSlotIndex::SlotsNamed(const KString& name) const {
  auto found = mSlots.find(name);
  return found != mSlots.end() && !found->second.empty() ? &found->second : nullptr;
}

void MaterialSlotIndex::Rebind(int slot, const KZylSurfaceMaterial* before, const KZylSurfaceMaterial* after) {
  if (before) {
    auto found = mSlots.find(before->GetName());
    if (found != mSlots.end()) found->second.erase(slot);
  }
  if (after) mSlots[after->GetName()].insert(slot);
}

}  // namespace zylsdk
