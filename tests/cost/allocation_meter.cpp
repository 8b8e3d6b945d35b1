// The meter replaces the global operator new and delete of this program and hands libxml2
// counting allocation functions before any test runs. Sizes come from malloc_usable_size, so
// that frees need no bookkeeping of their own. The large blocks the kit maps apart from the heap
// are counted with what is held at each allocation.

#include "tests/cost/allocation_meter.h"

#include <libxml/xmlmemory.h>
#include <malloc.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

#include "kit/memory_advice.h"

namespace zyltest {
namespace {

// Signed: a block that libxml2 made before it was handed these functions may be freed through
// them, which takes the count below what was counted.
std::atomic<int64_t> gHeld{0};
std::atomic<int64_t> gPeak{0};
std::atomic<int64_t> gHeldAtReset{0};

int64_t SizeOf(void* block) { return static_cast<int64_t>(malloc_usable_size(block)); }
int64_t Mapped() { return static_cast<int64_t>(zylsdk::MappedLargeBlockBytes()); }

void Count(void* block) {
  if (!block) return;
  const int64_t held = gHeld.fetch_add(SizeOf(block)) + SizeOf(block) + Mapped();
  int64_t peak = gPeak.load();
  while (held > peak && !gPeak.compare_exchange_weak(peak, held)) {
  }
}

void Uncount(void* block) {
  if (block) gHeld.fetch_sub(SizeOf(block));
}

void* CountedMalloc(size_t size) {
  void* block = std::malloc(size);
  Count(block);
  return block;
}

void CountedFree(void* block) {
  Uncount(block);
  std::free(block);
}

void* CountedRealloc(void* block, size_t size) {
  Uncount(block);
  void* moved = std::realloc(block, size);
  // A failed realloc keeps the old block.
  Count(moved ? moved : block);
  return moved;
}

char* CountedStrdup(const char* text) {
  const size_t length = std::strlen(text) + 1;
  char* copy = static_cast<char*>(CountedMalloc(length));
  if (copy) std::memcpy(copy, text, length);
  return copy;
}

// libxml2 takes its allocation functions before it allocates anything.
[[maybe_unused]] const int kLibxmlCounted = xmlMemSetup(CountedFree, CountedMalloc, CountedRealloc, CountedStrdup);

}  // namespace

void ResetAllocationPeak() {
  gHeldAtReset = gHeld.load() + Mapped();
  gPeak = gHeldAtReset.load();
}

size_t AllocationPeakSinceReset() {
  const int64_t grown = gPeak.load() - gHeldAtReset.load();
  return grown > 0 ? static_cast<size_t>(grown) : 0;
}

}  // namespace zyltest

void* operator new(size_t size) {
  void* block = zyltest::CountedMalloc(size ? size : 1);
  if (!block) throw std::bad_alloc();
  return block;
}
void* operator new[](size_t size) { return operator new(size); }
void operator delete(void* block) noexcept { zyltest::CountedFree(block); }
void operator delete[](void* block) noexcept { zyltest::CountedFree(block); }
void operator delete(void* block, size_t) noexcept { zyltest::CountedFree(block); }
void operator delete[](void* block, size_t) noexcept { zyltest::CountedFree(block); }
