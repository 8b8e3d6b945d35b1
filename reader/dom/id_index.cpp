#include "reader/dom/id_index.h"

#include <functional>

#include "kit/half_full_table.h"
#include "kit/memory_advice.h"
#include "reader/dom/element.h"

namespace zylsdk {
namespace {

constexpr size_t kFirstSlots = 64;

uint32_t HashOf(std::string_view id) { return static_cast<uint32_t>(std::hash<std::string_view>()(id)); }

std::string_view IdOf(const DaeElement& element) {
  const char* id = element.FindAttribute("id");
  return id ? std::string_view(id) : std::string_view();
}

}  // namespace

size_t IdIndex::SlotOf(std::string_view id, uint32_t hash) const {
  const size_t mask = mSlots.size() - 1;
  for (size_t at = hash & mask;; at = (at + 1) & mask) {
    const Slot& slot = mSlots[at];
    if (!slot.element || (slot.hash == hash && IdOf(*slot.element) == id)) return at;
  }
}

void IdIndex::Resize(size_t slots) {
  // Every slot of the new table is written at once (empty).
  std::vector<Slot> old;
  ResizeToFill(old, slots);
  old.swap(mSlots);
  const size_t mask = mSlots.size() - 1;
  for (const Slot& slot : old) {
    if (!slot.element) continue;
    size_t at = slot.hash & mask;
    while (mSlots[at].element) at = (at + 1) & mask;
    mSlots[at] = slot;
  }
}

void IdIndex::Insert(const Added& added) {
  Slot& slot = mSlots[SlotOf(std::string_view(added.id, added.idLength), added.hash)];
  if (!slot.element) {
    slot = {added.element, added.hash, false};
    ++mUsed;
    return;
  }
  std::vector<DaeElement*>& all = mSeveral[slot.element];
  if (!slot.several) all.push_back(slot.element);
  slot.several = true;
  all.push_back(added.element);
}

void IdIndex::Add(std::string_view id, DaeElement* element) {
  // An id is an attribute value, which libxml2 keeps under 1 GB even for huge documents.
  mAdded.push_back({element, id.data(), static_cast<uint32_t>(id.size()), HashOf(id)});
}

void IdIndex::Build() {
  if (mAdded.empty()) return;
  const size_t slots = HalfFullSlots(mUsed + mAdded.size(), mSlots.empty() ? kFirstSlots : mSlots.size());
  if (slots != mSlots.size()) Resize(slots);
  const size_t mask = mSlots.size() - 1;
  constexpr size_t kAhead = 8;
  for (size_t i = 0; i < mAdded.size(); ++i) {
#if defined(__GNUC__)
    if (i + kAhead < mAdded.size()) __builtin_prefetch(&mSlots[mAdded[i + kAhead].hash & mask], 1);
#endif
    Insert(mAdded[i]);
  }
  std::vector<Added>().swap(mAdded);
}

DaeElementSpan IdIndex::Find(std::string_view id) const {
  if (mSlots.empty()) return {};
  const Slot& slot = mSlots[SlotOf(id, HashOf(id))];
  if (!slot.element) return {};
  if (!slot.several) return {&slot.element, 1};
  const std::vector<DaeElement*>& all = mSeveral.at(slot.element);
  return {all.data(), all.size()};
}

}  // namespace zylsdk
