#include "reader/dom/id_index.h"

#include <functional>

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

void IdIndex::Grow() {
  // Every slot of the new table is written at once (empty).
  std::vector<Slot> old;
  ResizeToFill(old, mSlots.empty() ? kFirstSlots : 2 * mSlots.size());
  old.swap(mSlots);
  const size_t mask = mSlots.size() - 1;
  for (const Slot& slot : old) {
    if (!slot.element) continue;
    size_t at = slot.hash & mask;
    while (mSlots[at].element) at = (at + 1) & mask;
    mSlots[at] = slot;
  }
}

void IdIndex::Add(std::string_view id, DaeElement* element) {
  if (2 * (mUsed + 1) > mSlots.size()) Grow();
  const uint32_t hash = HashOf(id);
  Slot& slot = mSlots[SlotOf(id, hash)];
  if (!slot.element) {
    slot = {element, hash, false};
    ++mUsed;
    return;
  }
  std::vector<DaeElement*>& all = mSeveral[slot.element];
  if (!slot.several) all.push_back(slot.element);
  slot.several = true;
  all.push_back(element);
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
