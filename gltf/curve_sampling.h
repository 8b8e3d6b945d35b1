#pragma once
// Values of kit animation curves at any time, and the key times of several curves together.

#include <vector>

#include "kit/take.h"

namespace zylgltf {

// The curve's value at `seconds`: the first or last key's value outside the keys; between two
// keys, the first key's interpolation decides: constant keeps its value, linear blends, cubic
// follows the Hermite curve of the two keys' derivatives (values per second).
double EvaluateCurve(const zylsdk::KFCurve& curve, double seconds);

// Key times, in seconds, of every curve given (null ones skipped), sorted and distinct as
// single-precision numbers, as glTF stores them.
std::vector<float> KeyTimes(const std::vector<const zylsdk::KFCurve*>& curves);

// How the given curves interpolate, when they all do it alike and all have a key at every
// one of `times`: constant, linear or cubic; 0 when they differ.
int CommonInterpolation(const std::vector<const zylsdk::KFCurve*>& curves, const std::vector<float>& times);

// `times` with `steps - 1` evenly spaced times added inside every interval.
std::vector<float> Subdivided(const std::vector<float>& times, int steps);

}  // namespace zylgltf
