#pragma once
// The kit's containers: KArrayTemplate (a growable array), KBaseArray (an untyped array of
// fixed-size items) and KSet2 (a set that keeps insertion order).

#include <cstddef>
#include <cstring>
#include <unordered_map>
#include <vector>

namespace zylsdk {

// A growable array with value semantics. Indexed access with operator[] expects a valid index;
// GetAt is the bounded read: outside the array it gives a default-constructed value.
template <class T>
class KArrayTemplate {
 public:
  KArrayTemplate() = default;
  KArrayTemplate(std::initializer_list<T> items) : mItems(items) {}

  int GetCount() const { return static_cast<int>(mItems.size()); }
  bool IsEmpty() const { return mItems.empty(); }

  int Add(const T& item) { mItems.push_back(item); return GetCount() - 1; }
  int Add(T&& item) { mItems.push_back(std::move(item)); return GetCount() - 1; }
  // Inserts before `index` (clamped to 0..count) and returns the position.
  int InsertAt(int index, const T& item) {
    size_t at = index < 0 ? 0 : (static_cast<size_t>(index) > mItems.size() ? mItems.size() : static_cast<size_t>(index));
    mItems.insert(mItems.begin() + static_cast<std::ptrdiff_t>(at), item);
    return static_cast<int>(at);
  }
  // Removes and returns the item at `index`; out of range, removes nothing and returns T().
  T RemoveAt(int index) {
    if (!IsValidIndex(index)) return T();
    T item = std::move(mItems[static_cast<size_t>(index)]);
    mItems.erase(mItems.begin() + index);
    return item;
  }
  void Clear() { mItems.clear(); }
  void Reserve(int count) { if (count > 0) mItems.reserve(static_cast<size_t>(count)); }
  void Resize(int count) { mItems.resize(count > 0 ? static_cast<size_t>(count) : 0); }

  bool IsValidIndex(int index) const { return index >= 0 && static_cast<size_t>(index) < mItems.size(); }
  T GetAt(int index) const { return IsValidIndex(index) ? mItems[static_cast<size_t>(index)] : T(); }
  // Writes inside the array only; out of range it does nothing and returns false.
  bool SetAt(int index, const T& item) {
    if (!IsValidIndex(index)) return false;
    mItems[static_cast<size_t>(index)] = item;
    return true;
  }
  // Position of the first item equal to `item`, or -1.
  int Find(const T& item) const {
    for (size_t i = 0; i < mItems.size(); ++i)
      if (mItems[i] == item) return static_cast<int>(i);
    return -1;
  }

  T& operator[](int index) { return mItems[static_cast<size_t>(index)]; }
  const T& operator[](int index) const { return mItems[static_cast<size_t>(index)]; }
  T* GetArray() { return mItems.data(); }
  const T* GetArray() const { return mItems.data(); }

  std::vector<T>& Std() { return mItems; }
  const std::vector<T>& Std() const { return mItems; }
  auto begin() { return mItems.begin(); }
  auto end() { return mItems.end(); }
  auto begin() const { return mItems.begin(); }
  auto end() const { return mItems.end(); }

  friend bool operator==(const KArrayTemplate& a, const KArrayTemplate& b) { return a.mItems == b.mItems; }
  friend bool operator!=(const KArrayTemplate& a, const KArrayTemplate& b) { return a.mItems != b.mItems; }

 private:
  std::vector<T> mItems;
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
