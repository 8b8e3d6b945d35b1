#pragma once
// The material slots of a mesh (layer 0's material element) by the name of the material each
// holds, so that binding thousands of materials finds each slot without a walk through all of
// them.

#include <set>
#include <unordered_map>

#include "kit/geometry.h"
#include "kit/material.h"

namespace zylsdk {

class MaterialSlotIndex {
 public:
  // Indexes the slots as they are now; a mesh without that element has none.
  explicit MaterialSlotIndex(const KZylMesh& mesh);

  // The slots holding a material named `name`, in order; null when none does.
  const std::set<int>* SlotsNamed(const KString& name) const;
  // Records that `slot` now holds `after` instead of `before` (either may be null).
  void Rebind(int slot, const KZylSurfaceMaterial* before, const KZylSurfaceMaterial* after);

 private:
  std::unordered_map<KString, std::set<int>> mSlots;
};

}  // namespace zylsdk
