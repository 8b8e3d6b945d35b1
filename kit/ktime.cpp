#include "kit/ktime.h"

#include <cmath>
#include <limits>

namespace zylsdk {

void KTime::SetSecondDouble(double seconds) {
  double ticks = std::round(seconds * static_cast<double>(kTicksPerSecond));
  if (!std::isfinite(seconds)) {
    mTicks = 0;
  } else if (ticks >= 9.2e18) {
    mTicks = std::numeric_limits<int64_t>::max();
  } else if (ticks <= -9.2e18) {
    mTicks = std::numeric_limits<int64_t>::min();
  } else {
    mTicks = static_cast<int64_t>(ticks);
  }
}

}  // namespace zylsdk
