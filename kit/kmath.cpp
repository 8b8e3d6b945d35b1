#include "kit/kmath.h"

#include <algorithm>
#include <cmath>

namespace zylsdk {
namespace {

constexpr double kDegreesToRadians = 3.14159265358979323846 / 180.0;
constexpr double kRadiansToDegrees = 180.0 / 3.14159265358979323846;

// The axes of each rotation order, in the order in which they are applied.
constexpr int kOrderAxes[6][3] = {{0, 1, 2}, {0, 2, 1}, {1, 2, 0}, {1, 0, 2}, {2, 0, 1}, {2, 1, 0}};

int OrderIndex(ERotationOrder order) {
  int index = static_cast<int>(order);
  return (index >= 0 && index < 6) ? index : 0;
}

KZylXMatrix AxisRotation(int axis, double degrees) {
  KZylXMatrix m;
  double c = std::cos(degrees * kDegreesToRadians);
  double s = std::sin(degrees * kDegreesToRadians);
  int i = (axis + 1) % 3;
  int j = (axis + 2) % 3;
  // Row-vector form: the point's i component turns towards j for a positive angle.
  m.mData[i][i] = c;
  m.mData[i][j] = s;
  m.mData[j][i] = -s;
  m.mData[j][j] = c;
  return m;
}

// Euler XYZ angles (degrees) of a rotation matrix with orthonormal rows.
KZylVector4 EulerXYZ(const double m[3][3]) {
  double sinY = std::clamp(-m[0][2], -1.0, 1.0);
  double x, y, z;
  if (std::fabs(m[0][2]) < 0.9999999) {
    y = std::asin(sinY);
    x = std::atan2(m[1][2], m[2][2]);
    z = std::atan2(m[0][1], m[0][0]);
  } else {
    // Gimbal lock: Z is taken as 0 and X carries the remaining rotation.
    y = std::asin(sinY);
    x = std::atan2(-m[2][1], m[1][1]);
    z = 0.0;
  }
  return KZylVector4(x * kRadiansToDegrees, y * kRadiansToDegrees, z * kRadiansToDegrees, 0.0);
}

double Determinant3(const double m[4][4]) {
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
         m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

}  // namespace

double KZylVector4::Length() const {
  return std::sqrt(mData[0] * mData[0] + mData[1] * mData[1] + mData[2] * mData[2]);
}

double KZylVector4::Normalize() {
  double length = Length();
  if (length > 0.0 && std::isfinite(length)) {
    mData[0] /= length;
    mData[1] /= length;
    mData[2] /= length;
  } else if (length == 0.0) {
    mData[0] = mData[1] = mData[2] = 0.0;
  }
  return length;
}

KZylVector4 KZylVector4::CrossProduct(const KZylVector4& o) const {
  return KZylVector4(mData[1] * o.mData[2] - mData[2] * o.mData[1], mData[2] * o.mData[0] - mData[0] * o.mData[2],
                     mData[0] * o.mData[1] - mData[1] * o.mData[0], 0.0);
}

double KZylVector4::DotProduct(const KZylVector4& o) const {
  return mData[0] * o.mData[0] + mData[1] * o.mData[1] + mData[2] * o.mData[2];
}

KZylVector4 KZylVector4::operator+(const KZylVector4& o) const {
  return KZylVector4(mData[0] + o.mData[0], mData[1] + o.mData[1], mData[2] + o.mData[2], mData[3] + o.mData[3]);
}

KZylVector4 KZylVector4::operator-(const KZylVector4& o) const {
  return KZylVector4(mData[0] - o.mData[0], mData[1] - o.mData[1], mData[2] - o.mData[2], mData[3] - o.mData[3]);
}

KZylVector4 KZylVector4::operator*(double f) const {
  return KZylVector4(mData[0] * f, mData[1] * f, mData[2] * f, mData[3] * f);
}

KZylVector4& KZylVector4::operator+=(const KZylVector4& o) { return *this = *this + o; }

bool operator==(const KZylVector4& a, const KZylVector4& b) {
  return a.mData[0] == b.mData[0] && a.mData[1] == b.mData[1] && a.mData[2] == b.mData[2] && a.mData[3] == b.mData[3];
}

KZylMatrix::KZylMatrix() { SetIdentity(); }

void KZylMatrix::SetIdentity() {
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) mData[r][c] = r == c ? 1.0 : 0.0;
}

bool KZylMatrix::IsIdentity(double tolerance) const {
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c)
      if (std::fabs(mData[r][c] - (r == c ? 1.0 : 0.0)) > tolerance) return false;
  return true;
}

KZylVector4 KZylMatrix::GetRow(int row) const {
  const double* r = mData[row & 3];
  return KZylVector4(r[0], r[1], r[2], r[3]);
}

void KZylMatrix::SetRow(int row, const KZylVector4& v) {
  for (int c = 0; c < 4; ++c) mData[row & 3][c] = v[c];
}

KZylMatrix KZylMatrix::operator*(const KZylMatrix& o) const {
  KZylMatrix result;
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) {
      double sum = 0.0;
      for (int k = 0; k < 4; ++k) sum += mData[r][k] * o.mData[k][c];
      result.mData[r][c] = sum;
    }
  return result;
}

KZylMatrix KZylMatrix::Transpose() const {
  KZylMatrix result;
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) result.mData[r][c] = mData[c][r];
  return result;
}

KZylMatrix KZylMatrix::Inverse() const {
  // Gauss-Jordan elimination with partial pivoting.
  double a[4][8];
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) {
      a[r][c] = mData[r][c];
      a[r][c + 4] = r == c ? 1.0 : 0.0;
    }
  for (int column = 0; column < 4; ++column) {
    int pivot = column;
    for (int r = column + 1; r < 4; ++r)
      if (std::fabs(a[r][column]) > std::fabs(a[pivot][column])) pivot = r;
    double p = a[pivot][column];
    if (p == 0.0 || !std::isfinite(p)) return KZylMatrix();
    if (pivot != column)
      for (int c = 0; c < 8; ++c) std::swap(a[pivot][c], a[column][c]);
    for (int c = 0; c < 8; ++c) a[column][c] /= p;
    for (int r = 0; r < 4; ++r) {
      if (r == column) continue;
      double f = a[r][column];
      if (f == 0.0) continue;
      for (int c = 0; c < 8; ++c) a[r][c] -= f * a[column][c];
    }
  }
  KZylMatrix result;
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) {
      if (!std::isfinite(a[r][c + 4])) return KZylMatrix();
      result.mData[r][c] = a[r][c + 4];
    }
  return result;
}

bool operator==(const KZylMatrix& a, const KZylMatrix& b) {
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c)
      if (a.mData[r][c] != b.mData[r][c]) return false;
  return true;
}

KZylXMatrix::KZylXMatrix(const KZylVector4& t, const KZylVector4& r, const KZylVector4& s) { SetTRS(t, r, s); }

KZylVector4 KZylXMatrix::GetT() const { return KZylVector4(mData[3][0], mData[3][1], mData[3][2], 1.0); }

KZylVector4 KZylXMatrix::GetS() const {
  KZylVector4 s(GetRow(0).Length(), GetRow(1).Length(), GetRow(2).Length(), 1.0);
  if (Determinant3(mData) < 0.0) s[0] = -s[0];
  return s;
}

KZylVector4 KZylXMatrix::GetR() const { return EulerAngles(*this, eEulerXYZ); }

void KZylXMatrix::SetT(const KZylVector4& t) {
  mData[3][0] = t[0];
  mData[3][1] = t[1];
  mData[3][2] = t[2];
  mData[3][3] = 1.0;
}

void KZylXMatrix::SetR(const KZylVector4& r) { SetTRS(GetT(), r, GetS()); }

void KZylXMatrix::SetS(const KZylVector4& s) { SetTRS(GetT(), GetR(), s); }

void KZylXMatrix::SetTRS(const KZylVector4& t, const KZylVector4& r, const KZylVector4& s) {
  KZylXMatrix m = ScalingMatrix(s) * RotationMatrix(r, eEulerXYZ);
  m.SetT(t);
  *this = m;
}

KZylXMatrix KZylXMatrix::operator*(const KZylXMatrix& o) const {
  return KZylXMatrix(KZylMatrix::operator*(o));
}

KZylXMatrix KZylXMatrix::Inverse() const { return KZylXMatrix(KZylMatrix::Inverse()); }

KZylXMatrix KZylXMatrix::Transpose() const { return KZylXMatrix(KZylMatrix::Transpose()); }

KZylVector4 KZylXMatrix::MultT(const KZylVector4& p) const {
  KZylVector4 result;
  for (int c = 0; c < 4; ++c)
    result[c] = p[0] * mData[0][c] + p[1] * mData[1][c] + p[2] * mData[2][c] + mData[3][c];
  return result;
}

KZylXMatrix RotationMatrix(const KZylVector4& angles, ERotationOrder order) {
  const int* axes = kOrderAxes[OrderIndex(order)];
  return AxisRotation(axes[0], angles[axes[0]]) * AxisRotation(axes[1], angles[axes[1]]) *
         AxisRotation(axes[2], angles[axes[2]]);
}

KZylVector4 EulerAngles(const KZylMatrix& source, ERotationOrder order) {
  // Normalised rotation rows; a zero row stays zero.
  double rows[3][3];
  double sign = Determinant3(source.mData) < 0.0 ? -1.0 : 1.0;
  for (int r = 0; r < 3; ++r) {
    KZylVector4 row(source.mData[r][0], source.mData[r][1], source.mData[r][2]);
    row.Normalize();
    if (r == 0) row = row * sign;  // a mirrored basis is carried by a negative X scale
    for (int c = 0; c < 3; ++c) rows[r][c] = row[c];
  }
  // M = Ra Rb Rc. With Q the permutation taking x, y, z to a, b, c, Q^T M Q is an XYZ rotation
  // whose angles change sign when the permutation is odd.
  const int* axes = kOrderAxes[OrderIndex(order)];
  static constexpr int kEven[6] = {1, 0, 1, 0, 1, 0};
  double parity = kEven[OrderIndex(order)] ? 1.0 : -1.0;
  double relabelled[3][3];
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) relabelled[i][j] = rows[axes[i]][axes[j]];
  KZylVector4 xyz = EulerXYZ(relabelled);
  KZylVector4 angles;
  for (int i = 0; i < 3; ++i) {
    double angle = parity * xyz[i];
    angles[axes[i]] = angle == 0.0 ? 0.0 : angle;  // no negative zero
  }
  return angles;
}

KZylXMatrix TranslationMatrix(const KZylVector4& t) {
  KZylXMatrix m;
  m.SetT(t);
  return m;
}

KZylXMatrix ScalingMatrix(const KZylVector4& s) {
  KZylXMatrix m;
  m.mData[0][0] = s[0];
  m.mData[1][1] = s[1];
  m.mData[2][2] = s[2];
  return m;
}

}  // namespace zylsdk
