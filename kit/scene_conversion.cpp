#include "kit/scene_conversion.h"

#include <cmath>
#include <cstdlib>
#include <unordered_set>
#include <vector>

#include "kit/camera.h"
#include "kit/deformer.h"
#include "kit/geometry.h"
#include "kit/pose.h"

namespace zylsdk {
namespace {

// The signed unit vector along axis 1 (X), 2 (Y) or 3 (Z), negated for a negative number.
KZylVector4 AxisVector(int signedAxis) {
  KZylVector4 axis;
  const int index = std::abs(signedAxis) - 1;
  if (index >= 0 && index < 3) axis[index] = signedAxis < 0 ? -1.0 : 1.0;
  return axis;
}

// Rows: side, up and front axes of an axis system. The front axis is the first (even parity)
// or the second (odd) of the two axes that are not up, in X, Y, Z order; the side axis
// completes a frame of the system's handedness.
KZylXMatrix Frame(const KZylAxisSystem& system) {
  const int up = std::abs(system.GetUpVector());
  const int front = std::abs(system.GetFrontVector());
  int others[2];
  int count = 0;
  for (int axis = 1; axis <= 3 && count < 2; ++axis)
    if (axis != up) others[count++] = axis;
  const int frontAxis = front == KZylAxisSystem::eParityEven ? others[0] : others[1];
  const KZylVector4 upVector = AxisVector(system.GetUpVector() < 0 ? -up : up);
  const KZylVector4 frontVector = AxisVector(system.GetFrontVector() < 0 ? -frontAxis : frontAxis);
  KZylVector4 side = upVector.CrossProduct(frontVector);
  if (system.GetCoorSystem() == KZylAxisSystem::eLeftHanded) side = side * -1.0;
  KZylXMatrix frame;
  frame.SetRow(0, side);
  frame.SetRow(1, upVector);
  frame.SetRow(2, frontVector);
  return frame;
}

KZylVector4 Scaled(const KZylVector4& v, double factor) { return KZylVector4(v[0] * factor, v[1] * factor, v[2] * factor, v[3]); }

// A matrix whose translation row is scaled: the same transform measured in another unit.
KZylMatrix WithScaledTranslation(KZylMatrix matrix, double factor) {
  for (int column = 0; column < 3; ++column) matrix.Set(3, column, matrix.Get(3, column) * factor);
  return matrix;
}

void ScaleCurve(KFCurve* curve, double factor) {
  if (!curve) return;
  for (int key = 0; key < curve->KeyGetCount(); ++key) {
    curve->KeySetValue(key, static_cast<float>(curve->KeyGetValue(key) * factor));
    curve->KeySetLeftDerivative(key, static_cast<float>(curve->KeyGetLeftDerivative(key) * factor));
    curve->KeySetRightDerivative(key, static_cast<float>(curve->KeyGetRightDerivative(key) * factor));
  }
}

void ScaleNode(KZylNode& node, double factor) {
  node.SetDefaultT(Scaled(node.GetDefaultT(), factor));
  for (EPivotSet set : {eSourcePivot, eDestinationPivot}) {
    node.SetRotationPivot(set, Scaled(node.GetRotationPivot(set), factor));
    node.SetScalingPivot(set, Scaled(node.GetScalingPivot(set), factor));
    node.SetRotationOffset(set, Scaled(node.GetRotationOffset(set), factor));
    node.SetScalingOffset(set, Scaled(node.GetScalingOffset(set), factor));
  }
  for (int take = 0; take < node.GetTakeNodeCount(); ++take) {
    KZylTakeNode* takeNode = node.GetTakeNode(take);
    for (KZylTakeNode::EChannel channel : {KZylTakeNode::eTranslationX, KZylTakeNode::eTranslationY, KZylTakeNode::eTranslationZ})
      if (takeNode->FindCurve(channel)) ScaleCurve(takeNode->GetCurve(channel), factor);
  }
}

// Objects that several nodes or geometries share are scaled once.
class GeometryScaler {
 public:
  explicit GeometryScaler(double factor) : mFactor(factor) {}

  void Scale(KZylGeometry& geometry) {
    ScaleControlPoints(geometry);
    for (int shape = 0; shape < geometry.GetShapeCount(); ++shape)
      if (KZylShape* target = geometry.GetShape(shape)) ScaleControlPoints(*target);
    for (int skin = 0; skin < geometry.GetDeformerCount(KZylDeformer::eSkin); ++skin) {
      auto* deformer = static_cast<KZylSkin*>(geometry.GetDeformer(skin, KZylDeformer::eSkin));
      for (int index = 0; index < deformer->GetClusterCount(); ++index)
        if (KZylCluster* cluster = deformer->GetCluster(index)) ScaleCluster(*cluster);
    }
  }

 private:
  void ScaleControlPoints(KZylGeometryBase& geometry) {
    if (!mDone.insert(&geometry).second) return;
    for (KZylVector4& point : geometry.GetControlPoints()) point = Scaled(point, mFactor);
  }
  void ScaleCluster(KZylCluster& cluster) {
    if (!mDone.insert(&cluster).second) return;
    cluster.SetTransformMatrix(KZylXMatrix(WithScaledTranslation(cluster.GetTransformMatrix(), mFactor)));
    cluster.SetTransformLinkMatrix(KZylXMatrix(WithScaledTranslation(cluster.GetTransformLinkMatrix(), mFactor)));
  }

  double mFactor;
  std::unordered_set<const KZylObject*> mDone;
};

void ScaleCamera(KZylCamera& camera, double factor) {
  camera.SetPosition(Scaled(camera.GetPosition(), factor));
  camera.SetDefaultCameraInterestPosition(Scaled(camera.GetDefaultCameraInterestPosition(), factor));
  camera.SetNearPlane(camera.GetNearPlane() * factor);
  camera.SetFarPlane(camera.GetFarPlane() * factor);
  camera.SetSpecificDistance(camera.GetSpecificDistance() * factor);
}

void ScalePose(KZylPose& pose, double factor) {
  // A pose has no setter for an entry's matrix: its entries are taken out from the last and
  // added again in order.
  struct Entry {
    KZylNode* node;
    KZylMatrix matrix;
    bool local;
  };
  std::vector<Entry> entries;
  for (int entry = 0; entry < pose.GetCount(); ++entry)
    entries.push_back({pose.GetNode(entry), WithScaledTranslation(pose.GetMatrix(entry), factor), pose.IsLocalMatrix(entry)});
  for (int entry = pose.GetCount() - 1; entry >= 0; --entry) pose.Remove(entry);
  for (const Entry& entry : entries) pose.Add(entry.node, entry.matrix, entry.local);
}

}  // namespace

bool AxisConversionMatrix(const KZylAxisSystem& from, const KZylAxisSystem& to, KZylXMatrix& matrix) {
  matrix.SetIdentity();
  if (from.GetCoorSystem() != to.GetCoorSystem()) return false;
  // A point's components along the side, up and front axes of `from` are those along the
  // same axes of `to`; the frames are orthonormal, so the inverse is the transpose.
  matrix = Frame(from).Transpose() * Frame(to);
  return true;
}

bool ConvertAxisSystem(KZylScene& scene, const KZylAxisSystem& target) {
  KZylXMatrix conversion;
  if (!AxisConversionMatrix(scene.GetGlobalSettings().GetAxisSystem(), target, conversion)) return false;
  KZylNode* root = scene.GetRootNode();
  root->SetGlobalState(root->GetLocalFromDefaultTake() * conversion);
  scene.GetGlobalSettings().SetAxisSystem(target);
  return true;
}

bool ConvertUnit(KZylScene& scene, const KZylSystemUnit& target) {
  const double from = scene.GetGlobalSettings().GetSystemUnit().GetScaleFactor();
  const double to = target.GetScaleFactor();
  if (!std::isfinite(from) || !std::isfinite(to) || from <= 0.0 || to <= 0.0) return false;
  const double factor = from / to;

  std::unordered_set<KZylNodeAttribute*> attributes;
  ScaleNode(*scene.GetRootNode(), factor);
  for (KZylNode* node : scene.GetNodes()) {
    ScaleNode(*node, factor);
    if (node->GetNodeAttribute()) attributes.insert(node->GetNodeAttribute());
  }
  GeometryScaler geometries(factor);
  for (KZylNodeAttribute* attribute : attributes) {
    if (attribute->Is(KZylGeometry::ClassId)) geometries.Scale(*static_cast<KZylGeometry*>(attribute));
    if (attribute->Is(KZylCamera::ClassId)) ScaleCamera(*static_cast<KZylCamera*>(attribute), factor);
  }
  for (int pose = 0; pose < scene.GetPoseCount(); ++pose)
    if (KZylPose* bindPose = scene.GetPose(pose)) ScalePose(*bindPose, factor);
  scene.GetGlobalSettings().SetSystemUnit(target);
  return true;
}

}  // namespace zylsdk
