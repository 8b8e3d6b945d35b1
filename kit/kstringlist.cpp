#include "kit/kstringlist.h"

#include <algorithm>

namespace zylsdk {

int KStringList::Add(const KString& key, intptr_t reference) {
  uint64_t sequence = mNextSequence++;
  mEntries.push_back({key, reference, sequence});
  mIndex[key].push_back(sequence);
  return GetCount() - 1;
}

int KStringList::InsertAt(int index, const KString& key, intptr_t reference) {
  if (index >= GetCount()) return Add(key, reference);
  if (index < 0) index = 0;
  mEntries.insert(mEntries.begin() + index, {key, reference, 0});
  // An insertion inside the list changes the order of the sequence numbers: number them again.
  Renumber();
  return index;
}

void KStringList::RemoveAt(int index) {
  if (index < 0 || index >= GetCount()) return;
  const Entry& entry = mEntries[static_cast<size_t>(index)];
  auto found = mIndex.find(entry.key);
  if (found != mIndex.end()) {
    std::vector<uint64_t>& sequences = found->second;
    sequences.erase(std::lower_bound(sequences.begin(), sequences.end(), entry.sequence));
    if (sequences.empty()) mIndex.erase(found);
  }
  mEntries.erase(mEntries.begin() + index);
}

void KStringList::Clear() {
  mEntries.clear();
  mIndex.clear();
}

int KStringList::Find(const KString& key) const {
  auto found = mIndex.find(key);
  if (found == mIndex.end() || found->second.empty()) return -1;
  return PositionOfSequence(found->second.front());
}

const KString& KStringList::GetStringAt(int index) const {
  static const KString empty;
  if (index < 0 || index >= GetCount()) return empty;
  return mEntries[static_cast<size_t>(index)].key;
}

intptr_t KStringList::GetReferenceAt(int index) const {
  if (index < 0 || index >= GetCount()) return 0;
  return mEntries[static_cast<size_t>(index)].reference;
}

void KStringList::SetReferenceAt(int index, intptr_t reference) {
  if (index < 0 || index >= GetCount()) return;
  mEntries[static_cast<size_t>(index)].reference = reference;
}

void KStringList::Renumber() {
  mIndex.clear();
  mNextSequence = 0;
  for (Entry& entry : mEntries) {
    entry.sequence = mNextSequence++;
    mIndex[entry.key].push_back(entry.sequence);
  }
}

int KStringList::PositionOfSequence(uint64_t sequence) const {
  auto at = std::lower_bound(mEntries.begin(), mEntries.end(), sequence,
                             [](const Entry& entry, uint64_t s) { return entry.sequence < s; });
  return static_cast<int>(at - mEntries.begin());
}

}  // namespace zylsdk
