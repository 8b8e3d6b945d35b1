#pragma once
// Comparisons of the kit's vectors and matrices within a tolerance, for test assertions:
// EXPECT_TRUE(zyltest::Near(actual, expected)).

#include <gtest/gtest.h>

#include "kit/kmath.h"

namespace zyltest {

// The first `components` components of the vectors differ by at most `tolerance`.
::testing::AssertionResult Near(const zylsdk::KZylVector4& actual, const zylsdk::KZylVector4& expected,
                                double tolerance = 1e-9, int components = 4);
::testing::AssertionResult Near(const zylsdk::KZylMatrix& actual, const zylsdk::KZylMatrix& expected,
                                double tolerance = 1e-9);

}  // namespace zyltest
