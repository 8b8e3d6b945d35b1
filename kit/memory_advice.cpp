#include "kit/memory_advice.h"

#include <cstdint>
#include <new>
#include <utility>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace zylsdk {
namespace {

constexpr size_t kHugePage = size_t{2} << 20;

}  // namespace

void AdviseHugePages(const void* data, size_t bytes) {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
  // A huge page spares 511 faults of 4 KB: one inside the range pays for the call.
  if (!data || bytes < kHugePage) return;
  const uintptr_t begin = (reinterpret_cast<uintptr_t>(data) + kHugePage - 1) & ~(kHugePage - 1);
  const uintptr_t end = (reinterpret_cast<uintptr_t>(data) + bytes) & ~(kHugePage - 1);
  // Advice only: a system that refuses it reads at the usual cost.
  if (begin < end) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#else
  (void)data;
  (void)bytes;
#endif
}

LargeBlock::LargeBlock(size_t bytes) : mAligned(bytes >= kHugePage) {
  mData = static_cast<char*>(mAligned ? ::operator new(bytes, std::align_val_t{kHugePage}) : ::operator new(bytes));
  AdviseHugePages(mData, bytes);
}

LargeBlock& LargeBlock::operator=(LargeBlock&& other) noexcept {
  std::swap(mData, other.mData);
  std::swap(mAligned, other.mAligned);
  return *this;
}

LargeBlock::~LargeBlock() {
  if (!mData) return;
  if (mAligned)
    ::operator delete(mData, std::align_val_t{kHugePage});
  else
    ::operator delete(mData);
}

}  // namespace zylsdk
