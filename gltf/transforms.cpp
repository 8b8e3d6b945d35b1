#include "gltf/transforms.h"

#include <cmath>

namespace zylgltf {

using namespace zylsdk;

std::array<double, 4> QuaternionOf(const KZylMatrix& m) {
  // The column-vector rotation is the transpose of the kit's: element (i, j) there is m(j, i).
  auto r = [&m](int i, int j) { return m.Get(j, i); };
  const double trace = r(0, 0) + r(1, 1) + r(2, 2);
  std::array<double, 4> q;
  if (trace > 0.0) {
    const double s = std::sqrt(trace + 1.0) * 2.0;
    q = {(r(2, 1) - r(1, 2)) / s, (r(0, 2) - r(2, 0)) / s, (r(1, 0) - r(0, 1)) / s, 0.25 * s};
  } else if (r(0, 0) > r(1, 1) && r(0, 0) > r(2, 2)) {
    const double s = std::sqrt(1.0 + r(0, 0) - r(1, 1) - r(2, 2)) * 2.0;
    q = {0.25 * s, (r(0, 1) + r(1, 0)) / s, (r(0, 2) + r(2, 0)) / s, (r(2, 1) - r(1, 2)) / s};
  } else if (r(1, 1) > r(2, 2)) {
    const double s = std::sqrt(1.0 + r(1, 1) - r(0, 0) - r(2, 2)) * 2.0;
    q = {(r(0, 1) + r(1, 0)) / s, 0.25 * s, (r(1, 2) + r(2, 1)) / s, (r(0, 2) - r(2, 0)) / s};
  } else {
    const double s = std::sqrt(1.0 + r(2, 2) - r(0, 0) - r(1, 1)) * 2.0;
    q = {(r(0, 2) + r(2, 0)) / s, (r(1, 2) + r(2, 1)) / s, 0.25 * s, (r(1, 0) - r(0, 1)) / s};
  }
  const double length = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
  if (!(length > 0.0) || !std::isfinite(length)) return {0.0, 0.0, 0.0, 1.0};
  for (double& c : q) c /= length;
  // One sign for every quaternion, so that neighbouring animation keys stay close.
  if (q[3] < 0.0)
    for (double& c : q) c = -c;
  return q;
}

NodeTrs LocalTrs(const KZylNode& node, const KZylVector4& translation, const KZylVector4& rotation,
                 const KZylVector4& scaling) {
  // The local matrix is Sp^-1 S Sp Soff Rp^-1 Rpost^-1 R Rpre Rp Roff T: the pivots and offsets
  // only add translations, which move past the rotation and scaling into one translation.
  const ERotationOrder order = node.GetRotationOrder(eSourcePivot);
  const KZylXMatrix rotationMatrix = RotationMatrix(node.GetPostRotation(eSourcePivot), eEulerXYZ).Inverse() *
                                     RotationMatrix(rotation, order) *
                                     RotationMatrix(node.GetPreRotation(eSourcePivot), eEulerXYZ);
  auto negate = [](const KZylVector4& v) { return KZylVector4(-v[0], -v[1], -v[2], 0.0); };
  const KZylXMatrix local =
      TranslationMatrix(negate(node.GetScalingPivot(eSourcePivot))) * ScalingMatrix(scaling) *
      TranslationMatrix(node.GetScalingPivot(eSourcePivot)) * TranslationMatrix(node.GetScalingOffset(eSourcePivot)) *
      TranslationMatrix(negate(node.GetRotationPivot(eSourcePivot))) * rotationMatrix *
      TranslationMatrix(node.GetRotationPivot(eSourcePivot)) * TranslationMatrix(node.GetRotationOffset(eSourcePivot)) *
      TranslationMatrix(translation);
  NodeTrs trs;
  for (int axis = 0; axis < 3; ++axis) {
    trs.translation[static_cast<size_t>(axis)] = local.Get(3, axis);
    trs.scale[static_cast<size_t>(axis)] = scaling[axis];
  }
  trs.rotation = QuaternionOf(rotationMatrix);
  return trs;
}

NodeTrs LocalTrs(const KZylNode& node) {
  return LocalTrs(node, node.GetDefaultT(), node.GetDefaultR(), node.GetDefaultS());
}

bool HasPlainTranslation(const KZylNode& node) {
  auto isZero = [](const KZylVector4& v) { return v[0] == 0.0 && v[1] == 0.0 && v[2] == 0.0; };
  return isZero(node.GetScalingPivot(eSourcePivot)) && isZero(node.GetScalingOffset(eSourcePivot)) &&
         isZero(node.GetRotationPivot(eSourcePivot)) && isZero(node.GetRotationOffset(eSourcePivot));
}

}  // namespace zylgltf
