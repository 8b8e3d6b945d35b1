#pragma once
// How the values of one item of a source become a kit value: component k of a vector or colour,
// value 4r+c of a matrix as the kit's row c, column r. Components not set keep what a default
// value has (0, a colour's alpha 1, a matrix's from the identity).

#include <type_traits>

#include "kit/kmath.h"
#include "kit/kstring.h"

namespace zylsdk {

inline void SetComponent(double& item, int, double value) { item = value; }
inline void SetComponent(KZylVector2& item, int k, double value) { item[k] = value; }
inline void SetComponent(KZylVector4& item, int k, double value) { item[k] = value; }
inline void SetComponent(KZylColor& item, int k, double value) {
  double* channels[4] = {&item.mRed, &item.mGreen, &item.mBlue, &item.mAlpha};
  *channels[k] = value;
}
inline void SetComponent(KZylXMatrix& item, int k, double value) { item.mData[k % 4][k / 4] = value; }
inline void SetComponent(KString& item, int, const KString& value) { item = value; }

// The components a value of T takes.
template <class T>
constexpr int ComponentsOf() {
  if constexpr (std::is_same_v<T, KZylVector2>) return 2;
  if constexpr (std::is_same_v<T, KZylVector4> || std::is_same_v<T, KZylColor>) return 4;
  if constexpr (std::is_same_v<T, KZylXMatrix>) return 16;
  return 1;
}

}  // namespace zylsdk
