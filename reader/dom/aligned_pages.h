#pragma once
// An append-only sequence of small items that never move, in pages of 64 KB aligned to their
// size. Each page starts with a header (its owner and sequence, the position of its first item,
// how many it holds), so that an item finds its owner, its position and its neighbours from its
// address alone and need not hold them. Pages come in runs that double from one page to 32
// (2 MB, backed by a huge page when huge pages are wanted, see memory_advice.h) and stay at that
// size; a run is obtained without touching it and mapped a step ahead of the items appended
// (WriteAhead). Finding an item by position costs constant time.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>
#include <vector>

#include "kit/memory_advice.h"

namespace zylsdk {

template <class T, class Owner>
class AlignedPages {
  static_assert(std::is_trivially_destructible_v<T>, "pages are released without destroying their items");

 public:
  static constexpr size_t kPageBytes = 64 * 1024;

  struct Header {
    const Owner* owner;
    const AlignedPages* pages;  // the sequence the page belongs to
    uint32_t first;             // the position of the page's first item
    uint32_t used;              // how many items the page holds
  };
  static_assert(sizeof(Header) <= sizeof(T), "the header takes the room of one item");
  // Items per page: the first slot is the header's.
  static constexpr size_t kPerPage = kPageBytes / sizeof(T) - 1;

  explicit AlignedPages(const Owner* owner) : mOwner(owner) {}
  AlignedPages(const AlignedPages&) = delete;
  AlignedPages& operator=(const AlignedPages&) = delete;

  size_t size() const { return mSize; }
  bool empty() const { return mSize == 0; }

  // Appends a value-initialised item and returns it.
  T& emplace_back() {
    if (!mPage || mPage->used == kPerPage) NextPage();
    T* room = Items(mPage) + mPage->used;
    mAhead.Before(mRuns.back().data(), 0, static_cast<size_t>(reinterpret_cast<char*>(room + 1) - mRuns.back().data()),
                  mRunBytes);
    ++mPage->used;
    ++mSize;
    return *new (room) T();
  }

  // The item at `position` (below size()).
  T& operator[](size_t position) const { return mPageItems[position / kPerPage][position % kPerPage]; }
  T& front() const { return *mPageItems.front(); }

  // The header of the page that holds `item`, and its owner.
  static const Header& HeaderOf(const T* item) {
    return *reinterpret_cast<const Header*>(reinterpret_cast<uintptr_t>(item) & ~uintptr_t{kPageBytes - 1});
  }
  static const Owner& OwnerOf(const T* item) { return *HeaderOf(item).owner; }
  // The position of `item` in its sequence.
  static size_t PositionOf(const T* item) {
    const Header& header = HeaderOf(item);
    return header.first + static_cast<size_t>(item - Items(&header));
  }
  // The item `distance` positions after (or, negative, before) `item`; that item must exist.
  // Every page but the last is full, so an existing item whose address falls among the slots
  // of the same page is there: most neighbours are found from addresses alone.
  static T* Near(const T* item, ptrdiff_t distance) {
    const uintptr_t page = reinterpret_cast<uintptr_t>(item) & ~uintptr_t{kPageBytes - 1};
    const uintptr_t address = reinterpret_cast<uintptr_t>(item) + static_cast<uintptr_t>(distance) * sizeof(T);
    if (address - (page + sizeof(T)) <= kPerPage * sizeof(T) - sizeof(T)) return reinterpret_cast<T*>(address);
    const Header& header = HeaderOf(item);
    return &(*header.pages)[PositionOf(item) + static_cast<size_t>(distance)];
  }
  // The item after `item` in the sequence, or null when it is the last.
  const T* After(const T* item) const {
    const Header& header = HeaderOf(item);
    const size_t slot = static_cast<size_t>(item - Items(&header));
    if (slot + 1 < header.used) return item + 1;
    const size_t next = header.first + slot + 1;
    return next < mSize ? &(*this)[next] : nullptr;
  }

 private:
  static constexpr size_t kLargestRunPages = 32;

  static T* Items(const Header* header) {
    return reinterpret_cast<T*>(const_cast<char*>(reinterpret_cast<const char*>(header)) + sizeof(T));
  }

  void NextPage() {
    const size_t runPages = mRunBytes / kPageBytes;
    if (mRuns.empty() || mPagesTaken == runPages) {
      const size_t pages = mRuns.empty() ? 1 : std::min(2 * runPages, kLargestRunPages);
      mRunBytes = pages * kPageBytes;
      // A run of 2 MB is aligned to 2 MB, so that it can be one huge page.
      const size_t alignment = pages == kLargestRunPages ? mRunBytes : kPageBytes;
      mRuns.emplace_back(mRunBytes, alignment);
      mPagesTaken = 0;
    }
    char* page = mRuns.back().data() + mPagesTaken++ * kPageBytes;
    mAhead.Before(mRuns.back().data(), 0, static_cast<size_t>(page - mRuns.back().data()) + 2 * sizeof(T), mRunBytes);
    mPage = new (page) Header{mOwner, this, static_cast<uint32_t>(mSize), 0};
    mPageItems.push_back(Items(mPage));
  }

  const Owner* mOwner;
  std::vector<LargeBlock> mRuns;
  std::vector<T*> mPageItems;  // the first item of each page
  Header* mPage = nullptr;     // the last page
  size_t mRunBytes = 0;        // of the last run
  size_t mPagesTaken = 0;      // of the last run
  size_t mSize = 0;
  WriteAhead mAhead;  // over the last run
};

}  // namespace zylsdk
