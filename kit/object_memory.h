#pragma once
// Where a manager's objects live. A large scene is hundreds of thousands of small objects made
// one after the other and freed together with their manager: they are carved out of slabs that
// grow with what the manager holds (each an eighth of the slabs before it, within bounds, so
// that little room waits unused; the large ones can be backed by huge pages, see
// memory_advice.h), and an object's room goes back to a list of its size for the next object of
// that size. Each object is preceded by an 8-byte header that names its pool. Objects are
// aligned to 8 bytes.
//
// Built with AddressSanitizer, every object gets an allocation of its own, so that the
// sanitizer sees each one.

#include <cstddef>
#include <new>
#include <vector>

#include "kit/memory_advice.h"

namespace zylsdk {

class ObjectMemory {
 public:
  ObjectMemory() = default;
  ObjectMemory(const ObjectMemory&) = delete;
  ObjectMemory& operator=(const ObjectMemory&) = delete;
  ~ObjectMemory();

  // Room for an object of `bytes`, aligned to 8 bytes.
  void* Allocate(size_t bytes);
  // Gives back the room of an object of `bytes` made by any pool's Allocate.
  static void Release(void* object, size_t bytes);

 private:
  struct Header;

  // Objects up to this size share slabs; larger ones get an allocation of their own.
  static constexpr size_t kLargestPooled = 4096;
  static constexpr size_t kStep = 8;

  void* Carve(size_t bytes);

  std::vector<std::vector<void*>> mFree;  // by size class: (bytes / kStep)
  std::vector<LargeBlock> mSlabs;
  char* mCursor = nullptr;
  size_t mLeft = 0;
  size_t mSlabBytes = 0;  // the room of every slab so far
  WriteAhead mAhead;      // over the last slab
};

// A standard allocator over a pool, for the containers inside objects (their properties): they
// then live in the slabs with the objects instead of on the general heap.
template <class T>
class PooledAllocator {
 public:
  using value_type = T;
  static_assert(alignof(T) <= 8, "pooled room is aligned to 8 bytes");

  explicit PooledAllocator(ObjectMemory& pool) : mPool(&pool) {}
  template <class U>
  PooledAllocator(const PooledAllocator<U>& other) : mPool(other.Pool()) {}

  T* allocate(size_t count) {
    if (count > static_cast<size_t>(-1) / 2 / sizeof(T)) throw std::bad_array_new_length();
    return static_cast<T*>(mPool->Allocate(count * sizeof(T)));
  }
  void deallocate(T* room, size_t count) { ObjectMemory::Release(room, count * sizeof(T)); }

  ObjectMemory* Pool() const { return mPool; }
  template <class U>
  bool operator==(const PooledAllocator<U>& other) const { return mPool == other.Pool(); }
  template <class U>
  bool operator!=(const PooledAllocator<U>& other) const { return mPool != other.Pool(); }

 private:
  ObjectMemory* mPool;
};

}  // namespace zylsdk
