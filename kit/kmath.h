#pragma once
// The kit's vectors, colours and 4x4 matrices.
//
// Matrices use the row-vector convention: a point is transformed as p * M and the translation
// sits in the fourth row. Euler angles are in degrees; rotation order XYZ applies X first, then
// Y, then Z, that is M = Rx * Ry * Rz.

#include "kit/enums.h"

namespace zylsdk {

class KZylVector2 {
 public:
  KZylVector2() = default;
  KZylVector2(double x, double y) : mData{x, y} {}
  double& operator[](int i) { return mData[i & 1]; }
  double operator[](int i) const { return mData[i & 1]; }
  friend bool operator==(const KZylVector2& a, const KZylVector2& b) {
    return a.mData[0] == b.mData[0] && a.mData[1] == b.mData[1];
  }
  friend bool operator!=(const KZylVector2& a, const KZylVector2& b) { return !(a == b); }

  double mData[2] = {0.0, 0.0};
};

// Four doubles; default (0, 0, 0, 0). Length, normalisation and the cross product look at the
// first three components only.
class KZylVector4 {
 public:
  KZylVector4() = default;
  KZylVector4(double x, double y, double z, double w = 0.0) : mData{x, y, z, w} {}

  double& operator[](int i) { return mData[i & 3]; }
  double operator[](int i) const { return mData[i & 3]; }

  double Length() const;
  // Normalises x, y, z in place (w untouched) and returns the former length; a zero vector
  // stays zero.
  double Normalize();
  KZylVector4 CrossProduct(const KZylVector4& other) const;
  double DotProduct(const KZylVector4& other) const;

  KZylVector4 operator+(const KZylVector4& o) const;
  KZylVector4 operator-(const KZylVector4& o) const;
  KZylVector4 operator*(double factor) const;
  KZylVector4& operator+=(const KZylVector4& o);

  friend bool operator==(const KZylVector4& a, const KZylVector4& b);
  friend bool operator!=(const KZylVector4& a, const KZylVector4& b) { return !(a == b); }

  double mData[4] = {0.0, 0.0, 0.0, 0.0};
};

// Red, green, blue, alpha as doubles; default (0, 0, 0, 1).
class KZylColor {
 public:
  KZylColor() = default;
  KZylColor(double red, double green, double blue, double alpha = 1.0)
      : mRed(red), mGreen(green), mBlue(blue), mAlpha(alpha) {}
  friend bool operator==(const KZylColor& a, const KZylColor& b) {
    return a.mRed == b.mRed && a.mGreen == b.mGreen && a.mBlue == b.mBlue && a.mAlpha == b.mAlpha;
  }
  friend bool operator!=(const KZylColor& a, const KZylColor& b) { return !(a == b); }

  double mRed = 0.0;
  double mGreen = 0.0;
  double mBlue = 0.0;
  double mAlpha = 1.0;
};

// A 4x4 matrix of doubles, identity by default.
class KZylMatrix {
 public:
  KZylMatrix();
  double Get(int row, int column) const { return mData[row & 3][column & 3]; }
  void Set(int row, int column, double value) { mData[row & 3][column & 3] = value; }
  KZylVector4 GetRow(int row) const;
  void SetRow(int row, const KZylVector4& values);
  void SetIdentity();
  bool IsIdentity(double tolerance = 0.0) const;

  KZylMatrix operator*(const KZylMatrix& other) const;
  KZylMatrix Transpose() const;
  // The inverse; a singular (or non-finite) matrix gives the identity, never NaN.
  KZylMatrix Inverse() const;

  friend bool operator==(const KZylMatrix& a, const KZylMatrix& b);
  friend bool operator!=(const KZylMatrix& a, const KZylMatrix& b) { return !(a == b); }

  double mData[4][4];
};

// An affine transform: translation, rotation (Euler XYZ degrees) and scaling accessors over the
// same 4x4 storage.
class KZylXMatrix : public KZylMatrix {
 public:
  KZylXMatrix() = default;
  explicit KZylXMatrix(const KZylMatrix& m) : KZylMatrix(m) {}
  KZylXMatrix(const KZylVector4& translation, const KZylVector4& rotation, const KZylVector4& scaling);

  KZylVector4 GetT() const;
  // Euler XYZ angles in degrees of the rotation part (the rows normalised first).
  KZylVector4 GetR() const;
  // Lengths of the three basis rows; a negative determinant makes the X scale negative.
  KZylVector4 GetS() const;
  void SetT(const KZylVector4& translation);
  void SetR(const KZylVector4& rotation);
  void SetS(const KZylVector4& scaling);
  void SetTRS(const KZylVector4& translation, const KZylVector4& rotation, const KZylVector4& scaling);

  KZylXMatrix operator*(const KZylXMatrix& other) const;
  KZylXMatrix Inverse() const;
  KZylXMatrix Transpose() const;
  // Transforms a point (w taken as 1).
  KZylVector4 MultT(const KZylVector4& point) const;
};

// Rotation matrices for the row-vector convention.
KZylXMatrix RotationMatrix(const KZylVector4& anglesDegrees, ERotationOrder order);
// Euler angles (degrees) of the rotation part of `m` for `order`; rows are normalised first,
// a zero row leaves its axis at rotation 0.
KZylVector4 EulerAngles(const KZylMatrix& m, ERotationOrder order);
KZylXMatrix TranslationMatrix(const KZylVector4& translation);
KZylXMatrix ScalingMatrix(const KZylVector4& scaling);

}  // namespace zylsdk
