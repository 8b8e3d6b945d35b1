#pragma once
// Large arrays and the memory behind them. Filling a new array of hundreds of megabytes costs a
// page fault per 4 KB page; the kit and the reader have the pages they are about to write mapped
// in one call rather than faulted in one by one (about three times cheaper per page on virtual
// machines). Backed by 2 MB pages, such an array would cost 512 times fewer faults, but whether
// a huge page is cheaper than 512 small ones depends on the machine: where the system must first
// compact its memory to find one, or where a virtual machine's host has taken freed memory back,
// a huge page costs more (on one of our machines, a 1M-triangle mesh read in 0.35 s of processor
// time with small pages and 0.70 s with huge ones). The kit asks for huge pages for the arrays it
// fills at once (a mesh's control points, polygons and layers, a document's number lists) only
// when the environment variable ZYL_HUGE_PAGES is "1".

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace zylsdk {

// True when the environment variable ZYL_HUGE_PAGES is "1" (read once, at the first call).
bool HugePagesWanted();

// When huge pages are wanted, asks the system to back the whole 2 MB pages inside
// [data, data + bytes) with them when they are first touched (Linux: transparent huge pages,
// which may be off, on, or on request). Ranges without a whole huge page, and systems without
// the facility, are left as they are.
void AdviseHugePages(const void* data, size_t bytes);

// Room that is filled from its start (a slab of objects, a run of a document's elements). From
// 2 MB on (Linux) it is a mapping of its own, aligned to a 2 MB page and advised as above, so
// that all of it can be backed by huge pages when they are wanted; smaller blocks, other systems
// and builds with AddressSanitizer get plain allocations. Not zero-filled. A block of its own
// mapping is taken first from the pages a PageRecycling keeps on the thread.
class LargeBlock {
 public:
  // At least `bytes` of room, aligned to `alignment` (a power of two, at most 2 MB).
  explicit LargeBlock(size_t bytes, size_t alignment = alignof(std::max_align_t));
  // Room for a slab, which may be smaller than it would like: pages a PageRecycling keeps on the
  // thread, at least `least` bytes and about `wanted` at most, when `wanted` would be a mapping
  // of its own; otherwise a new block of `wanted` bytes. size() tells which.
  static LargeBlock ForSlab(size_t least, size_t wanted);

  LargeBlock(LargeBlock&& other) noexcept
      : mData(std::exchange(other.mData, nullptr)), mSize(other.mSize), mMapped(other.mMapped),
        mWritten(other.mWritten), mAlignment(other.mAlignment) {}
  LargeBlock& operator=(LargeBlock&& other) noexcept;
  LargeBlock(const LargeBlock&) = delete;
  LargeBlock& operator=(const LargeBlock&) = delete;
  ~LargeBlock();

  char* data() const { return mData; }
  // The room, in bytes: at least what was asked.
  size_t size() const { return mSize; }
  // True for room made of pages a PageRecycling kept: written once already, they need no
  // preparing for writing (PrepareForWriting, WriteAhead).
  bool PagesWritten() const { return mWritten; }

 private:
  LargeBlock() = default;
  // Takes kept pages of at least `least` bytes, up to `wanted` rounded up to whole huge pages.
  bool TakeKeptPages(size_t least, size_t wanted);
  void Map(size_t bytes);

  char* mData = nullptr;
  size_t mSize = 0;
  bool mMapped = false;  // a mapping of its own (mSize bytes), or a plain allocation
  bool mWritten = false;
  size_t mAlignment = alignof(std::max_align_t);
};

// While one is alive, the blocks of their own mapping freed on its thread keep their pages,
// written once already and still mapped, for the next large blocks made on that thread, instead
// of giving them back to the system; whatever is left goes back when it ends. A read frees the
// document's tree before it copies the visual scene into the scene read: the copy then fills
// pages that cost no fault. Scopes nest; the innermost keeps the pages.
class PageRecycling {
 public:
  PageRecycling();
  ~PageRecycling();
  PageRecycling(const PageRecycling&) = delete;
  PageRecycling& operator=(const PageRecycling&) = delete;

  // The bytes kept, waiting for a block.
  size_t KeptBytes() const;

 private:
  friend class LargeBlock;
  struct Kept;
  std::unique_ptr<Kept> mKept;
  PageRecycling* mOuter;
};

// The bytes that large blocks of their own mapping hold in this process: memory that the general
// heap's statistics (mallinfo2) do not count.
size_t MappedLargeBlockBytes();

// Has the system map the whole pages inside [data, data + bytes) for writing now, in one call
// (Linux 5.14 and later), instead of a fault at the first write to each. For memory that is
// about to be written: what it maps stays resident whether written or not. Small ranges, and
// systems without the facility, are left to fault as usual.
void PrepareForWriting(void* data, size_t bytes);

// Hands the whole pages inside [data, data + bytes) back to the system now, for memory that is
// read no more before it is freed (the front of an array read once, in order): what is made next
// can then take them instead of new ones. Reading them afterwards gives zeros. Systems without
// the facility keep them until the memory is freed.
void GiveBackPages(void* data, size_t bytes);

// Makes room for at least `count` items, advised as above.
template <class T>
void ReserveLarge(std::vector<T>& items, size_t count) {
  if (count <= items.capacity()) return;
  items.reserve(count);
  AdviseHugePages(items.data(), items.capacity() * sizeof(T));
}

// Prepares for writing the room of the next `more` items past the end of `items`, as far as its
// capacity goes.
template <class T>
void PrepareToAppend(std::vector<T>& items, size_t more) {
  const size_t room = std::min(more, items.capacity() - items.size());
  PrepareForWriting(items.data() + items.size(), room * sizeof(T));
}

// Makes room for `count` items in all and prepares it for writing: for an array about to be
// filled up to that count.
template <class T>
void ReserveToFill(std::vector<T>& items, size_t count) {
  ReserveLarge(items, count);
  if (count > items.size()) PrepareToAppend(items, count - items.size());
}

// Makes room for `more` items past the end of `items`, growing geometrically so that many small
// reservations stay linear, and prepares that room for writing: for items about to be appended.
template <class T>
void ReserveToAppend(std::vector<T>& items, size_t more) {
  const size_t needed = items.size() + more;
  if (needed > items.capacity()) ReserveLarge(items, std::max(needed, 2 * items.capacity()));
  PrepareToAppend(items, more);
}

// Resizes `items` to `count`; the items added (copies of `value`) are written in room prepared
// for writing at once.
template <class T>
void ResizeToFill(std::vector<T>& items, size_t count, const T& value = T()) {
  if (count > items.size()) ReserveToAppend(items, count - items.size());
  items.resize(count, value);
}

// Makes room for one more item in an array that grows an item at a time (a manager's objects, a
// node's children): its capacity doubles, as push_back's would, and the new storage is prepared
// for writing before the items move into it, as far as they go and a megabyte further at most
// (the array may stop growing).
template <class T>
void MakeRoomForOne(std::vector<T>& items) {
  if (items.size() < items.capacity()) return;
  std::vector<T> grown;
  grown.reserve(std::max<size_t>(8, 2 * items.capacity()));
  const size_t moved = items.size() * sizeof(T);
  AdviseHugePages(grown.data(), grown.capacity() * sizeof(T));
  PrepareForWriting(grown.data(), moved + std::min(moved, size_t{1} << 20));
  for (T& item : items) grown.push_back(std::move(item));
  items.swap(grown);
}

// Prepares room that is written from its start by many small writes (a number list as it
// streams in, a slab of objects) a step ahead of them, so that its pages are mapped a megabyte
// at a time. Never prepares past the room's end.
class WriteAhead {
 public:
  // Called before the bytes of `room` (`size` bytes in all) are written up to `end`; `written`
  // is how much of it holds data already when the room is new to this object (storage that an
  // array moved to).
  void Before(char* room, size_t written, size_t end, size_t size) {
    if (room != mRoom || end > mReady) Advance(room, written, end, size);
  }
  // Called before up to `more` items are appended to `items`.
  template <class T>
  void Before(std::vector<T>& items, size_t more) {
    const size_t end = items.size() + std::min(more, items.capacity() - items.size());
    Before(reinterpret_cast<char*>(items.data()), items.size() * sizeof(T), end * sizeof(T),
           items.capacity() * sizeof(T));
  }

 private:
  void Advance(char* room, size_t written, size_t end, size_t size);

  char* mRoom = nullptr;
  size_t mReady = 0;  // the bytes from mRoom on that are written or prepared
};

}  // namespace zylsdk
