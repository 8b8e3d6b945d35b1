#include "kit/memory_advice.h"

#include <cstdint>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace zylsdk {

void AdviseHugePages(const void* data, size_t bytes) {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
  constexpr uintptr_t kHugePage = uintptr_t{2} << 20;
  // Below this the few huge pages inside would not pay for the call.
  constexpr size_t kSmallest = size_t{8} << 20;
  if (!data || bytes < kSmallest) return;
  const uintptr_t begin = (reinterpret_cast<uintptr_t>(data) + kHugePage - 1) & ~(kHugePage - 1);
  const uintptr_t end = (reinterpret_cast<uintptr_t>(data) + bytes) & ~(kHugePage - 1);
  // Advice only: a system that refuses it reads at the usual cost.
  if (begin < end) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#else
  (void)data;
  (void)bytes;
#endif
}

}  // namespace zylsdk
