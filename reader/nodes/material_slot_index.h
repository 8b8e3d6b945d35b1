#pragma once
// The material slots of a mesh (layer 0's material element) by the name of the material each
// holds, so that binding thousands of materials finds each slot without a walk through all of
// them.

#include <cstddef>
#include <cstdint>
#include <set>
#include <unordered_map>
#include <vector>

#include "kit/geometry.h"
#include "kit/material.h"

namespace zylsdk {

class MaterialSlotIndex {
 public:
  // Indexes the slots as they are now; a mesh without that element has none. The index refers
  // to the names of the materials it is given (here and in Rebind): those materials must keep
  // their names while it is in use.
  explicit MaterialSlotIndex(const KZylMesh& mesh);

  // The first slot holding a material named `name`; -1 when none does.
  int FirstSlotNamed(const KString& name) const;
  // Every slot holding a material named `name`, in order.
  std::vector<int> SlotsNamed(const KString& name) const;
  // Records that `slot` now holds `after` instead of `before` (either may be null).
  void Rebind(int slot, const KZylSurfaceMaterial* before, const KZylSurfaceMaterial* after);

 private:
  // One name, in an open-addressed table: the name itself stays with a material that holds it,
  // so that a mesh of thousands of slots costs a few bytes per slot. A name is nearly always
  // held by a single slot; the slots after the first of a name shared by several are kept apart.
  struct Name {
    const KString* text = nullptr;  // null for a free entry
    uint32_t hash = 0;
    int first = -1;  // -1 once no slot holds the name (the entry stays)
  };

  // The entry of `name`, or the free entry where it would go.
  size_t EntryOf(const KString& name, uint32_t hash) const;
  // The entry of the name of `material`, made when missing.
  Name& Enter(const KZylSurfaceMaterial& material);
  void Insert(Name& name, int slot);
  void Erase(Name& name, int slot);
  void Grow();

  std::vector<Name> mNames;  // a power of two of them, at most half in use
  size_t mUsed = 0;
  // The slots after the first, by the text of their entry.
  std::unordered_map<const KString*, std::set<int>> mOthers;
};

}  // namespace zylsdk
