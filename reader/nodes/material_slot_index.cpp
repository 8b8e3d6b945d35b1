#include "reader/nodes/material_slot_index.h"

#include <algorithm>
#include <functional>
#include <string_view>

namespace zylsdk {
namespace {

uint32_t HashOf(const KString& name) { return static_cast<uint32_t>(std::hash<std::string_view>()(name.Std())); }

}  // namespace

MaterialSlotIndex::MaterialSlotIndex(const KZylMesh& mesh) {
  const KZylLayer* layer = mesh.GetLayer(0);
  const KZylLayerElementMaterial* element = layer ? layer->GetMaterials() : nullptr;
  if (!element) return;
  const KArrayTemplate<KZylSurfaceMaterial*>& materials = element->GetDirectArray();
  // Room for every slot's name and, as the traditional reading rebinds each slot, for as many
  // new names, without growing on the way.
  size_t size = 16;
  while (size < 4 * static_cast<size_t>(materials.GetCount())) size *= 2;
  mNames.resize(size);
  for (int i = 0; i < materials.GetCount(); ++i)
    if (materials[i]) Insert(Enter(*materials[i]), i);
}

size_t MaterialSlotIndex::EntryOf(const KString& name, uint32_t hash) const {
  const size_t mask = mNames.size() - 1;
  size_t at = hash & mask;
  while (mNames[at].text && (mNames[at].hash != hash || *mNames[at].text != name)) at = (at + 1) & mask;
  return at;
}

MaterialSlotIndex::Name& MaterialSlotIndex::Enter(const KZylSurfaceMaterial& material) {
  if (mNames.empty() || 2 * (mUsed + 1) > mNames.size()) Grow();
  const KString& text = material.GetName();
  const uint32_t hash = HashOf(text);
  Name& name = mNames[EntryOf(text, hash)];
  if (!name.text) {
    name.text = &text;
    name.hash = hash;
    ++mUsed;
  }
  return name;
}

void MaterialSlotIndex::Grow() {
  std::vector<Name> old(std::max<size_t>(16, 2 * mNames.size()));
  old.swap(mNames);
  for (const Name& name : old)
    if (name.text) mNames[EntryOf(*name.text, name.hash)] = name;
}

void MaterialSlotIndex::Insert(Name& name, int slot) {
  if (name.first < 0) {
    name.first = slot;
  } else if (slot < name.first) {
    mOthers[name.text].insert(name.first);
    name.first = slot;
  } else if (slot != name.first) {
    mOthers[name.text].insert(slot);
  }
}

void MaterialSlotIndex::Erase(Name& name, int slot) {
  auto others = mOthers.find(name.text);
  if (slot != name.first) {
    if (others != mOthers.end()) others->second.erase(slot);
  } else if (others == mOthers.end() || others->second.empty()) {
    name.first = -1;
  } else {
    name.first = *others->second.begin();
    others->second.erase(others->second.begin());
  }
}

int MaterialSlotIndex::FirstSlotNamed(const KString& name) const {
  if (mNames.empty()) return -1;
  return mNames[EntryOf(name, HashOf(name))].first;
}

std::vector<int> MaterialSlotIndex::SlotsNamed(const KString& name) const {
  std::vector<int> slots;
  if (mNames.empty()) return slots;
  const Name& entry = mNames[EntryOf(name, HashOf(name))];
  if (entry.first < 0) return slots;
  slots.push_back(entry.first);
  auto others = mOthers.find(entry.text);
  if (others != mOthers.end()) slots.insert(slots.end(), others->second.begin(), others->second.end());
  return slots;
}

void MaterialSlotIndex::Rebind(int slot, const KZylSurfaceMaterial* before, const KZylSurfaceMaterial* after) {
  if (before && !mNames.empty()) {
    Name& name = mNames[EntryOf(before->GetName(), HashOf(before->GetName()))];
    if (name.text) Erase(name, slot);
  }
  if (after) Insert(Enter(*after), slot);
}

}  // namespace zylsdk
