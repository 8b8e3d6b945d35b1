// The kit's math: row-vector rotations for every rotation order, Euler angles back from
// matrices, inverses, and the TRS accessors of KZylXMatrix.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "kit/kmath.h"
#include "tests/support/near.h"

namespace {

using namespace zylsdk;
using zyltest::Near;

constexpr double kPi = 3.14159265358979323846;

// A rotation about one axis written out for row vectors (p' = p * M), independently of the kit.
KZylMatrix AxisMatrix(int axis, double degrees) {
  double c = std::cos(degrees * kPi / 180.0);
  double s = std::sin(degrees * kPi / 180.0);
  KZylMatrix m;
  if (axis == 0) {  // y' = y c - z s, z' = y s + z c
    m.mData[1][1] = c; m.mData[1][2] = s;
    m.mData[2][1] = -s; m.mData[2][2] = c;
  } else if (axis == 1) {  // x' = x c + z s, z' = -x s + z c
    m.mData[0][0] = c; m.mData[0][2] = -s;
    m.mData[2][0] = s; m.mData[2][2] = c;
  } else {  // x' = x c - y s, y' = x s + y c
    m.mData[0][0] = c; m.mData[0][1] = s;
    m.mData[1][0] = -s; m.mData[1][1] = c;
  }
  return m;
}

// The axes of each order in the order they apply: the name read left to right.
const int kAxesOfOrder[6][3] = {{0, 1, 2}, {0, 2, 1}, {1, 2, 0}, {1, 0, 2}, {2, 0, 1}, {2, 1, 0}};

bool AllFinite(const KZylMatrix& m) {
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c)
      if (!std::isfinite(m.mData[r][c])) return false;
  return true;
}

TEST(KMath, XyzIsRxTimesRyTimesRzWithRowVectors) {
  KZylVector4 angles(30.0, -50.0, 70.0);
  KZylMatrix expected = AxisMatrix(0, 30.0) * AxisMatrix(1, -50.0) * AxisMatrix(2, 70.0);
  EXPECT_TRUE(Near(RotationMatrix(angles, eEulerXYZ), expected));
}

TEST(KMath, XyzAppliesXFirst) {
  // Points keep w = 1. (0, 1, 0) turned 90 degrees about X is (0, 0, 1); a quarter turn about Z then leaves it.
  // Applied Z first it would end at (-1, 0, 0).
  KZylXMatrix m = RotationMatrix(KZylVector4(90.0, 0.0, 90.0), eEulerXYZ);
  EXPECT_TRUE(Near(m.MultT(KZylVector4(0, 1, 0)), KZylVector4(0, 0, 1, 1), 1e-12));
  KZylXMatrix zFirst = RotationMatrix(KZylVector4(90.0, 0.0, 90.0), eEulerZYX);
  EXPECT_TRUE(Near(zFirst.MultT(KZylVector4(0, 1, 0)), KZylVector4(-1, 0, 0, 1), 1e-12));
}

TEST(KMath, PositiveAnglesTurnCounterClockwise) {
  EXPECT_TRUE(Near(RotationMatrix(KZylVector4(0, 0, 90), eEulerXYZ).MultT(KZylVector4(1, 0, 0)),
                   KZylVector4(0, 1, 0, 1), 1e-12));
  EXPECT_TRUE(Near(RotationMatrix(KZylVector4(90, 0, 0), eEulerXYZ).MultT(KZylVector4(0, 1, 0)),
                   KZylVector4(0, 0, 1, 1), 1e-12));
  EXPECT_TRUE(Near(RotationMatrix(KZylVector4(0, 90, 0), eEulerXYZ).MultT(KZylVector4(0, 0, 1)),
                   KZylVector4(1, 0, 0, 1), 1e-12));
}

TEST(KMath, EveryOrderMultipliesItsAxesByName) {
  KZylVector4 angles(25.0, 40.0, -65.0);
  for (int order = 0; order < 6; ++order) {
    const int* axes = kAxesOfOrder[order];
    KZylMatrix expected = AxisMatrix(axes[0], angles[axes[0]]) * AxisMatrix(axes[1], angles[axes[1]]) *
                          AxisMatrix(axes[2], angles[axes[2]]);
    EXPECT_TRUE(Near(RotationMatrix(angles, static_cast<ERotationOrder>(order)), expected)) << "order " << order;
  }
}

TEST(KMath, EulerAnglesRoundTripForEveryOrder) {
  // Angles of the first, middle and last axis of an order; the middle one within (-90, 90),
  // the others within (-180, 180], where the decomposition is unique.
  const double samples[][3] = {{10, 20, 30},  {-45, 60, 170}, {120, -80, -10}, {0, 0, 0},
                               {179, 1, -179}, {-5, -89, 45}, {90, 45, -135},  {-170, 85, 100}};
  for (int order = 0; order < 6; ++order) {
    for (const auto& sample : samples) {
      const int* axes = kAxesOfOrder[order];
      KZylVector4 angles;
      for (int k = 0; k < 3; ++k) angles[axes[k]] = sample[k];
      ERotationOrder rotationOrder = static_cast<ERotationOrder>(order);
      KZylVector4 back = EulerAngles(RotationMatrix(angles, rotationOrder), rotationOrder);
      EXPECT_TRUE(Near(back, angles, 1e-7)) << "order " << order << " angles " << sample[0] << " " << sample[1]
                                            << " " << sample[2];
    }
  }
}

TEST(KMath, EulerAnglesAtGimbalLockRebuildTheSameMatrix) {
  for (int order = 0; order < 6; ++order) {
    ERotationOrder rotationOrder = static_cast<ERotationOrder>(order);
    KZylVector4 angles;
    angles[kAxesOfOrder[order][0]] = 30.0;
    angles[kAxesOfOrder[order][1]] = 90.0;  // the middle axis at a quarter turn
    angles[kAxesOfOrder[order][2]] = 20.0;
    KZylXMatrix m = RotationMatrix(angles, rotationOrder);
    KZylVector4 back = EulerAngles(m, rotationOrder);
    EXPECT_TRUE(Near(RotationMatrix(back, rotationOrder), m, 1e-6)) << "order " << order;
  }
}

TEST(KMath, EulerAnglesIgnoreScaling) {
  KZylVector4 angles(15, 25, 35);
  KZylMatrix scaled = ScalingMatrix(KZylVector4(2, 3, 0.5)) * RotationMatrix(angles, eEulerYZX);
  EXPECT_TRUE(Near(EulerAngles(scaled, eEulerYZX), angles, 1e-9));
}

TEST(KMath, InverseOfASingularMatrixIsTheIdentity) {
  KZylMatrix zero;
  for (auto& row : zero.mData)
    for (double& value : row) value = 0.0;
  EXPECT_TRUE(zero.Inverse().IsIdentity());

  KZylMatrix equalRows;  // two equal rows
  equalRows.SetRow(1, equalRows.GetRow(0));
  EXPECT_TRUE(equalRows.Inverse().IsIdentity());

  KZylXMatrix flat = ScalingMatrix(KZylVector4(1, 0, 1));
  EXPECT_TRUE(flat.Inverse().IsIdentity());

  KZylMatrix notFinite;
  notFinite.mData[0][0] = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(notFinite.Inverse().IsIdentity());
  notFinite.mData[0][0] = std::numeric_limits<double>::infinity();
  EXPECT_TRUE(notFinite.Inverse().IsIdentity());
}

TEST(KMath, InverseOfARegularMatrix) {
  KZylXMatrix m(KZylVector4(1, -2, 3), KZylVector4(10, 20, 30), KZylVector4(2, 3, 4));
  KZylXMatrix inverse = m.Inverse();
  EXPECT_TRUE(AllFinite(inverse));
  EXPECT_TRUE(Near(m * inverse, KZylMatrix(), 1e-12));
  EXPECT_TRUE(Near(inverse * m, KZylMatrix(), 1e-12));
}

TEST(KMath, XMatrixTrsAccessors) {
  KZylVector4 t(1, 2, 3), r(10, -20, 30), s(2, 3, 4);
  KZylXMatrix m(t, r, s);
  EXPECT_TRUE(Near(m.GetT(), KZylVector4(1, 2, 3, 1)));
  EXPECT_TRUE(Near(m.GetR(), r, 1e-9));
  EXPECT_TRUE(Near(m.GetS(), KZylVector4(2, 3, 4, 1), 1e-12));
  // S then R then T for a row vector.
  KZylVector4 p(1, 1, 1);
  KZylVector4 expected = RotationMatrix(r, eEulerXYZ).MultT(KZylVector4(2, 3, 4)) + KZylVector4(1, 2, 3);
  EXPECT_TRUE(Near(m.MultT(p), KZylVector4(expected[0], expected[1], expected[2], 1.0), 1e-12));
  m.SetT(KZylVector4(7, 8, 9));
  EXPECT_TRUE(Near(m.GetT(), KZylVector4(7, 8, 9, 1)));
  m.SetS(KZylVector4(1, 1, 1));
  EXPECT_TRUE(Near(m.GetS(), KZylVector4(1, 1, 1, 1), 1e-12));
  EXPECT_TRUE(Near(m.GetR(), r, 1e-9));
}

TEST(KMath, NegativeDeterminantMakesTheXScaleNegative) {
  KZylXMatrix mirrored = ScalingMatrix(KZylVector4(1, -2, 3));
  KZylVector4 s = mirrored.GetS();
  EXPECT_DOUBLE_EQ(s[0], -1.0);
  EXPECT_DOUBLE_EQ(s[1], 2.0);
  EXPECT_DOUBLE_EQ(s[2], 3.0);
}

TEST(KMath, VectorNormalizeOfZeroStaysZero) {
  KZylVector4 zero;
  EXPECT_EQ(zero.Normalize(), 0.0);
  EXPECT_EQ(zero, KZylVector4(0, 0, 0, 0));
  KZylVector4 v(3, 0, 4, 7);
  EXPECT_DOUBLE_EQ(v.Normalize(), 5.0);
  EXPECT_TRUE(Near(v, KZylVector4(0.6, 0, 0.8, 7)));
  EXPECT_TRUE(Near(KZylVector4(1, 0, 0).CrossProduct(KZylVector4(0, 1, 0)), KZylVector4(0, 0, 1, 0)));
  EXPECT_DOUBLE_EQ(KZylVector4(1, 2, 3, 9).DotProduct(KZylVector4(4, 5, 6, 9)), 32.0);
}

TEST(KMath, DefaultValues) {
  EXPECT_EQ(KZylVector4(), KZylVector4(0, 0, 0, 0));
  EXPECT_EQ(KZylColor(), KZylColor(0, 0, 0, 1));
  EXPECT_TRUE(KZylMatrix().IsIdentity());
  EXPECT_TRUE(KZylXMatrix().IsIdentity());
}

}  // namespace
