#pragma once
// IdList: the reader's registries, from a COLLADA id to what was made for it. Lookups answer
// the first entry of an id, in constant expected time. Entries may be null (an ambient light is
// registered without an object). Items added with an owner are freed with the list.

#include <memory>
#include <unordered_map>
#include <vector>

#include "kit/kstringlist.h"

namespace zylsdk {

template <class T>
class IdList {
 public:
  void Add(const KString& id, T* item) {
    mEntries.Add(id, reinterpret_cast<intptr_t>(item));
    ++mItemCounts[item];
  }
  // Takes ownership of `item` and lists it under `id`.
  T* Add(const KString& id, std::unique_ptr<T> item) {
    T* kept = Keep(std::move(item));
    Add(id, kept);
    return kept;
  }
  // Takes ownership of an item without listing it (for items listed several times).
  T* Keep(std::unique_ptr<T> item) {
    mOwned.push_back(std::move(item));
    return mOwned.back().get();
  }

  // Position of the first entry of `id`, or -1.
  int Find(const KString& id) const { return mEntries.Find(id); }
  bool Contains(const KString& id) const { return Find(id) >= 0; }
  // The item of the first entry of `id`; null when there is none (or the entry is null).
  T* Lookup(const KString& id) const { return Get(Find(id)); }

  int GetCount() const { return mEntries.GetCount(); }
  const KString& GetId(int index) const { return mEntries.GetStringAt(index); }
  T* Get(int index) const { return reinterpret_cast<T*>(mEntries.GetReferenceAt(index)); }
  // True when some entry holds `item`.
  bool HasItem(const T* item) const { return mItemCounts.count(item) != 0; }
  void RemoveAt(int index) {
    if (index < 0 || index >= GetCount()) return;
    auto count = mItemCounts.find(Get(index));
    if (count != mItemCounts.end() && --count->second == 0) mItemCounts.erase(count);
    mEntries.RemoveAt(index);
  }

  void Clear() {
    mEntries.Clear();
    mItemCounts.clear();
    mOwned.clear();
  }

 private:
  KStringList mEntries;
  std::unordered_map<const T*, int> mItemCounts;
  std::vector<std::unique_ptr<T>> mOwned;
};

}  // namespace zylsdk
