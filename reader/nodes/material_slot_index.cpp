#include "reader/nodes/material_slot_index.h"

namespace zylsdk {

void MaterialSlotIndex::Slots::Insert(int slot) {
  if (first < 0) {
    first = slot;
  } else if (slot < first) {
    others.insert(first);
    first = slot;
  } else if (slot != first) {
    others.insert(slot);
  }
}

void MaterialSlotIndex::Slots::Erase(int slot) {
  if (slot != first) {
    others.erase(slot);
  } else if (others.empty()) {
    first = -1;
  } else {
    first = *others.begin();
    others.erase(others.begin());
  }
}

MaterialSlotIndex::MaterialSlotIndex(const KZylMesh& mesh) {
  const KZylLayer* layer = mesh.GetLayer(0);
  const KZylLayerElementMaterial* element = layer ? layer->GetMaterials() : nullptr;
  if (!element) return;
  const KArrayTemplate<KZylSurfaceMaterial*>& materials = element->GetDirectArray();
  mSlots.reserve(static_cast<size_t>(materials.GetCount()));
  for (int i = 0; i < materials.GetCount(); ++i)
    if (materials[i]) mSlots[materials[i]->GetName()].Insert(i);
}

int MaterialSlotIndex::FirstSlotNamed(const KString& name) const {
  auto found = mSlots.find(name);
  return found != mSlots.end() ? found->second.first : -1;
}

std::vector<int> MaterialSlotIndex::SlotsNamed(const KString& name) const {
  std::vector<int> slots;
  auto found = mSlots.find(name);
  if (found == mSlots.end() || found->second.first < 0) return slots;
  slots.push_back(found->second.first);
  slots.insert(slots.end(), found->second.others.begin(), found->second.others.end());
  return slots;
}

void MaterialSlotIndex::Rebind(int slot, const KZylSurfaceMaterial* before, const KZylSurfaceMaterial* after) {
  if (before) {
    auto found = mSlots.find(before->GetName());
    if (found != mSlots.end()) found->second.Erase(slot);
  }
  if (after) mSlots[after->GetName()].Insert(slot);
}

}  // namespace zylsdk
