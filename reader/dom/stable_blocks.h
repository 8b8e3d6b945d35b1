#pragma once
// An append-only sequence whose items never move: they live in blocks that grow with the
// sequence (each a quarter of what came before, within bounds), so that a small document takes
// little memory, a large one is made of few large blocks (LargeBlock: backed by huge pages where
// the system allows), and at most a fifth of the room is ever unused. Memory is obtained
// without touching it and mapped a step ahead of the items appended (WriteAhead), so that only
// they cost anything, and a megabyte more at most.

#include <algorithm>
#include <cstddef>
#include <new>
#include <type_traits>
#include <vector>

#include "kit/memory_advice.h"

namespace zylsdk {

template <class T>
class StableBlocks {
  static_assert(std::is_trivially_destructible_v<T>, "blocks are released without destroying their items");

 public:
  StableBlocks() = default;
  StableBlocks(const StableBlocks&) = delete;
  StableBlocks& operator=(const StableBlocks&) = delete;

  size_t size() const { return mSize; }
  bool empty() const { return mSize == 0; }

  // Appends a value-initialised item and returns it.
  T& emplace_back() {
    if (mBlocks.empty() || mBlocks.back().used == mBlocks.back().capacity) {
      const size_t capacity = std::clamp(mSize / 4, kSmallestBlock, kLargestBlock);
      mBlocks.push_back({LargeBlock(capacity * sizeof(T)), mSize, 0, capacity});
    }
    Block& block = mBlocks.back();
    mAhead.Before(block.room.data(), 0, (block.used + 1) * sizeof(T), block.capacity * sizeof(T));
    ++mSize;
    return *new (block.Items() + block.used++) T();
  }

  // The item at `position` (below size()), found among the blocks by a binary search.
  T& operator[](size_t position) {
    auto block = std::upper_bound(mBlocks.begin(), mBlocks.end(), position,
                                  [](size_t at, const Block& candidate) { return at < candidate.first; });
    --block;
    return block->Items()[position - block->first];
  }
  const T& operator[](size_t position) const { return const_cast<StableBlocks&>(*this)[position]; }
  // The first item (the sequence must not be empty).
  T& front() { return *mBlocks.front().Items(); }
  const T& front() const { return *mBlocks.front().Items(); }

 private:
  static constexpr size_t kSmallestBlock = 256;
  static constexpr size_t kLargestBlock = size_t{1} << 17;

  struct Block {
    LargeBlock room;
    T* Items() const { return reinterpret_cast<T*>(room.data()); }
    size_t first;  // the position of its first item
    size_t used;
    size_t capacity;
  };

  std::vector<Block> mBlocks;
  size_t mSize = 0;
  WriteAhead mAhead;  // over the last block
};

}  // namespace zylsdk
