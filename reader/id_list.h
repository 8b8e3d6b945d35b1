#pragma once
// IdList: the reader's registries, from a COLLADA id to what was made for it. Lookups answer
// the first entry of an id, in constant expected time. Entries may be null (an ambient light is
// registered without an object). Items given to the list are kept by it and freed with it.

#include <deque>
#include <memory>
#include <unordered_map>

#include "kit/kstringlist.h"

namespace zylsdk {

template <class T>
class IdList {
 public:
  // A list that can also tell whether an item is in it (HasItem), at the cost of counting its
  // items.
  enum ETracking { kTrackItems };
  IdList() = default;
  explicit IdList(ETracking) : mTrackItems(true) {}

  void Add(const KString& id, T* item) {
    mEntries.Add(id, reinterpret_cast<intptr_t>(item));
    if (mTrackItems) ++mItemCounts[item];
  }
  // Keeps `item` and lists it under `id`; returns the kept item.
  T* Add(const KString& id, T&& item) {
    T* kept = Keep(std::move(item));
    Add(id, kept);
    return kept;
  }
  T* Add(const KString& id, std::unique_ptr<T> item) { return Add(id, std::move(*item)); }
  // Keeps an item without listing it (for items listed several times).
  T* Keep(T&& item) {
    mOwned.push_back(std::move(item));
    return &mOwned.back();
  }

  // Position of the first entry of `id`, or -1.
  int Find(const KString& id) const { return mEntries.Find(id); }
  bool Contains(const KString& id) const { return Find(id) >= 0; }
  // The item of the first entry of `id`; null when there is none (or the entry is null).
  T* Lookup(const KString& id) const { return Get(Find(id)); }

  int GetCount() const { return mEntries.GetCount(); }
  KString GetId(int index) const { return mEntries.GetStringAt(index); }
  T* Get(int index) const { return reinterpret_cast<T*>(mEntries.GetReferenceAt(index)); }
  // True when some entry holds `item`; only for lists made with kTrackItems.
  bool HasItem(const T* item) const { return mItemCounts.count(item) != 0; }
  void RemoveAt(int index) {
    if (index < 0 || index >= GetCount()) return;
    if (mTrackItems) {
      auto count = mItemCounts.find(Get(index));
      if (count != mItemCounts.end() && --count->second == 0) mItemCounts.erase(count);
    }
    mEntries.RemoveAt(index);
  }

 private:
  KStringList mEntries;
  bool mTrackItems = false;
  std::unordered_map<const T*, int> mItemCounts;
  std::deque<T> mOwned;  // a deque keeps its items in place as it grows
};

}  // namespace zylsdk
