// The room of kit objects: every object gets room of its own size and alignment, room given
// back is used again, and objects of any size and any number live and die with their manager.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <set>
#include <vector>

#include "kit/address_sanitizer.h"
#include "kit/object_memory.h"
#include "kit/zylsdk.h"

namespace {

using namespace zylsdk;

bool Aligned(const void* room) { return reinterpret_cast<uintptr_t>(room) % 8 == 0; }

TEST(ObjectMemory, RoomsAreAlignedWritableAndApart) {
  ObjectMemory memory;
  std::vector<std::pair<char*, size_t>> rooms;
  // Sizes from tiny to beyond the shared slabs, enough of them to need several slabs.
  for (size_t i = 0; i < 20000; ++i) {
    const size_t bytes = 1 + (i * 37) % 600 + (i % 1000 == 0 ? 10000 : 0);
    char* room = static_cast<char*>(memory.Allocate(bytes));
    ASSERT_TRUE(Aligned(room)) << bytes;
    std::memset(room, static_cast<int>(i % 251), bytes);
    rooms.emplace_back(room, bytes);
  }
  // No room overlaps another: each still holds what was written into it.
  for (size_t i = 0; i < rooms.size(); ++i)
    for (size_t k = 0; k < rooms[i].second; ++k)
      ASSERT_EQ(static_cast<unsigned char>(rooms[i].first[k]), i % 251) << i;
  for (const auto& room : rooms) ObjectMemory::Release(room.first, room.second);
  ObjectMemory::Release(nullptr, 8);
}

TEST(ObjectMemory, RoomGivenBackIsUsedAgainForTheSameSize) {
#if defined(ZYL_ADDRESS_SANITIZER)
  GTEST_SKIP() << "built with AddressSanitizer: every object has an allocation of its own";
#endif
  ObjectMemory memory;
  void* first = memory.Allocate(200);
  void* other = memory.Allocate(64);
  ObjectMemory::Release(first, 200);
  EXPECT_EQ(memory.Allocate(200), first);
  EXPECT_NE(memory.Allocate(200), first);
  ObjectMemory::Release(other, 64);
}

TEST(ObjectMemory, ContainersKeepTheirItemsInAPool) {
  ObjectMemory memory;
  ObjectMemory other;
  std::vector<int, PooledAllocator<int>> numbers{PooledAllocator<int>(memory)};
  for (int i = 0; i < 5000; ++i) numbers.push_back(i);  // grows through many sizes
  for (int i = 0; i < 5000; ++i) ASSERT_EQ(numbers[static_cast<size_t>(i)], i);
  EXPECT_TRUE(numbers.get_allocator() == PooledAllocator<double>(memory));
  EXPECT_TRUE(numbers.get_allocator() != PooledAllocator<int>(other));
  std::vector<int, PooledAllocator<int>> copy(numbers);
  EXPECT_EQ(copy.get_allocator().Pool(), &memory);
  EXPECT_EQ(copy, numbers);
#if !defined(ZYL_ADDRESS_SANITIZER)
  // What a container gives back serves the next request of its size.
  PooledAllocator<double> doubles(memory);
  double* room = doubles.allocate(40);
  doubles.deallocate(room, 40);
  EXPECT_EQ(doubles.allocate(40), room);
#endif
}

TEST(ObjectMemory, ObjectsOfManyManagersComeAndGo) {
  std::set<const KZylObject*> alive;
  {
    KZylSdkManager a;
    std::vector<KZylObject*> destroyed;
    {
      KZylSdkManager b;
      for (int i = 0; i < 5000; ++i) {
        KZylNode* node = KZylNode::Create(i % 2 ? &a : &b, "n");
        EXPECT_TRUE(alive.insert(node).second);
        KZylSurfacePhong* phong = KZylSurfacePhong::Create(&a, "m");
        EXPECT_TRUE(alive.insert(phong).second);
        if (i % 3 == 0) destroyed.push_back(phong);
      }
      a.DestroyObjects(destroyed);
      // Room of destroyed objects serves new ones; their values are their own.
      for (int i = 0; i < 100; ++i) {
        KZylSurfacePhong* phong = KZylSurfacePhong::Create(&a, "again");
        EXPECT_EQ(phong->GetName(), "again");
        EXPECT_EQ(phong->GetShadingModel().GetString(), "phong");
      }
    }
    EXPECT_EQ(a.GetSrcObjectCount<KZylNode>(), 2500);
  }
}

}  // namespace
