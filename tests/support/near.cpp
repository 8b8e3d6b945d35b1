#include "tests/support/near.h"

#include <cmath>

namespace zyltest {

::testing::AssertionResult Near(const zylsdk::KZylVector4& actual, const zylsdk::KZylVector4& expected,
                                double tolerance, int components) {
  for (int i = 0; i < components; ++i)
    if (!(std::fabs(actual[i] - expected[i]) <= tolerance))
      return ::testing::AssertionFailure() << "component " << i << " is " << actual[i] << " instead of "
                                           << expected[i];
  return ::testing::AssertionSuccess();
}

::testing::AssertionResult Near(const zylsdk::KZylMatrix& actual, const zylsdk::KZylMatrix& expected,
                                double tolerance) {
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c)
      if (!(std::fabs(actual.mData[r][c] - expected.mData[r][c]) <= tolerance))
        return ::testing::AssertionFailure() << "differs at [" << r << "][" << c << "]: " << actual.mData[r][c]
                                             << " instead of " << expected.mData[r][c];
  return ::testing::AssertionSuccess();
}

}  // namespace zyltest
