#pragma once
// KTime: a point in time counted in integer ticks, and KTimeSpan, a start and a stop.

#include <cstdint>

namespace zylsdk {

class KTime {
 public:
  // Ticks per second.
  static constexpr int64_t kTicksPerSecond = 1000000000;

  KTime() = default;
  explicit KTime(int64_t ticks) : mTicks(ticks) {}

  // Seconds to ticks, rounded to the nearest tick; values beyond the tick range saturate and
  // a non-finite value gives 0.
  void SetSecondDouble(double seconds);
  double GetSecondDouble() const { return static_cast<double>(mTicks) / static_cast<double>(kTicksPerSecond); }
  void Set(int64_t ticks) { mTicks = ticks; }
  int64_t Get() const { return mTicks; }

  friend bool operator==(KTime a, KTime b) { return a.mTicks == b.mTicks; }
  friend bool operator!=(KTime a, KTime b) { return a.mTicks != b.mTicks; }
  friend bool operator<(KTime a, KTime b) { return a.mTicks < b.mTicks; }
  friend bool operator>(KTime a, KTime b) { return a.mTicks > b.mTicks; }
  friend bool operator<=(KTime a, KTime b) { return a.mTicks <= b.mTicks; }
  friend bool operator>=(KTime a, KTime b) { return a.mTicks >= b.mTicks; }

 private:
  int64_t mTicks = 0;
};

class KTimeSpan {
 public:
  KTimeSpan() = default;
  KTimeSpan(KTime start, KTime stop) : mStart(start), mStop(stop) {}
  void Set(KTime start, KTime stop) { mStart = start; mStop = stop; }
  KTime GetStart() const { return mStart; }
  KTime GetStop() const { return mStop; }

 private:
  KTime mStart;
  KTime mStop;
};

}  // namespace zylsdk
