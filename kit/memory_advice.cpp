#include "kit/memory_advice.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#if defined(__linux__)
#include <sys/mman.h>
#include <unistd.h>
#endif

#include "kit/address_sanitizer.h"

namespace zylsdk {
namespace {

constexpr size_t kHugePage = size_t{2} << 20;

std::atomic<size_t> gMappedBytes{0};

#if defined(__linux__) && (defined(MADV_HUGEPAGE) || defined(MADV_POPULATE_WRITE))
// Gives the system `advice` for the whole units of `unit` bytes (a power of two) inside
// [data, data + bytes). Advice only: a system that refuses it reads at the usual cost.
void AdviseWholeUnits(const void* data, size_t bytes, uintptr_t unit, int advice) {
  const uintptr_t begin = (reinterpret_cast<uintptr_t>(data) + unit - 1) & ~(unit - 1);
  const uintptr_t end = (reinterpret_cast<uintptr_t>(data) + bytes) & ~(unit - 1);
  if (begin < end) madvise(reinterpret_cast<void*>(begin), end - begin, advice);
}
#endif

}  // namespace

bool HugePagesWanted() {
  static const bool wanted = [] {
    const char* setting = std::getenv("ZYL_HUGE_PAGES");
    return setting && std::strcmp(setting, "1") == 0;
  }();
  return wanted;
}

void AdviseHugePages(const void* data, size_t bytes) {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
  // A huge page spares 511 faults of 4 KB: one inside the range pays for the call.
  if (data && bytes >= kHugePage && HugePagesWanted()) AdviseWholeUnits(data, bytes, kHugePage, MADV_HUGEPAGE);
#else
  (void)data;
  (void)bytes;
#endif
}

void PrepareForWriting(void* data, size_t bytes) {
#if defined(__linux__) && defined(MADV_POPULATE_WRITE)
  // A call costs less than a fault on a virtual machine and about as much elsewhere: two pages
  // pay for it. A kernel older than 5.14 refuses the request; the pages then fault in as they
  // are written.
  constexpr size_t kWorthIt = 8 * 1024;
  if (data && bytes >= kWorthIt)
    AdviseWholeUnits(data, bytes, static_cast<uintptr_t>(sysconf(_SC_PAGESIZE)), MADV_POPULATE_WRITE);
#else
  (void)data;
  (void)bytes;
#endif
}

void WriteAhead::Advance(char* room, size_t written, size_t end, size_t size) {
  constexpr size_t kStep = size_t{1} << 20;
  if (room != mRoom) mRoom = room, mReady = written;
  if (end <= mReady) return;
  const size_t next = std::min(size, std::max(end, mReady + kStep));
  if (next > mReady) PrepareForWriting(room + mReady, next - mReady);
  mReady = std::max(mReady, next);
}

LargeBlock::LargeBlock(size_t bytes) : mData(nullptr), mMapped(0) {
#if defined(__linux__) && !defined(ZYL_ADDRESS_SANITIZER)
  if (bytes >= kHugePage && bytes <= SIZE_MAX - 2 * kHugePage) {
    // Map a huge page more than asked, then give back what lies before the first aligned byte and
    // after the block: an aligned allocation of the general heap would keep that slack.
    const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    const size_t length = (bytes + page - 1) / page * page;
    void* mapped = mmap(nullptr, length + kHugePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) throw std::bad_alloc();
    const uintptr_t start = reinterpret_cast<uintptr_t>(mapped);
    const uintptr_t aligned = (start + kHugePage - 1) & ~(uintptr_t{kHugePage} - 1);
    if (aligned > start) munmap(mapped, aligned - start);
    const uintptr_t tail = aligned + length;
    const uintptr_t end = start + length + kHugePage;
    if (end > tail) munmap(reinterpret_cast<void*>(tail), end - tail);
    mData = reinterpret_cast<char*>(aligned);
    mMapped = length;
    gMappedBytes += length;
    AdviseHugePages(mData, length);
    return;
  }
#endif
  mData = static_cast<char*>(::operator new(bytes));
  AdviseHugePages(mData, bytes);
}

LargeBlock& LargeBlock::operator=(LargeBlock&& other) noexcept {
  std::swap(mData, other.mData);
  std::swap(mMapped, other.mMapped);
  return *this;
}

LargeBlock::~LargeBlock() {
  if (!mData) return;
#if defined(__linux__)
  if (mMapped) {
    munmap(mData, mMapped);
    gMappedBytes -= mMapped;
    return;
  }
#endif
  ::operator delete(mData);
}

size_t MappedLargeBlockBytes() { return gMappedBytes; }

}  // namespace zylsdk
