#pragma once
// The kit's containers: KArrayTemplate (a growable array), KBaseArray (an untyped array of
// fixed-size items) and KSet2 (a set that keeps insertion order).

#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <unordered_map>
#include <vector>

#include "kit/memory_advice.h"

namespace zylsdk {

// A growable array with value semantics. Copies share their storage until one of them is
// changed (copy on write), so that copying a large array costs nothing until it is written.
// A reference or pointer into an array stays valid only until the array is copied or changed.
//
// Indexed access with operator[] expects a valid index; GetAt is the bounded read: outside the
// array it gives a default-constructed value.
template <class T>
class KArrayTemplate {
 public:
  KArrayTemplate() = default;
  KArrayTemplate(std::initializer_list<T> items) : mItems(std::make_shared<Storage>(items)) {}

  int GetCount() const { return static_cast<int>(Read().size()); }
  bool IsEmpty() const { return Read().empty(); }

  int Add(const T& item) { Write().push_back(item); return GetCount() - 1; }
  int Add(T&& item) { Write().push_back(std::move(item)); return GetCount() - 1; }
  // Inserts before `index` (clamped to 0..count) and returns the position.
  int InsertAt(int index, const T& item) {
    Storage& items = Write();
    size_t at = index < 0 ? 0 : (static_cast<size_t>(index) > items.size() ? items.size() : static_cast<size_t>(index));
    items.insert(items.begin() + static_cast<std::ptrdiff_t>(at), item);
    return static_cast<int>(at);
  }
  // Removes and returns the item at `index`; out of range, removes nothing and returns T().
  T RemoveAt(int index) {
    if (!IsValidIndex(index)) return T();
    Storage& items = Write();
    T item = std::move(items[static_cast<size_t>(index)]);
    items.erase(items.begin() + index);
    return item;
  }
  void Clear() { mItems.reset(); }
  void Reserve(int count) { if (count > 0) ReserveLarge(Write(), static_cast<size_t>(count)); }
  // Reserve for an array about to be filled up to `count` items: their memory is mapped at once
  // (kit/memory_advice.h), and stays resident whether filled or not.
  void ReserveToFill(int count) { if (count > 0) zylsdk::ReserveToFill(Write(), static_cast<size_t>(count)); }
  // Every item added is written at once: its memory is mapped ahead (kit/memory_advice.h).
  void Resize(int count) { ResizeToFill(Write(), count > 0 ? static_cast<size_t>(count) : 0); }

  bool IsValidIndex(int index) const { return index >= 0 && static_cast<size_t>(index) < Read().size(); }
  T GetAt(int index) const { return IsValidIndex(index) ? Read()[static_cast<size_t>(index)] : T(); }
  // Writes inside the array only; out of range it does nothing and returns false.
  bool SetAt(int index, const T& item) {
    if (!IsValidIndex(index)) return false;
    Write()[static_cast<size_t>(index)] = item;
    return true;
  }
  // Position of the first item equal to `item`, or -1.
  int Find(const T& item) const {
    const Storage& items = Read();
    for (size_t i = 0; i < items.size(); ++i)
      if (items[i] == item) return static_cast<int>(i);
    return -1;
  }

  T& operator[](int index) { return Write()[static_cast<size_t>(index)]; }
  const T& operator[](int index) const { return Read()[static_cast<size_t>(index)]; }
  T* GetArray() { return Write().data(); }
  const T* GetArray() const { return Read().data(); }

  std::vector<T>& Std() { return Write(); }
  const std::vector<T>& Std() const { return Read(); }
  auto begin() { return Write().begin(); }
  auto end() { return Write().end(); }
  auto begin() const { return Read().begin(); }
  auto end() const { return Read().end(); }

  // True when both arrays use one storage (one is a copy of the other, neither changed since).
  bool SharesStorageWith(const KArrayTemplate& other) const { return mItems && mItems == other.mItems; }

  friend bool operator==(const KArrayTemplate& a, const KArrayTemplate& b) { return a.Read() == b.Read(); }
  friend bool operator!=(const KArrayTemplate& a, const KArrayTemplate& b) { return a.Read() != b.Read(); }

 private:
  using Storage = std::vector<T>;

  const Storage& Read() const {
    static const Storage empty;
    return mItems ? *mItems : empty;
  }
  // The storage, made this array's own first when it is shared.
  Storage& Write() {
    if (mItems && mItems.use_count() == 1) return *mItems;
    return Detach();
  }
  // Kept out of line, so that the common case above stays small enough to inline.
  __attribute__((noinline)) Storage& Detach() {
    mItems = mItems ? std::make_shared<Storage>(*mItems) : std::make_shared<Storage>();
    return *mItems;
  }

  std::shared_ptr<Storage> mItems;  // null while empty
};

// An array of items of a fixed byte size, for data whose type the container does not know.
class KBaseArray {
 public:
  KBaseArray(int itemSize, int initialCapacity)
      : mItemSize(itemSize > 0 ? static_cast<size_t>(itemSize) : 1) {
    if (initialCapacity > 0) mBytes.reserve(mItemSize * static_cast<size_t>(initialCapacity));
  }
  int GetItemSize() const { return static_cast<int>(mItemSize); }
  int GetCount() const { return static_cast<int>(mBytes.size() / mItemSize); }
  // Appends one item copied from `item` (GetItemSize() bytes) and returns its position.
  int Add(const void* item) {
    size_t at = mBytes.size();
    mBytes.resize(at + mItemSize);
    std::memcpy(mBytes.data() + at, item, mItemSize);
    return GetCount() - 1;
  }
  // The item's bytes, or null outside the array.
  const void* GetAt(int index) const {
    if (index < 0 || index >= GetCount()) return nullptr;
    return mBytes.data() + static_cast<size_t>(index) * mItemSize;
  }
  void Clear() { mBytes.clear(); }

 private:
  size_t mItemSize;
  std::vector<unsigned char> mBytes;
};

// A set of values that remembers the order in which they were added.
template <class T>
class KSet2 {
 public:
  // Adds the value; false when it was already there.
  bool Add(const T& value) {
    if (mPositions.count(value)) return false;
    mPositions.emplace(value, mItems.size());
    mItems.push_back(value);
    return true;
  }
  bool Remove(const T& value) {
    auto found = mPositions.find(value);
    if (found == mPositions.end()) return false;
    mItems.erase(mItems.begin() + static_cast<std::ptrdiff_t>(found->second));
    mPositions.erase(found);
    for (size_t i = 0; i < mItems.size(); ++i) mPositions[mItems[i]] = i;
    return true;
  }
  bool Contains(const T& value) const { return mPositions.count(value) != 0; }
  int GetCount() const { return static_cast<int>(mItems.size()); }
  const T& GetAt(int index) const { return mItems[static_cast<size_t>(index)]; }
  void Clear() { mItems.clear(); mPositions.clear(); }
  auto begin() const { return mItems.begin(); }
  auto end() const { return mItems.end(); }

 private:
  std::vector<T> mItems;
  std::unordered_map<T, size_t> mPositions;
};

}  // namespace zylsdk
