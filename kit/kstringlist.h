#pragma once
// KStringList: an ordered list of entries, each a string key with one pointer-sized reference.
//
// Lookups answer "the first entry whose key equals K" exactly as a front-to-back scan would,
// in constant expected time: beside the list stands an open-addressing index from each key to
// the position of its first entry. The index takes in new entries at the first Find after they
// were added, so that a list nobody searches never pays for it. Add and Find cost constant
// (amortised) time; RemoveAt and InsertAt before the end renumber the positions, which makes
// the next Find index the whole list again. The keys are kept together in one buffer, so that a
// long list costs few allocations.

#include <cstdint>
#include <string>
#include <string_view>
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
  KString GetStringAt(int index) const;
  intptr_t GetReferenceAt(int index) const;
  void SetReferenceAt(int index, intptr_t reference);

 private:
  struct Entry {
    size_t keyOffset;  // in mKeyBytes
    size_t keyLength;
    intptr_t reference;
    size_t hash;
  };

  std::string_view KeyOf(const Entry& entry) const { return {mKeyBytes.data() + entry.keyOffset, entry.keyLength}; }
  Entry MakeEntry(const KString& key, intptr_t reference);
  // Slot of `key` in the index: the slot holding its first entry, or the empty slot where it
  // would go.
  size_t SlotOf(std::string_view key, size_t hash) const;
  // Indexes the entries added since the last lookup.
  void CatchUp() const;
  // Indexes the entry at `position` unless its key already has a first entry.
  void IndexEntry(size_t position) const;

  std::vector<Entry> mEntries;
  // Every key added, one after the other; removed entries leave their bytes until Clear.
  std::string mKeyBytes;
  // Open addressing with linear probing over a power-of-two table, at most half full. A slot
  // holds the position of a key's first entry plus one (0 is empty) and the upper bits of the
  // key's hash, so that most probes that miss never touch the entries.
  struct Slot {
    uint32_t position;
    uint32_t hashTag;
  };
  mutable std::vector<Slot> mSlots;
  mutable size_t mIndexed = 0;  // entries [0, mIndexed) are in the index
};

}  // namespace zylsdk
