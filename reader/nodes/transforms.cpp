// The transform elements of a `node`: translation, rotation, scaling, pivots, offsets, pre-
// and post-rotation, the rotation order, or a whole matrix; and the animation targets of the
// animatable ones.

#include <climits>
#include <cmath>
#include <cstring>
#include <string_view>

#include "reader/collada_import.h"
#include "reader/dom/dom.h"
#include "reader/dom/numbers.h"
#include "reader/nodes/element_numbers.h"
#include "reader/nodes/node_steps.h"

namespace zylsdk {
namespace {

constexpr double kDegreesToRadians = 0.017453292519943295;
constexpr double kRadiansToDegrees = 57.29577951308232;
// Beyond this |m02| the rotation is taken as a gimbal lock about Y.
constexpr double kGimbalLock = 0.999999;

// True for `prefix` followed by X, Y or Z.
bool HasAxisSuffix(std::string_view value, const char* prefix) {
  const size_t length = std::strlen(prefix);
  if (value.size() != length + 1 || value.compare(0, length, prefix) != 0) return false;
  const char axis = value[length];
  return axis == 'X' || axis == 'Y' || axis == 'Z';
}

// `base` with its x, y and z replaced by the three numbers of the element; w is kept.
KZylVector4 ReadXYZ(const DaeElement* element, KZylVector4 base) {
  double values[3];
  ReadElementNumbers(element, values, 3);
  for (int i = 0; i < 3; ++i) base[i] = values[i];
  return base;
}

// Euler angles (degrees) of the rotation of `angle` degrees about an axis that is not a
// principal one, through the quaternion of that rotation. The axis is used as written, not
// normalised; the matrix terms do not depend on the quaternion's length.
KZylVector4 EulerFromAxisAngle(double x, double y, double z, double angle, KZylVector4 rotation) {
  const double half = angle * 0.5 * kDegreesToRadians;
  const double sine = std::sin(half);
  double qx = x * sine, qy = y * sine, qz = z * sine, qw = std::cos(half);
  double n = qx * qx + qy * qy + qz * qz + qw * qw;
  if (!std::isfinite(n)) {
    // Scaled down so that the squares stay finite; the result is the same rotation.
    double largest = std::fmax(std::fmax(std::fabs(qx), std::fabs(qy)), std::fmax(std::fabs(qz), std::fabs(qw)));
    if (std::isfinite(largest) && largest > 0.0) {
      qx /= largest, qy /= largest, qz /= largest, qw /= largest;
      n = qx * qx + qy * qy + qz * qz + qw * qw;
    }
  }
  const double s = n != 0.0 ? 2.0 / n : 0.0;
  const double xx = qx * qx * s, yy = qy * qy * s, zz = qz * qz * s;
  const double xy = qx * qy * s, xz = qx * qz * s, yz = qy * qz * s;
  const double wx = qw * qx * s, wy = qw * qy * s, wz = qw * qz * s;
  const double m00 = 1.0 - yy - zz, m01 = xy + wz, m02 = xz - wy;
  const double m10 = xy - wz, m11 = 1.0 - xx - zz, m12 = yz + wx;
  const double m21 = yz - wx, m22 = 1.0 - xx - yy;
  if (m02 >= kGimbalLock) {
    rotation[0] = std::atan2(-m21, -(xz + wy)) * kRadiansToDegrees;
    rotation[1] = -90.0;
    rotation[2] = 0.0;
  } else if (m02 <= -kGimbalLock) {
    rotation[0] = std::atan2(m10, m11) * kRadiansToDegrees;
    rotation[1] = 90.0;
    rotation[2] = 0.0;
  } else {
    rotation[0] = std::atan2(m12, m22) * kRadiansToDegrees;
    rotation[1] = -std::asin(m02) * kRadiansToDegrees;
    rotation[2] = std::atan2(m01, m00) * kRadiansToDegrees;
  }
  return rotation;
}

}  // namespace

bool KZylReaderCollada::ImportTransforms(DaeElement* nodeElement, KZylNode* node) {
  // Where the last rotate about X, Y and Z stood among the principal-axis rotates.
  int positions[3] = {-1, -1, -1};
  int count = 0;
  for (DaeElement* child = firstChildElement(nodeElement); child; child = nextSiblingElement(child)) {
    const char* name = DAE_GetName(child);
    const ReadingAt readingChild(*this, child);
    KString sidStorage;
    const std::string_view sid = DAE_PropertyText(child, "sid", sidStorage);
    // Animation channels name their target "<node>/<sid>".
    auto registerTargets = [&](const char* kind, int firstAxis, int lastAxis) {
      RegisterAnimationTargets(node->GetName(), sid, kind, firstAxis, lastAxis);
    };
    if (DAE_IsElement(child, "perspective")) {
      AddNotificationWarning("<perspective> is not supported.");
    } else if (DAE_IsElement(child, "matrix")) {
      KZylXMatrix matrix = DAE_GetMatrix(child);
      SetMatrix(node, &matrix);
    } else if (DAE_IsElement(child, "rotate")) {
      int axis = -1;
      if (HasAxisSuffix(sid, "jointOrient")) {
        // Only the element's own axis is written: the other components stay.
        KZylVector4 pre = node->GetPreRotation(eSourcePivot);
        node->SetPreRotation(eSourcePivot, ImportRotation(child, node, axis, pre));
        node->SetRotationActive(true);
      } else if (HasAxisSuffix(sid, "post-rotation")) {
        KZylVector4 post = node->GetPostRotation(eSourcePivot);
        node->SetPostRotation(eSourcePivot, ImportRotation(child, node, axis, post));
        node->SetRotationActive(true);
      } else {
        KZylVector4 rotation;
        ImportRotation(child, node, axis, rotation);
        node->SetDefaultR(node->GetDefaultR() + rotation);
        node->SetRotationActive(true);
        // Only rotations about a principal axis tell the rotation order.
        if (static_cast<unsigned>(axis) <= 2u) positions[axis] = count++;
        registerTargets("rotate", axis, axis);
      }
    } else if (DAE_IsElement(child, "scale")) {
      node->SetDefaultS(ReadXYZ(child, node->GetDefaultS()));
      registerTargets("scale", 0, 2);
    } else if (DAE_IsElement(child, "skew")) {
      // The complete reading composes it with the other elements.
      if (!mComplete) WarnOnce("skew", "transform is not supported by ZYL: skew");
    } else if (DAE_IsElement(child, "translate")) {
      if (sid == "rotatePivot") {
        node->SetRotationPivot(eSourcePivot, ReadXYZ(child, node->GetRotationPivot(eSourcePivot)));
      } else if (sid == "scalePivot") {
        node->SetScalingPivot(eSourcePivot, ReadXYZ(child, node->GetScalingPivot(eSourcePivot)));
      } else if (sid == "rotatePivotTranslation") {
        node->SetRotationOffset(eSourcePivot, ReadXYZ(child, node->GetRotationOffset(eSourcePivot)));
      } else if (sid == "scalePivotTranslation") {
        node->SetScalingOffset(eSourcePivot, ReadXYZ(child, node->GetScalingOffset(eSourcePivot)));
      } else if (sid != "rotatePivotInverse" && sid != "scalePivotInverse") {
        node->SetDefaultT(ReadXYZ(child, node->GetDefaultT()));
        registerTargets("translate", 0, 2);
      }
    } else if (DAE_IsElement(child, "extra")) {
      // The key searched ("extra") is not the key kept ("boundingbox"): the warning comes for
      // every extra, and it silences the bounding-box warning from then on. Kept as it is.
      if (!IsReported("extra")) AddNotificationWarning("Extra node is not supported in node");
      if (!IsReported("boundingbox")) MarkReported("boundingbox");
    } else if (DAE_IsElement(child, "instance") || DAE_IsElement(child, "instance_geometry") || DAE_IsElement(child, "instance_camera") ||
               DAE_IsElement(child, "instance_light") || DAE_IsElement(child, "instance_controller") || DAE_IsElement(child, "boundingbox") ||
               DAE_IsElement(child, "node") || DAE_IsElement(child, "lookat")) {
      // Read by the node import and the camera attribute.
    } else if (mComplete) {
      // instance_node is read by the node import; anything else is skipped.
      if (!DAE_IsElement(child, "instance_node")) SkipUnknownElement(name);
    } else {
      AddNotificationError(KString("structure ") + name + " unknown\n");
      return false;
    }
  }
  node->SetRotationOrder(eSourcePivot, ExtrapolateRotationOrder(positions, count));
  if (mComplete) ComposeTransformStack(NodeImportContext{*this, *mState, mStatus}, nodeElement, *node);
  return true;
}

KZylVector4& KZylReaderCollada::ImportRotation(DaeElement* rotate, KZylNode*, int& axis, KZylVector4& rotation) {
  const ReadingAt reading(*this, rotate);
  double values[4];
  ReadElementNumbers(rotate, values, 4);
  const double x = values[0], y = values[1], z = values[2], angle = values[3];
  if (x == 1.0 && y == 0.0 && z == 0.0) {
    axis = 0;
  } else if (x == 0.0 && y == 1.0 && z == 0.0) {
    axis = 1;
  } else if (x == 0.0 && y == 0.0 && z == 1.0) {
    axis = 2;
  } else {
    rotation = EulerFromAxisAngle(x, y, z, angle, rotation);
    return rotation;
  }
  rotation[axis] = angle;
  return rotation;
}

ERotationOrder KZylReaderCollada::ExtrapolateRotationOrder(int positions[3], int count) {
  if (count < 2) return eEulerXYZ;
  if (count == 2) {
    if (positions[0] == 1) return eEulerXYZ;
    if (positions[0] == -1 && positions[1] == 1) return eEulerXYZ;
  }
  // A missing axis counts as coming after the present ones.
  int next = count;
  for (int axis = 0; axis < 3; ++axis)
    if (positions[axis] == -1) positions[axis] = next++;
  // The axes by position, smallest first; the first axis wins a tie.
  int sorted[3];
  for (int pass = 0; pass < 3; ++pass) {
    int smallest = 0;
    for (int axis = 1; axis < 3; ++axis)
      if (positions[axis] < positions[smallest]) smallest = axis;
    sorted[pass] = smallest;
    positions[smallest] = INT_MAX;
  }
  // The last-listed rotate is applied first, so the order names the axes in reverse.
  enum { X = 0, Y = 1, Z = 2 };
  auto is = [&](int first, int middle, int last) {
    return sorted[0] == first && sorted[1] == middle && sorted[2] == last;
  };
  if (is(Y, Z, X)) return eEulerXZY;
  if (is(X, Z, Y)) return eEulerYZX;
  if (is(Z, X, Y)) return eEulerYXZ;
  if (is(Y, X, Z)) return eEulerZXY;
  if (is(X, Y, Z)) return eEulerZYX;
  return eEulerXYZ;
}

void KZylReaderCollada::SetMatrix(KZylNode* node, const KZylXMatrix* matrix) {
  if (node && matrix) node->SetGlobalState(*matrix);
}

void KZylReaderCollada::RegisterAnimationTargets(const KString& owner, std::string_view sid, const KString& kind,
                                                 int firstAxis, int lastAxis) {
  if (!mState->recordsAnimationTargets) return;
  const KString key = owner + "/" + KString(sid.data(), sid.size());
  for (int axis = firstAxis; axis <= lastAxis; ++axis) mState->animationTargets.Add(key, ChannelRecord{kind, axis});
}

}  // namespace zylsdk
