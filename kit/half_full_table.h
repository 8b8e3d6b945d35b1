#pragma once
// The size of an open-addressing hash table kept at most half full, so that every probe ends at
// a free slot within a few steps.

#include <cstddef>

namespace zylsdk {

// The slots for `entries` entries: a power of two, at least `least` (a power of two) and at
// least twice the entries.
inline size_t HalfFullSlots(size_t entries, size_t least) {
  size_t slots = least;
  while (slots < 2 * entries) slots *= 2;
  return slots;
}

}  // namespace zylsdk
