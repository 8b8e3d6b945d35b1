#pragma once
// A node's transform elements as COLLADA composes them: each element as a matrix, and the
// product of the whole list in document order. Matrices are the kit's (row vectors), so the
// element listed first is the last factor: local = K_n * ... * K_2 * K_1.

#include "reader/dom/dom.h"

#include "kit/kmath.h"

namespace zylsdk {

// The matrix of one transform element (translate, rotate, scale, matrix, lookat, skew) into
// `matrix`; false, `matrix` untouched, for any other element. A rotation about a zero axis and
// a skew along a zero axis are the identity.
bool TransformElementMatrix(const DaeElement* element, KZylXMatrix& matrix);

// True when every entry of `actual` is within 1e-9 of `expected`, relative to the largest
// entry of `expected` in magnitude. NaN agrees with nothing.
bool MatricesAgree(const KZylMatrix& actual, const KZylMatrix& expected);

}  // namespace zylsdk
