// The complete reading of a node's transform elements: their product in document order, held
// by the node's own translation, rotation, scaling and pivots where those hold it exactly, by
// a decomposition of the product otherwise; and the matrix elements that animations target.

#include <cmath>
#include <string_view>
#include <vector>

#include "reader/dom/dom.h"
#include "reader/nodes/element_numbers.h"
#include "reader/nodes/node_steps.h"

namespace zylsdk {
namespace {

constexpr double kDegreesToRadians = 0.017453292519943295;
constexpr double kAgreement = 1e-9;
// Matrices written with six significant digits are orthogonal to about that precision only:
// a difference below this share of the largest entry is rounding, not shear worth a warning.
constexpr double kVisibleShear = 1e-5;

// `vector` scaled to length 1; false for a zero or non-finite length.
bool Unit(KZylVector4& vector) {
  const double length = vector.Length();
  if (!(length > 0.0) || !std::isfinite(length)) return false;
  vector = vector * (1.0 / length);
  return true;
}

// The rotation of `degrees` about `axis` (right-handed). COLLADA's column matrix, transposed
// for the kit's row vectors.
KZylXMatrix AxisAngleMatrix(KZylVector4 axis, double degrees) {
  KZylXMatrix matrix;
  if (!Unit(axis)) return matrix;
  const double x = axis[0], y = axis[1], z = axis[2];
  const double c = std::cos(degrees * kDegreesToRadians), s = std::sin(degrees * kDegreesToRadians), t = 1.0 - c;
  const double rows[3][3] = {{c + x * x * t, x * y * t + z * s, x * z * t - y * s},
                             {x * y * t - z * s, c + y * y * t, y * z * t + x * s},
                             {x * z * t + y * s, y * z * t - x * s, c + z * z * t}};
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 3; ++column) matrix.Set(row, column, rows[row][column]);
  return matrix;
}

// A viewer at `eye` looking at `interest`, `up` giving the vertical: its local -Z points at the
// interest and its Y is `up` made orthogonal to the view.
KZylXMatrix LookAtMatrix(const double values[9]) {
  const KZylVector4 eye(values[0], values[1], values[2], 1.0);
  const KZylVector4 interest(values[3], values[4], values[5]);
  KZylVector4 back = eye - interest;
  back.Normalize();
  KZylVector4 side = KZylVector4(values[6], values[7], values[8]).CrossProduct(back);
  side.Normalize();
  const KZylVector4 up = back.CrossProduct(side);
  KZylXMatrix matrix;
  matrix.SetRow(0, KZylVector4(side[0], side[1], side[2], 0.0));
  matrix.SetRow(1, KZylVector4(up[0], up[1], up[2], 0.0));
  matrix.SetRow(2, KZylVector4(back[0], back[1], back[2], 0.0));
  matrix.SetRow(3, eye);
  return matrix;
}

// A skew moves each point along the translation axis by tan(angle) times its distance along the
// rotation axis: p' = p + tan(angle) (r . p) t.
KZylXMatrix SkewMatrix(const double values[7]) {
  KZylXMatrix matrix;
  KZylVector4 rotationAxis(values[1], values[2], values[3]);
  KZylVector4 translationAxis(values[4], values[5], values[6]);
  if (!Unit(rotationAxis) || !Unit(translationAxis)) return matrix;
  const double slope = std::tan(values[0] * kDegreesToRadians);
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 3; ++column)
      matrix.Set(row, column, matrix.Get(row, column) + slope * rotationAxis[row] * translationAxis[column]);
  return matrix;
}

bool IsFinite(const KZylMatrix& matrix) {
  for (int row = 0; row < 4; ++row)
    for (int column = 0; column < 4; ++column)
      if (!std::isfinite(matrix.Get(row, column))) return false;
  return true;
}

// The matrix of one transform element (translate, rotate, scale, matrix, lookat, skew) into
// `matrix`; false, `matrix` untouched, for any other element. A rotation about a zero axis and
// a skew along a zero axis are the identity.
bool TransformElementMatrix(const DaeElement* element, KZylXMatrix& matrix) {
  double values[9];
  if (DAE_IsElement(element, "translate")) {
    ReadElementNumbers(element, values, 3);
    matrix = TranslationMatrix(KZylVector4(values[0], values[1], values[2], 1.0));
  } else if (DAE_IsElement(element, "scale")) {
    ReadElementNumbers(element, values, 3);
    matrix = ScalingMatrix(KZylVector4(values[0], values[1], values[2], 1.0));
  } else if (DAE_IsElement(element, "rotate")) {
    ReadElementNumbers(element, values, 4);
    matrix = AxisAngleMatrix(KZylVector4(values[0], values[1], values[2]), values[3]);
  } else if (DAE_IsElement(element, "matrix")) {
    matrix = DAE_GetMatrix(element);
  } else if (DAE_IsElement(element, "lookat")) {
    ReadElementNumbers(element, values, 9);
    matrix = LookAtMatrix(values);
  } else if (DAE_IsElement(element, "skew")) {
    ReadElementNumbers(element, values, 7);
    matrix = SkewMatrix(values);
  } else {
    return false;
  }
  return true;
}

// The node's transform elements in document order, with their matrices.
struct TransformStack {
  std::vector<const DaeElement*> elements;
  std::vector<KZylXMatrix> matrices;
};

TransformStack ReadStack(const DaeElement* nodeElement) {
  TransformStack stack;
  for (const DaeElement* child = firstChildElement(nodeElement); child; child = nextSiblingElement(child)) {
    KZylXMatrix matrix;
    if (!TransformElementMatrix(child, matrix)) continue;
    stack.elements.push_back(child);
    stack.matrices.push_back(matrix);
  }
  return stack;
}

// Registers each `matrix` element with a sid under "<node>/<sid>", with the products of the
// elements listed before and after it, for the animations that replace it.
void RegisterMatrixTargets(KZylReaderCollada::DocumentState& state, const KString& nodeName,
                           const TransformStack& stack) {
  const size_t count = stack.elements.size();
  // after[i] = K_n * ... * K_(i+1), built from the end.
  std::vector<KZylXMatrix> after(count);
  KZylXMatrix suffix;
  for (size_t i = count; i-- > 0;) {
    after[i] = suffix;
    suffix = suffix * stack.matrices[i];
  }
  KZylXMatrix before;
  for (size_t i = 0; i < count; ++i) {
    KString sidStorage;
    const std::string_view sid = DAE_PropertyText(stack.elements[i], "sid", sidStorage);
    if (DAE_IsElement(stack.elements[i], "matrix") && !sid.empty())
      state.matrixTargets.Add(nodeName + "/" + KString(sid.data(), sid.size()),
                              MatrixTarget{after[i], stack.matrices[i], before});
    before = stack.matrices[i] * before;
  }
}

void ClearPivots(KZylNode& node) {
  const KZylVector4 zero;
  node.SetPreRotation(eSourcePivot, zero);
  node.SetPostRotation(eSourcePivot, zero);
  node.SetRotationPivot(eSourcePivot, zero);
  node.SetScalingPivot(eSourcePivot, zero);
  node.SetRotationOffset(eSourcePivot, zero);
  node.SetScalingOffset(eSourcePivot, zero);
}

// True when every entry of `actual` is within `tolerance` of `expected`, relative to the
// largest entry of `expected` in magnitude. NaN agrees with nothing.
bool MatricesWithin(const KZylMatrix& actual, const KZylMatrix& expected, double tolerance) {
  double largest = 0.0;
  for (int row = 0; row < 4; ++row)
    for (int column = 0; column < 4; ++column) largest = std::fmax(largest, std::fabs(expected.Get(row, column)));
  for (int row = 0; row < 4; ++row)
    for (int column = 0; column < 4; ++column)
      if (!(std::fabs(actual.Get(row, column) - expected.Get(row, column)) <= tolerance * largest)) return false;
  return true;
}

// Agreement to 1e-9 relative: the node holds the product.
bool MatricesAgree(const KZylMatrix& actual, const KZylMatrix& expected) {
  return MatricesWithin(actual, expected, kAgreement);
}

// When the node's matrix differs from the product in its translation only (a translate listed
// before rotations or scalings), the translation takes the difference, so that the rotations
// and scalings stay as written, with their animation curves. True when that gives the product.
bool FitTranslation(KZylNode& node, const KZylXMatrix& local) {
  const KZylXMatrix current = node.GetLocalFromDefaultTake();
  KZylXMatrix sameTranslation = current;
  sameTranslation.SetRow(3, local.GetRow(3));
  if (!MatricesAgree(sameTranslation, local)) return false;
  // The default translation is the last factor: it adds to the matrix's fourth row.
  const KZylVector4 shift = local.GetRow(3) - current.GetRow(3);
  node.SetDefaultT(node.GetDefaultT() + KZylVector4(shift[0], shift[1], shift[2], 0.0));
  return MatricesAgree(node.GetLocalFromDefaultTake(), local);
}

}  // namespace

void ComposeTransformStack(const NodeImportContext& context, const DaeElement* nodeElement, KZylNode& node) {
  const TransformStack stack = ReadStack(nodeElement);
  if (context.state.recordsAnimationTargets) RegisterMatrixTargets(context.state, node.GetName(), stack);
  KZylXMatrix local;
  for (const KZylXMatrix& matrix : stack.matrices) local = matrix * local;
  // A product that overflowed says nothing better than the elements read one by one.
  if (!IsFinite(local) || MatricesAgree(node.GetLocalFromDefaultTake(), local)) return;
  if (FitTranslation(node, local)) return;
  // The node has no parent yet: its global state is its local matrix.
  ClearPivots(node);
  node.SetGlobalState(local);
  if (!MatricesWithin(node.GetLocalFromDefaultTake(), local, kVisibleShear))
    context.reader.WarnOnce("transform shear", "transform with shear read as the nearest translation, rotation and scaling");
}

}  // namespace zylsdk
