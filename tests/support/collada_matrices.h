#pragma once
// COLLADA's transform elements as the tests compute them on their own: 4x4 matrices for column
// vectors, listed by rows as COLLADA writes them, and their comparison with the kit's matrices
// (row vectors, so the kit's entry (r, c) is COLLADA's (c, r)).

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <sstream>
#include <string>

#include "kit/kmath.h"

namespace zyltest {

using ColladaMatrix = std::array<std::array<double, 4>, 4>;

inline ColladaMatrix IdentityMatrix() {
  ColladaMatrix m{};
  for (int i = 0; i < 4; ++i) m[i][i] = 1.0;
  return m;
}

inline ColladaMatrix operator*(const ColladaMatrix& a, const ColladaMatrix& b) {
  ColladaMatrix m{};
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c)
      for (int k = 0; k < 4; ++k) m[r][c] += a[r][k] * b[k][c];
  return m;
}

inline ColladaMatrix TranslateMatrix(double x, double y, double z) {
  ColladaMatrix m = IdentityMatrix();
  m[0][3] = x, m[1][3] = y, m[2][3] = z;
  return m;
}

inline ColladaMatrix ScaleMatrix(double x, double y, double z) {
  ColladaMatrix m = IdentityMatrix();
  m[0][0] = x, m[1][1] = y, m[2][2] = z;
  return m;
}

// Through the unit quaternion of the rotation.
inline ColladaMatrix RotateMatrix(double x, double y, double z, double degrees) {
  const double length = std::sqrt(x * x + y * y + z * z);
  const double half = degrees * M_PI / 360.0;
  const double w = std::cos(half), s = std::sin(half) / length;
  const double i = x * s, j = y * s, k = z * s;
  ColladaMatrix m = IdentityMatrix();
  m[0] = {1 - 2 * (j * j + k * k), 2 * (i * j - k * w), 2 * (i * k + j * w), 0};
  m[1] = {2 * (i * j + k * w), 1 - 2 * (i * i + k * k), 2 * (j * k - i * w), 0};
  m[2] = {2 * (i * k - j * w), 2 * (j * k + i * w), 1 - 2 * (i * i + j * j), 0};
  return m;
}

// The camera-style frame at `eye` whose -Z looks at `at`, Y towards `up`.
inline ColladaMatrix LookAtMatrix(const std::array<double, 3>& eye, const std::array<double, 3>& at,
                                  const std::array<double, 3>& up) {
  auto normal = [](std::array<double, 3> v) {
    const double n = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
    return std::array<double, 3>{v[0] / n, v[1] / n, v[2] / n};
  };
  auto cross = [](const std::array<double, 3>& a, const std::array<double, 3>& b) {
    return std::array<double, 3>{a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
  };
  const auto forward = normal({at[0] - eye[0], at[1] - eye[1], at[2] - eye[2]});
  const auto side = normal(cross(forward, up));
  const auto upright = cross(side, forward);
  ColladaMatrix m = IdentityMatrix();
  for (int r = 0; r < 3; ++r) m[r] = {side[r], upright[r], -forward[r], eye[r]};
  return m;
}

// The sixteen numbers of a `matrix` element, by rows.
inline std::string MatrixText(const ColladaMatrix& m) {
  std::ostringstream text;
  text.precision(17);
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) text << m[r][c] << (r == 3 && c == 3 ? "" : " ");
  return text.str();
}

// Every entry of the kit's `actual` within `tolerance` of `expected`, relative to the largest
// entry of `expected`.
inline ::testing::AssertionResult KitMatrixIs(const zylsdk::KZylMatrix& actual, const ColladaMatrix& expected,
                                              double tolerance) {
  double largest = 0.0;
  for (const auto& row : expected)
    for (double value : row) largest = std::fmax(largest, std::fabs(value));
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c)
      if (!(std::fabs(actual.Get(c, r) - expected[r][c]) <= tolerance * largest))
        return ::testing::AssertionFailure() << "entry (" << r << ", " << c << "): " << actual.Get(c, r)
                                             << " instead of " << expected[r][c];
  return ::testing::AssertionSuccess();
}

}  // namespace zyltest
