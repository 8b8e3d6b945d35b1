#pragma once
// KStringList: an ordered list of entries, each a string key with one pointer-sized reference.
//
// Lookups answer "the first entry whose key equals K" exactly as a front-to-back scan would,
// but in constant expected time: an index from each key to its entries stands beside the list.

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "kit/kstring.h"

namespace zylsdk {

class KStringList {
 public:
  int GetCount() const { return static_cast<int>(mEntries.size()); }

  // Appends an entry at the end and returns its position.
  int Add(const KString& key, intptr_t reference = 0);
  // Inserts an entry before `index` (clamped to 0..count) and returns its position.
  int InsertAt(int index, const KString& key, intptr_t reference = 0);
  // Removes the entry at `index`; out-of-range indices are ignored.
  void RemoveAt(int index);
  void Clear();

  // Position of the first entry whose key equals `key` (exact, case-sensitive), or -1.
  int Find(const KString& key) const;

  // Entry access; out-of-range indices give "" and 0.
  const KString& GetStringAt(int index) const;
  intptr_t GetReferenceAt(int index) const;
  void SetReferenceAt(int index, intptr_t reference);

 private:
  struct Entry {
    KString key;
    intptr_t reference;
    uint64_t sequence;  // increasing along the list; ties an index entry to its list entry
  };

  void Renumber();
  int PositionOfSequence(uint64_t sequence) const;

  std::vector<Entry> mEntries;
  // Key to the sequence numbers of its entries, smallest (front-most) first.
  std::unordered_map<KString, std::vector<uint64_t>> mIndex;
  uint64_t mNextSequence = 0;
};

}  // namespace zylsdk
