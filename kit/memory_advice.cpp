#include "kit/memory_advice.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <map>
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

#if defined(__linux__)
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

void GiveBackPages(void* data, size_t bytes) {
#if defined(__linux__) && defined(MADV_DONTNEED)
  // Only whole pages go: the allocator's own words next to the range stay where they are.
  if (data && bytes > 0) AdviseWholeUnits(data, bytes, static_cast<uintptr_t>(sysconf(_SC_PAGESIZE)), MADV_DONTNEED);
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

// ------------------------------------------------------------------------------ PageRecycling

namespace {

thread_local PageRecycling* tRecycling = nullptr;

size_t RoundUp(size_t bytes, size_t unit) { return (bytes + unit - 1) / unit * unit; }

// Blocks from this size on get a mapping of their own where the system allows it.
#if defined(__linux__) && !defined(ZYL_ADDRESS_SANITIZER)
bool OwnMapping(size_t bytes) { return bytes >= kHugePage && bytes <= SIZE_MAX - 2 * kHugePage; }
#else
bool OwnMapping(size_t) { return false; }
#endif

#if defined(__linux__)
void Unmap(char* data, size_t bytes) { munmap(data, bytes); }
#else
void Unmap(char*, size_t) {}
#endif

}  // namespace

// Runs of kept pages by length, each starting on a huge page: a block takes the smallest run that
// holds all it wants, else the largest.
struct PageRecycling::Kept {
  std::multimap<size_t, char*> runs;
  size_t bytes = 0;

  void Keep(char* data, size_t length) {
    try {
      runs.emplace(length, data);
      bytes += length;
    } catch (const std::bad_alloc&) {
      Unmap(data, length);
    }
  }
};

PageRecycling::PageRecycling() : mKept(std::make_unique<Kept>()), mOuter(tRecycling) { tRecycling = this; }

PageRecycling::~PageRecycling() {
  tRecycling = mOuter;
  for (const auto& [length, data] : mKept->runs) Unmap(data, length);
}

size_t PageRecycling::KeptBytes() const { return mKept->bytes; }

// --------------------------------------------------------------------------------- LargeBlock

LargeBlock::LargeBlock(size_t bytes, size_t alignment) : mAlignment(std::max(alignment, alignof(std::max_align_t))) {
  if (OwnMapping(bytes)) {
    if (!TakeKeptPages(bytes, bytes)) Map(bytes);
    return;
  }
  mData = static_cast<char*>(mAlignment > __STDCPP_DEFAULT_NEW_ALIGNMENT__
                                 ? ::operator new(bytes, std::align_val_t{mAlignment})
                                 : ::operator new(bytes));
  mSize = bytes;
  AdviseHugePages(mData, bytes);
}

LargeBlock LargeBlock::ForSlab(size_t least, size_t wanted) {
  LargeBlock block;
  if (OwnMapping(wanted) && block.TakeKeptPages(std::min(least, wanted), wanted)) return block;
  return LargeBlock(wanted);
}

bool LargeBlock::TakeKeptPages(size_t least, size_t wanted) {
  if (!tRecycling) return false;
  PageRecycling::Kept& kept = *tRecycling->mKept;
  if (kept.runs.empty()) return false;
  auto run = kept.runs.lower_bound(wanted);
  if (run == kept.runs.end()) run = std::prev(run);
  if (run->first < least) return false;
  const auto [length, data] = *run;
  kept.runs.erase(run);
  kept.bytes -= length;
  // Whole huge pages, so that what is left starts on one.
  const size_t taken = std::min(length, RoundUp(wanted, kHugePage));
  if (length > taken) kept.Keep(data + taken, length - taken);
  mData = data;
  mSize = taken;
  mMapped = true;
  mWritten = true;
  gMappedBytes += taken;
  return true;
}

void LargeBlock::Map(size_t bytes) {
#if defined(__linux__)
  // Map a huge page more than asked, then give back what lies before the first aligned byte and
  // after the block: an aligned allocation of the general heap would keep that slack.
  const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  const size_t length = RoundUp(bytes, page);
  void* mapped = mmap(nullptr, length + kHugePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapped == MAP_FAILED) throw std::bad_alloc();
  const uintptr_t start = reinterpret_cast<uintptr_t>(mapped);
  const uintptr_t aligned = (start + kHugePage - 1) & ~(uintptr_t{kHugePage} - 1);
  if (aligned > start) munmap(mapped, aligned - start);
  const uintptr_t tail = aligned + length;
  const uintptr_t end = start + length + kHugePage;
  if (end > tail) munmap(reinterpret_cast<void*>(tail), end - tail);
  mData = reinterpret_cast<char*>(aligned);
  mSize = length;
  mMapped = true;
  gMappedBytes += length;
  AdviseHugePages(mData, length);
#else
  (void)bytes;
#endif
}

LargeBlock& LargeBlock::operator=(LargeBlock&& other) noexcept {
  std::swap(mData, other.mData);
  std::swap(mSize, other.mSize);
  std::swap(mMapped, other.mMapped);
  std::swap(mWritten, other.mWritten);
  std::swap(mAlignment, other.mAlignment);
  return *this;
}

LargeBlock::~LargeBlock() {
  if (!mData) return;
  if (mMapped) {
    gMappedBytes -= mSize;
    if (tRecycling) {
      tRecycling->mKept->Keep(mData, mSize);
    } else {
      Unmap(mData, mSize);
    }
    return;
  }
  if (mAlignment > __STDCPP_DEFAULT_NEW_ALIGNMENT__) {
    ::operator delete(mData, std::align_val_t{mAlignment});
  } else {
    ::operator delete(mData);
  }
}

size_t MappedLargeBlockBytes() { return gMappedBytes; }

}  // namespace zylsdk
