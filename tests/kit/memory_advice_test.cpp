// Large blocks: writable from end to end, aligned to a huge page and counted apart from the heap
// when they have a mapping of their own, and handed over by moves without being freed twice.
// Memory prepared for writing: mapped at once, whole pages only, never past the room it is told;
// memory given back: whole pages only, read as zeros afterwards.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "kit/memory_advice.h"

#if defined(__linux__)
#include <sys/mman.h>
#include <unistd.h>
#endif

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

#if defined(__linux__) && defined(MADV_HUGEPAGE)
// Whether the mapping that holds `data` was advised for huge pages ("hg" among its VmFlags).
bool AdvisedForHugePages(const void* data) {
  FILE* maps = std::fopen("/proc/self/smaps", "r");
  if (!maps) return false;
  char line[512];
  bool inside = false;
  bool advised = false;
  while (std::fgets(line, sizeof line, maps)) {
    unsigned long start = 0, end = 0;
    if (std::sscanf(line, "%lx-%lx ", &start, &end) == 2) {
      inside = start <= Address(data) && Address(data) < end;
    } else if (inside && std::strncmp(line, "VmFlags:", 8) == 0) {
      advised = std::strstr(line, " hg") != nullptr;
      break;
    }
  }
  std::fclose(maps);
  return advised;
}

// Huge pages are asked for only when the environment says so: the setting is read once per
// process, so each case runs in a process of its own.
TEST(HugePagesDeathTest, AskedForOnlyWhenTheEnvironmentSaysSo) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  for (const char* setting : {"1", "0", ""}) {
    const bool wanted = std::strcmp(setting, "1") == 0;
    EXPECT_EXIT(
        {
          setenv("ZYL_HUGE_PAGES", setting, 1);
          LargeBlock block(2 * kHugePage);
          if (MappedLargeBlockBytes() == 0) std::exit(2);  // plain allocations in this build
          std::exit(HugePagesWanted() == wanted && AdvisedForHugePages(block.data()) == wanted ? 0 : 1);
        },
        [](int status) { return WIFEXITED(status) && (WEXITSTATUS(status) == 0 || WEXITSTATUS(status) == 2); }, "")
        << "ZYL_HUGE_PAGES=" << setting;
  }
}
#endif

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

TEST(LargeBlock, PlainBlocksHonourTheirAlignment) {
  for (const size_t alignment : {size_t{64}, size_t{4096}, size_t{65536}}) {
    LargeBlock block(3 * alignment + 1, alignment);
    EXPECT_EQ(Address(block.data()) % alignment, 0u) << alignment;
    EXPECT_GE(block.size(), 3 * alignment + 1);
    block.data()[3 * alignment] = 'z';
  }
}

#if defined(__linux__)
// Whether the page at `data` belongs to a mapping of this process.
bool Mapped(const void* data) {
  unsigned char resident = 0;
  return mincore(reinterpret_cast<void*>(Address(data) & ~uintptr_t{4095}), 1, &resident) == 0;
}

// Whether large blocks get mappings of their own in this build.
bool BlocksHaveMappingsOfTheirOwn() {
  const size_t before = MappedLargeBlockBytes();
  LargeBlock probe(kHugePage);
  return MappedLargeBlockBytes() > before;
}

TEST(PageRecycling, AFreedBlockLendsItsPagesToTheNextBlocksOfTheScope) {
  if (!BlocksHaveMappingsOfTheirOwn()) GTEST_SKIP() << "large blocks are plain allocations in this build";
  const size_t before = MappedLargeBlockBytes();
  PageRecycling recycling;
  char* pages = nullptr;
  {
    LargeBlock freed(3 * kHugePage);
    pages = freed.data();
    std::memset(pages, 7, 3 * kHugePage);
  }
  EXPECT_EQ(recycling.KeptBytes(), 3 * kHugePage);
  EXPECT_EQ(MappedLargeBlockBytes(), before);  // kept pages belong to no block
  LargeBlock first(2 * kHugePage - 100);
  EXPECT_EQ(first.data(), pages);
  EXPECT_TRUE(first.PagesWritten());
  EXPECT_EQ(first.size(), 2 * kHugePage);  // whole huge pages: what is left starts on one
  EXPECT_EQ(recycling.KeptBytes(), kHugePage);
  LargeBlock second(kHugePage);
  EXPECT_EQ(second.data(), pages + 2 * kHugePage);
  EXPECT_EQ(recycling.KeptBytes(), 0u);
  EXPECT_EQ(MappedLargeBlockBytes() - before, 3 * kHugePage);
  // Nothing is kept any more: the next block is a mapping of its own.
  LargeBlock third(kHugePage);
  EXPECT_TRUE(third.data() < pages || third.data() >= pages + 3 * kHugePage);
  EXPECT_FALSE(third.PagesWritten());
  // Moves keep it.
  LargeBlock moved(std::move(first));
  EXPECT_TRUE(moved.PagesWritten());
  third = std::move(moved);
  EXPECT_TRUE(third.PagesWritten());
}

TEST(PageRecycling, ABlockTakesTheSmallestRunThatHoldsIt) {
  if (!BlocksHaveMappingsOfTheirOwn()) GTEST_SKIP() << "large blocks are plain allocations in this build";
  PageRecycling recycling;
  char* large = nullptr;
  char* small = nullptr;
  {
    LargeBlock first(4 * kHugePage);
    LargeBlock second(kHugePage);
    large = first.data();
    small = second.data();
  }
  LargeBlock block(kHugePage);
  EXPECT_EQ(block.data(), small);
  // More than any run kept: a mapping of its own, and the runs stay.
  LargeBlock larger(5 * kHugePage);
  EXPECT_TRUE(larger.data() + 5 * kHugePage <= large || larger.data() >= large + 4 * kHugePage);
  EXPECT_EQ(recycling.KeptBytes(), 4 * kHugePage);
}

TEST(PageRecycling, ASlabTakesWhatIsKeptEvenWhenItWantedMore) {
  if (!BlocksHaveMappingsOfTheirOwn()) GTEST_SKIP() << "large blocks are plain allocations in this build";
  PageRecycling recycling;
  char* pages = nullptr;
  {
    LargeBlock freed(kHugePage);
    pages = freed.data();
  }
  LargeBlock slab = LargeBlock::ForSlab(4096, 8 * kHugePage);
  EXPECT_EQ(slab.data(), pages);
  EXPECT_EQ(slab.size(), kHugePage);
  // Nothing kept: the slab it wanted.
  LargeBlock next = LargeBlock::ForSlab(4096, 3 * kHugePage);
  EXPECT_GE(next.size(), 3 * kHugePage);
  // A small slab never takes kept pages.
  {
    LargeBlock freed(kHugePage);
  }
  LargeBlock small = LargeBlock::ForSlab(16, 65536);
  EXPECT_EQ(small.size(), 65536u);
  EXPECT_EQ(recycling.KeptBytes(), kHugePage);
}

TEST(PageRecycling, PagesGoBackToTheSystemOutsideAScopeAndWhenItEnds) {
  if (!BlocksHaveMappingsOfTheirOwn()) GTEST_SKIP() << "large blocks are plain allocations in this build";
  char* pages = nullptr;
  {
    LargeBlock freed(kHugePage);
    pages = freed.data();
    ASSERT_TRUE(Mapped(pages));
  }
  EXPECT_FALSE(Mapped(pages));
  {
    PageRecycling recycling;
    {
      LargeBlock freed(kHugePage);
      pages = freed.data();
    }
    EXPECT_TRUE(Mapped(pages));
  }
  EXPECT_FALSE(Mapped(pages));
}

TEST(PageRecycling, TheInnermostScopeKeepsThePagesUntilItEnds) {
  if (!BlocksHaveMappingsOfTheirOwn()) GTEST_SKIP() << "large blocks are plain allocations in this build";
  PageRecycling outer;
  {
    PageRecycling inner;
    { LargeBlock freed(kHugePage); }
    EXPECT_EQ(inner.KeptBytes(), kHugePage);
    EXPECT_EQ(outer.KeptBytes(), 0u);
  }
  { LargeBlock freed(2 * kHugePage); }
  EXPECT_EQ(outer.KeptBytes(), 2 * kHugePage);
}
#endif

TEST(ResizeToFill, AddsCopiesOfTheValueAndKeepsOrDropsTheRest) {
  std::vector<int> items{1, 2};
  ResizeToFill(items, 5, 7);
  EXPECT_EQ(items, (std::vector<int>{1, 2, 7, 7, 7}));
  ResizeToFill(items, 100000);
  EXPECT_EQ(items.size(), 100000u);
  EXPECT_EQ(items[4], 7);
  EXPECT_EQ(items[99999], 0);
  ResizeToFill(items, 1);
  EXPECT_EQ(items, (std::vector<int>{1}));
}

TEST(ReserveToAppend, GrowsGeometricallyUnderManySmallReservations) {
  std::vector<int> items;
  size_t growths = 0;
  for (int i = 0; i < 100000; ++i) {
    const size_t before = items.capacity();
    ReserveToAppend(items, 3);
    EXPECT_GE(items.capacity(), items.size() + 3);
    if (items.capacity() != before) ++growths;
    items.insert(items.end(), {i, i, i});
  }
  // Room for exactly three more each time would grow 100,000 times: a quadratic copy.
  EXPECT_LE(growths, 20u);
  EXPECT_EQ(items[299999], 99999);
}

TEST(MakeRoomForOne, KeepsTheItemsInOrderAndDoublesTheRoom) {
  std::vector<std::unique_ptr<int>> items;
  size_t growths = 0;
  for (int i = 0; i < 100000; ++i) {
    const size_t before = items.capacity();
    MakeRoomForOne(items);
    EXPECT_GT(items.capacity(), items.size());
    if (items.capacity() != before) {
      ++growths;
      EXPECT_GE(items.capacity(), 2 * before);
    }
    items.push_back(std::make_unique<int>(i));
  }
  // Doubling from 8: 15 growths reach 131,072 items; a growth per item would be quadratic.
  EXPECT_LE(growths, 15u);
  for (int i = 0; i < 100000; ++i) ASSERT_EQ(*items[static_cast<size_t>(i)], i);
  // With room left, nothing moves.
  const std::unique_ptr<int>* storage = items.data();
  MakeRoomForOne(items);
  EXPECT_EQ(items.data(), storage);
}

#if defined(__linux__) && defined(MADV_POPULATE_WRITE)

const size_t kPage = static_cast<size_t>(sysconf(_SC_PAGESIZE));

// Room of its own for a test, untouched: none of its pages is resident yet.
class FreshRoom {
 public:
  explicit FreshRoom(size_t bytes) : mBytes(bytes) {
    void* mapped = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    mData = mapped == MAP_FAILED ? nullptr : static_cast<char*>(mapped);
    // Base pages whatever the system's default: a huge page would map more than was asked.
    if (mData) madvise(mData, bytes, MADV_NOHUGEPAGE);
  }
  ~FreshRoom() {
    if (mData) munmap(mData, mBytes);
  }
  char* data() const { return mData; }
  // Whether the page holding data() + offset is mapped in.
  bool Resident(size_t offset) const {
    unsigned char state = 0;
    char* page = mData + offset / kPage * kPage;
    return mincore(page, kPage, &state) == 0 && (state & 1) != 0;
  }

 private:
  char* mData;
  size_t mBytes;
};

// Whether this kernel maps a range for writing on request (Linux 5.14 and later).
bool KernelPopulates() {
  FreshRoom probe(kPage);
  return probe.data() && madvise(probe.data(), kPage, MADV_POPULATE_WRITE) == 0;
}

TEST(PrepareForWriting, MapsTheWholePagesInsideTheRangeAndNothingElse) {
  if (!KernelPopulates()) GTEST_SKIP() << "this kernel does not map ranges on request";
  FreshRoom room(64 * kPage);
  ASSERT_NE(room.data(), nullptr);
  // From the middle of the second page to the middle of the fortieth.
  PrepareForWriting(room.data() + kPage + 10, 38 * kPage);
  EXPECT_FALSE(room.Resident(0));
  EXPECT_FALSE(room.Resident(kPage));  // only partly inside
  for (size_t page = 2; page < 39; ++page) EXPECT_TRUE(room.Resident(page * kPage)) << page;
  EXPECT_FALSE(room.Resident(39 * kPage));  // only partly inside
  EXPECT_FALSE(room.Resident(63 * kPage));
}

TEST(WriteAhead, PreparesAStepAheadOfTheWritesAndNeverPastTheRoom) {
  if (!KernelPopulates()) GTEST_SKIP() << "this kernel does not map ranges on request";
  constexpr size_t kMegabyte = size_t{1} << 20;
  FreshRoom room(4 * kMegabyte);
  ASSERT_NE(room.data(), nullptr);
  const size_t size = 3 * kMegabyte;  // the room the writes are told of
  WriteAhead ahead;
  ahead.Before(room.data(), 0, 100, size);
  EXPECT_TRUE(room.Resident(0));
  EXPECT_TRUE(room.Resident(kMegabyte - kPage));
  EXPECT_FALSE(room.Resident(kMegabyte + kPage));
  // Writes inside what is prepared ask for nothing more.
  ahead.Before(room.data(), 0, kMegabyte - 1, size);
  EXPECT_FALSE(room.Resident(kMegabyte + kPage));
  ahead.Before(room.data(), 0, kMegabyte + 1, size);
  EXPECT_TRUE(room.Resident(2 * kMegabyte - kPage));
  EXPECT_FALSE(room.Resident(2 * kMegabyte + kPage));
  ahead.Before(room.data(), 0, size, size);
  EXPECT_TRUE(room.Resident(size - kPage));
  EXPECT_FALSE(room.Resident(size));
  EXPECT_FALSE(room.Resident(4 * kMegabyte - kPage));
}

TEST(WriteAhead, StartsAgainWhereNewRoomHoldsNoDataYet) {
  if (!KernelPopulates()) GTEST_SKIP() << "this kernel does not map ranges on request";
  constexpr size_t kMegabyte = size_t{1} << 20;
  FreshRoom first(2 * kMegabyte);
  FreshRoom second(4 * kMegabyte);
  ASSERT_NE(first.data(), nullptr);
  ASSERT_NE(second.data(), nullptr);
  WriteAhead ahead;
  ahead.Before(first.data(), 0, 100, 2 * kMegabyte);
  // The second room already holds a megabyte (as an array's items copied into new storage do):
  // what is prepared starts after it.
  ahead.Before(second.data(), kMegabyte, kMegabyte + 100, 4 * kMegabyte);
  EXPECT_FALSE(second.Resident(kMegabyte / 2));
  EXPECT_TRUE(second.Resident(kMegabyte + kPage));
  EXPECT_TRUE(second.Resident(2 * kMegabyte - kPage));
  EXPECT_FALSE(second.Resident(2 * kMegabyte + kPage));
}

TEST(GiveBackPages, GivesBackTheWholePagesInsideTheRangeAndKeepsTheRest) {
  FreshRoom room(16 * kPage);
  ASSERT_NE(room.data(), nullptr);
  std::memset(room.data(), 7, 16 * kPage);
  // From the middle of the second page to the middle of the tenth.
  GiveBackPages(room.data() + kPage + 10, 8 * kPage);
  EXPECT_TRUE(room.Resident(kPage));  // only partly inside
  for (size_t page = 2; page < 9; ++page) {
    EXPECT_FALSE(room.Resident(page * kPage)) << page;
    EXPECT_EQ(room.data()[page * kPage], 0) << page;  // read again, as zeros
  }
  EXPECT_TRUE(room.Resident(9 * kPage));
  EXPECT_EQ(room.data()[kPage + 9], 7);
  EXPECT_EQ(room.data()[2 * kPage - 1], 7);
  EXPECT_EQ(room.data()[9 * kPage], 7);
  EXPECT_EQ(room.data()[15 * kPage], 7);
}

#endif

}  // namespace
