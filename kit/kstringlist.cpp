#include "kit/kstringlist.h"

#include <functional>
#include <string_view>

#include "kit/half_full_table.h"

namespace zylsdk {
namespace {

size_t HashOf(std::string_view key) { return std::hash<std::string_view>()(key); }
uint32_t TagOf(size_t hash) { return static_cast<uint32_t>(hash >> 32) ^ static_cast<uint32_t>(hash); }

}  // namespace

KStringList::Entry KStringList::MakeEntry(const KString& key, intptr_t reference) {
  Entry entry{mKeyBytes.size(), key.Std().size(), reference, HashOf(key.Std())};
  mKeyBytes += key.Std();
  return entry;
}

int KStringList::Add(const KString& key, intptr_t reference) {
  mEntries.push_back(MakeEntry(key, reference));
  return GetCount() - 1;
}

int KStringList::InsertAt(int index, const KString& key, intptr_t reference) {
  if (index >= GetCount()) return Add(key, reference);
  if (index < 0) index = 0;
  mEntries.insert(mEntries.begin() + index, MakeEntry(key, reference));
  mIndexed = 0;  // positions moved: index everything again
  return index;
}

void KStringList::RemoveAt(int index) {
  if (index < 0 || index >= GetCount()) return;
  mEntries.erase(mEntries.begin() + index);
  mIndexed = 0;  // positions moved: index everything again
}

void KStringList::Clear() {
  mEntries.clear();
  mKeyBytes.clear();
  mSlots.clear();
  mIndexed = 0;
}

int KStringList::Find(const KString& key) const {
  CatchUp();
  if (mSlots.empty()) return -1;
  const Slot& slot = mSlots[SlotOf(key.Std(), HashOf(key.Std()))];
  return slot.position == 0 ? -1 : static_cast<int>(slot.position - 1);
}

KString KStringList::GetStringAt(int index) const {
  if (index < 0 || index >= GetCount()) return KString();
  std::string_view key = KeyOf(mEntries[static_cast<size_t>(index)]);
  return KString(key.data(), key.size());
}

intptr_t KStringList::GetReferenceAt(int index) const {
  if (index < 0 || index >= GetCount()) return 0;
  return mEntries[static_cast<size_t>(index)].reference;
}

void KStringList::SetReferenceAt(int index, intptr_t reference) {
  if (index < 0 || index >= GetCount()) return;
  mEntries[static_cast<size_t>(index)].reference = reference;
}

size_t KStringList::SlotOf(std::string_view key, size_t hash) const {
  const size_t mask = mSlots.size() - 1;
  const uint32_t tag = TagOf(hash);
  for (size_t slot = hash & mask;; slot = (slot + 1) & mask) {
    const Slot& occupant = mSlots[slot];
    if (occupant.position == 0) return slot;
    if (occupant.hashTag != tag) continue;
    const Entry& entry = mEntries[occupant.position - 1];
    if (entry.hash == hash && KeyOf(entry) == key) return slot;
  }
}

void KStringList::CatchUp() const {
  if (mIndexed == mEntries.size()) return;
  if (mIndexed == 0 || 2 * mEntries.size() > mSlots.size()) {
    // A table at most half full for every entry; a new table takes every entry again.
    mSlots.assign(HalfFullSlots(mEntries.size(), 16), Slot{0, 0});
    mIndexed = 0;
  }
  for (; mIndexed < mEntries.size(); ++mIndexed) IndexEntry(mIndexed);
}

void KStringList::IndexEntry(size_t position) const {
  const Entry& entry = mEntries[position];
  Slot& slot = mSlots[SlotOf(KeyOf(entry), entry.hash)];
  if (slot.position == 0) slot = {static_cast<uint32_t>(position + 1), TagOf(entry.hash)};
}

}  // namespace zylsdk
