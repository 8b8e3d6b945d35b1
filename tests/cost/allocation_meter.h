#pragma once
// Counts the memory this test program holds: every operator new and every allocation of
// libxml2, so that a test can ask how much a read held at its peak.

#include <cstddef>

namespace zyltest {

// Starts a measurement: the peak is reset to what is held now.
void ResetAllocationPeak();
// The most bytes held at once since the last reset, beyond what was held at the reset.
size_t AllocationPeakSinceReset();

}  // namespace zyltest
