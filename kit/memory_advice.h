#pragma once
// Large arrays and the memory behind them. Filling a new array of hundreds of megabytes costs a
// page fault per 4 KB page and a translation miss on nearly every page it touches; backed by
// 2 MB pages, it costs 512 times fewer faults and far fewer misses. The kit and the reader ask
// for such pages for the arrays they fill at once (a mesh's control points, polygons and layers,
// a document's number lists).

#include <cstddef>
#include <vector>

namespace zylsdk {

// Asks the system to back the whole 2 MB pages inside [data, data + bytes) with huge pages when
// they are first touched (Linux: transparent huge pages, which may be off, on, or on request).
// Ranges without a whole huge page, and systems without the facility, are left as they are.
void AdviseHugePages(const void* data, size_t bytes);

// Room that is filled from its start (a slab of objects, a run of a document's elements). From
// 2 MB on (Linux) it is a mapping of its own, aligned to a 2 MB page and advised as above, so
// that all of it can be backed by huge pages; smaller blocks, other systems and builds with
// AddressSanitizer get plain allocations. Not zero-filled.
class LargeBlock {
 public:
  explicit LargeBlock(size_t bytes);
  LargeBlock(LargeBlock&& other) noexcept : mData(other.mData), mMapped(other.mMapped) { other.mData = nullptr; }
  LargeBlock& operator=(LargeBlock&& other) noexcept;
  LargeBlock(const LargeBlock&) = delete;
  LargeBlock& operator=(const LargeBlock&) = delete;
  ~LargeBlock();

  char* data() const { return mData; }

 private:
  char* mData;
  size_t mMapped;  // the bytes of its own mapping; 0 for a plain allocation
};

// The bytes that large blocks of their own mapping hold in this process: memory that the general
// heap's statistics (mallinfo2) do not count.
size_t MappedLargeBlockBytes();

// Makes room for at least `count` items, advised as above.
template <class T>
void ReserveLarge(std::vector<T>& items, size_t count) {
  if (count <= items.capacity()) return;
  items.reserve(count);
  AdviseHugePages(items.data(), items.capacity() * sizeof(T));
}

}  // namespace zylsdk
