// Keys: a curve's keys from a sampler, with their interpolations and tangent derivatives, and
// the take's time span that they widen.

#include <cfloat>
#include <cmath>
#include <limits>
#include <vector>

#include "kit/memory_advice.h"
#include "reader/animation/animation_steps.h"

namespace zylsdk {
namespace {

// The array's value at a 64-bit position; the type's default past either end.
template <class T>
T ValueAt(const KArrayTemplate<T>& array, int64_t at) {
  return at >= 0 && at < array.GetCount() ? array[static_cast<int>(at)] : T();
}

// Seconds truncated to a whole number, saturated to the tick range.
int64_t TruncatedSeconds(double seconds) {
  if (seconds >= 9.2e18) return std::numeric_limits<int64_t>::max();
  if (seconds <= -9.2e18) return std::numeric_limits<int64_t>::min();
  return static_cast<int64_t>(seconds);
}

double Seconds(const KFCurve& curve, int key) { return curve.KeyGetTime(key).GetSecondDouble(); }

// A tangent over its weighted span. Keys too far out in time for their seconds to differ give
// a flat derivative rather than an infinite one.
float Slope(double tangent, double weightedSpan) { return weightedSpan > 0.0 ? ToFloat(tangent / weightedSpan) : 0.0f; }

// LINEAR and STEP change a key's interpolation, BEZIER keeps it cubic, anything else warns and
// keeps it cubic.
void SetInterpolations(KZylReaderCollada& reader, const KArrayTemplate<KString>& names, KFCurve& curve,
                       int64_t component, int64_t stride) {
  for (int key = 0; key < curve.KeyGetCount(); ++key) {
    const int64_t at = key * stride + component;
    if (at >= names.GetCount()) break;
    const KString& name = names[static_cast<int>(at)];
    if (name == "LINEAR") {
      curve.KeySetInterpolation(key, KFCurve::eInterpolationLinear);
    } else if (name == "STEP") {
      curve.KeySetInterpolation(key, KFCurve::eInterpolationConstant);
    } else if (name != "BEZIER") {
      reader.AddNotificationWarning("this interpolation type is not supported: " + name +
                                    " It will be interpreted as BEZIER.");
    }
  }
}

// A tangent is a change of value over the span to the neighbouring key: its derivative divides
// it by the span and the tangent's weight. A key whose two derivatives differ is broken.
void SetDerivatives(const SamplerArrays& arrays, KFCurve& curve, int64_t component, int64_t stride) {
  const int count = curve.KeyGetCount();
  for (int key = 0; key < count; ++key) {
    const int64_t at = key * stride + component;
    const double time = Seconds(curve, key);
    if (key > 0 && at < arrays.inTangents.GetCount()) {
      const double span = (time - Seconds(curve, key - 1)) * curve.KeyGetLeftTangeantWeight(key);
      curve.KeySetLeftDerivative(key, Slope(arrays.inTangents[static_cast<int>(at)], span));
    }
    if (key + 1 < count && at < arrays.outTangents.GetCount()) {
      const double span = (Seconds(curve, key + 1) - time) * curve.KeyGetRightTangeantWeight(key);
      const float derivative = Slope(arrays.outTangents[static_cast<int>(at)], span);
      curve.KeySetRightDerivative(key, derivative);
      if (key > 0 && derivative != curve.KeyGetLeftDerivative(key)) curve.KeySetBreak(key, true);
    }
  }
}

}  // namespace

float ToFloat(double value) {
  if (std::isnan(value)) return std::numeric_limits<float>::quiet_NaN();
  if (value > FLT_MAX) return FLT_MAX;
  if (value < -FLT_MAX) return -FLT_MAX;
  return static_cast<float>(value);
}

void TakeSpan::Widen(double seconds) {
  if (firstKey) {
    // The first key of an animation restarts the span at its time in whole seconds, kept as a
    // raw tick count: a key at 2.5 s starts the span at tick 2.
    start.Set(TruncatedSeconds(seconds));
    stop.Set(TruncatedSeconds(seconds));
    firstKey = false;
    return;
  }
  if (start.GetSecondDouble() > seconds) start.SetSecondDouble(seconds);
  if (seconds > stop.GetSecondDouble()) stop.SetSecondDouble(seconds);
}

void SetCurveKeys(AnimationContext& context, const SamplerArrays& arrays, KFCurve& curve, int64_t component,
                  int64_t stride) {
  const bool interpolated = !arrays.interpolations.IsEmpty();
  const bool tangents = !arrays.inTangents.IsEmpty() || !arrays.outTangents.IsEmpty();
  const int interpolation = interpolated ? KFCurve::eInterpolationCubic : KFCurve::eInterpolationLinear;
  const int tangentMode = interpolated && tangents ? KFCurve::eTangentUser : KFCurve::eTangentAuto;

  curve.KeyModifyBegin();
  std::vector<KFCurveKey> keys;
  ReserveToFill(keys, static_cast<size_t>(arrays.times.GetCount()));
  for (int i = 0; i < arrays.times.GetCount(); ++i) {
    const double seconds = arrays.times[i];
    // A key needs a point in time.
    if (!std::isfinite(seconds)) continue;
    KFCurveKey key;
    key.time.SetSecondDouble(seconds);
    key.value = ToFloat(ValueAt(arrays.values, i * stride + component));
    key.interpolation = interpolation;
    key.tangentMode = tangentMode;
    keys.push_back(key);
    context.span.Widen(seconds);
  }
  curve.KeyAddMany(std::move(keys));
  if (interpolated) SetInterpolations(context.reader, arrays.interpolations, curve, component, stride);
  if (tangents) SetDerivatives(arrays, curve, component, stride);
  curve.KeyModifyEnd();
}

}  // namespace zylsdk
