#include "kit/object_memory.h"

#include <algorithm>
#include <new>

#include "kit/address_sanitizer.h"

namespace zylsdk {
namespace {

constexpr size_t kFirstSlab = 64 * 1024;
constexpr size_t kLargestSlab = 16 * 1024 * 1024;

}  // namespace

struct ObjectMemory::Header {
  ObjectMemory* pool;  // null for an object with an allocation of its own
};

ObjectMemory::~ObjectMemory() = default;

void* ObjectMemory::Allocate(size_t bytes) {
  static_assert(sizeof(Header) == 8, "the object after a header is aligned to 8 bytes");
  const size_t total = (sizeof(Header) + bytes + kStep - 1) / kStep * kStep;
#if defined(ZYL_ADDRESS_SANITIZER)
  const bool pooled = false;
#else
  const bool pooled = total <= kLargestPooled;
#endif
  Header* header;
  if (!pooled) {
    header = static_cast<Header*>(::operator new(total));
    header->pool = nullptr;
    return header + 1;
  }
  const size_t sizeClass = total / kStep;
  if (mFree.size() <= sizeClass) mFree.resize(sizeClass + 1);
  std::vector<void*>& free = mFree[sizeClass];
  if (!free.empty()) {
    header = static_cast<Header*>(free.back());
    free.pop_back();
  } else {
    header = static_cast<Header*>(Carve(total));
  }
  header->pool = this;
  return header + 1;
}

void* ObjectMemory::Carve(size_t bytes) {
  if (mLeft < bytes) {
    // What is left of the last slab is too small for this object: it stays unused.
    mSlabs.push_back(LargeBlock::ForSlab(bytes, std::clamp(mSlabBytes / 8, kFirstSlab, kLargestSlab)));
    mCursor = mSlabs.back().data();
    mLeft = mSlabs.back().size();
    mSlabBytes += mLeft;
  }
  // An object is written as soon as it is carved.
  char* const slab = mSlabs.back().data();
  const size_t used = static_cast<size_t>(mCursor - slab);
  if (!mSlabs.back().PagesWritten()) mAhead.Before(slab, 0, used + bytes, used + mLeft);
  void* room = mCursor;
  mCursor += bytes;
  mLeft -= bytes;
  return room;
}

void ObjectMemory::Release(void* object, size_t bytes) {
  if (!object) return;
  Header* header = static_cast<Header*>(object) - 1;
  if (!header->pool) {
    ::operator delete(header);
    return;
  }
  const size_t sizeClass = (sizeof(Header) + bytes + kStep - 1) / kStep;
  // Making room in the list may fail: the object's room is then simply not reused.
  try {
    header->pool->mFree[sizeClass].push_back(header);
  } catch (const std::bad_alloc&) {
  }
}

}  // namespace zylsdk
