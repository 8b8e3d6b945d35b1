#pragma once
// The material slots of a mesh (layer 0's material element) by the name of the material each
// holds, so that binding thousands of materials finds each slot without a walk through all of
// them.

#include <set>
#include <unordered_map>
#include <vector>

#include "kit/geometry.h"
#include "kit/material.h"

namespace zylsdk {

class MaterialSlotIndex {
 public:
  // Indexes the slots as they are now; a mesh without that element has none.
  explicit MaterialSlotIndex(const KZylMesh& mesh);

  // The first slot holding a material named `name`; -1 when none does.
  int FirstSlotNamed(const KString& name) const;
  // Every slot holding a material named `name`, in order.
  std::vector<int> SlotsNamed(const KString& name) const;
  // Records that `slot` now holds `after` instead of `before` (either may be null).
  void Rebind(int slot, const KZylSurfaceMaterial* before, const KZylSurfaceMaterial* after);

 private:
  // The slots of one name. A name is nearly always held by a single slot, which then needs no
  // tree of its own: the first slot is kept apart from the others.
  struct Slots {
    int first = -1;
    std::set<int> others;  // each after `first`

    void Insert(int slot);
    void Erase(int slot);
  };

  std::unordered_map<KString, Slots> mSlots;
};

}  // namespace zylsdk
