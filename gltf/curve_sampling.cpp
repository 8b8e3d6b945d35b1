#include "gltf/curve_sampling.h"

#include <algorithm>

namespace zylgltf {

using namespace zylsdk;

namespace {

double Seconds(const KFCurve& curve, int key) { return curve.KeyGetTime(key).GetSecondDouble(); }

}  // namespace

double EvaluateCurve(const KFCurve& curve, double seconds) {
  const int count = curve.KeyGetCount();
  if (count == 0) return 0.0;
  if (seconds <= Seconds(curve, 0)) return curve.KeyGetValue(0);
  if (seconds >= Seconds(curve, count - 1)) return curve.KeyGetValue(count - 1);
  // The last key at or before `seconds`.
  int low = 0;
  int high = count - 1;
  while (high - low > 1) {
    const int middle = low + (high - low) / 2;
    if (Seconds(curve, middle) <= seconds) low = middle; else high = middle;
  }
  const double start = Seconds(curve, low);
  const double span = Seconds(curve, high) - start;
  const double v0 = curve.KeyGetValue(low);
  const double v1 = curve.KeyGetValue(high);
  if (!(span > 0.0)) return v0;
  const double s = (seconds - start) / span;
  switch (curve.KeyGetInterpolation(low)) {
    case KFCurve::eInterpolationConstant: return v0;
    case KFCurve::eInterpolationLinear: return v0 + (v1 - v0) * s;
    default: {
      const double m0 = curve.KeyGetRightDerivative(low) * span;
      const double m1 = curve.KeyGetLeftDerivative(high) * span;
      const double s2 = s * s;
      const double s3 = s2 * s;
      return (2 * s3 - 3 * s2 + 1) * v0 + (s3 - 2 * s2 + s) * m0 + (-2 * s3 + 3 * s2) * v1 + (s3 - s2) * m1;
    }
  }
}

std::vector<float> KeyTimes(const std::vector<const KFCurve*>& curves) {
  std::vector<float> times;
  for (const KFCurve* curve : curves)
    if (curve)
      for (int key = 0; key < curve->KeyGetCount(); ++key) times.push_back(static_cast<float>(Seconds(*curve, key)));
  std::sort(times.begin(), times.end());
  times.erase(std::unique(times.begin(), times.end()), times.end());
  return times;
}

int CommonInterpolation(const std::vector<const KFCurve*>& curves, const std::vector<float>& times) {
  int common = -1;
  for (const KFCurve* curve : curves) {
    if (!curve) continue;
    if (curve->KeyGetCount() != static_cast<int>(times.size())) return 0;
    for (int key = 0; key < curve->KeyGetCount(); ++key) {
      if (static_cast<float>(Seconds(*curve, key)) != times[static_cast<size_t>(key)]) return 0;
      // The last key's interpolation governs no interval.
      if (key + 1 == curve->KeyGetCount()) break;
      const int interpolation = curve->KeyGetInterpolation(key);
      if (common >= 0 && interpolation != common) return 0;
      common = interpolation;
    }
  }
  return common < 0 ? KFCurve::eInterpolationLinear : common;
}

std::vector<float> Subdivided(const std::vector<float>& times, int steps) {
  std::vector<float> result;
  for (size_t i = 0; i < times.size(); ++i) {
    result.push_back(times[i]);
    if (i + 1 == times.size()) break;
    for (int step = 1; step < steps; ++step) {
      const float inside = times[i] + (times[i + 1] - times[i]) * static_cast<float>(step) / static_cast<float>(steps);
      if (inside > result.back() && inside < times[i + 1]) result.push_back(inside);
    }
  }
  return result;
}

}  // namespace zylgltf
