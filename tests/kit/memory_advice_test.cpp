// Large blocks: writable from end to end, aligned to a huge page and counted apart from the heap
// when they have a mapping of their own, and handed over by moves without being freed twice.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "kit/memory_advice.h"

namespace {

using namespace zylsdk;

constexpr size_t kHugePage = size_t{2} << 20;

uintptr_t Address(const void* data) { return reinterpret_cast<uintptr_t>(data); }

TEST(LargeBlock, SmallAndLargeBlocksAreWritableFromEndToEnd) {
  for (const size_t bytes : {size_t{2}, size_t{4096}, kHugePage - 1, kHugePage, 3 * kHugePage + 5}) {
    LargeBlock block(bytes);
    ASSERT_NE(block.data(), nullptr) << bytes;
    EXPECT_EQ(Address(block.data()) % alignof(std::max_align_t), 0u) << bytes;
    block.data()[0] = 'a';
    block.data()[bytes - 1] = 'z';
    EXPECT_EQ(block.data()[0], 'a');
    EXPECT_EQ(block.data()[bytes - 1], 'z');
  }
}

TEST(LargeBlock, BlocksOfTheirOwnMappingStartOnAHugePageAndAreCounted) {
  const size_t before = MappedLargeBlockBytes();
  {
    LargeBlock block(kHugePage + 100);
    if (MappedLargeBlockBytes() == before) GTEST_SKIP() << "large blocks are plain allocations in this build";
    EXPECT_EQ(Address(block.data()) % kHugePage, 0u);
    EXPECT_GE(MappedLargeBlockBytes() - before, kHugePage + 100);
    EXPECT_LT(MappedLargeBlockBytes() - before, kHugePage + 65536);
    std::memset(block.data(), 1, kHugePage + 100);
  }
  EXPECT_EQ(MappedLargeBlockBytes(), before);
}

TEST(LargeBlock, MovesHandTheRoomOver) {
  LargeBlock first(kHugePage);
  char* const room = first.data();
  LargeBlock second(std::move(first));
  EXPECT_EQ(first.data(), nullptr);  // NOLINT(bugprone-use-after-move): moved-from state is defined
  EXPECT_EQ(second.data(), room);
  LargeBlock third(16);
  third = std::move(second);
  EXPECT_EQ(third.data(), room);
  // Blocks kept in a vector that grows move as it grows; each is freed once, when the vector goes.
  std::vector<LargeBlock> blocks;
  for (int i = 0; i < 20; ++i) {
    blocks.emplace_back(i % 2 ? kHugePage : size_t{64});
    blocks.back().data()[0] = static_cast<char>(i);
  }
  for (int i = 0; i < 20; ++i) EXPECT_EQ(blocks[static_cast<size_t>(i)].data()[0], static_cast<char>(i));
}

}  // namespace
