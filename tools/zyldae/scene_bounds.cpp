#include "tools/zyldae/scene_bounds.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace zyldae {

using namespace zylsdk;

namespace {

void AddPoint(const KZylVector4& point, Bounds& bounds) {
  if (!std::isfinite(point[0]) || !std::isfinite(point[1]) || !std::isfinite(point[2])) return;
  for (int axis = 0; axis < 3; ++axis) {
    bounds.min[axis] = bounds.empty ? point[axis] : std::min(bounds.min[axis], point[axis]);
    bounds.max[axis] = bounds.empty ? point[axis] : std::max(bounds.max[axis], point[axis]);
  }
  bounds.empty = false;
}

void AddMesh(const KZylMesh& mesh, const KZylXMatrix& global, Bounds& bounds) {
  for (const KZylVector4& point : mesh.GetControlPoints()) AddPoint(global.MultT(point), bounds);
}

}  // namespace

Bounds ComputeBounds(const KZylScene& scene) {
  Bounds bounds;
  const KZylNode* root = scene.GetRootNode();
  if (!root) return bounds;
  // Top down with an explicit stack: each node's global matrix is its local matrix times its
  // parent's, computed once.
  std::vector<std::pair<const KZylNode*, KZylXMatrix>> pending;
  for (int i = 0; i < root->GetChildCount(); ++i)
    pending.push_back({root->GetChild(i), root->GetGlobalFromDefaultTake()});
  while (!pending.empty()) {
    auto [node, parentGlobal] = pending.back();
    pending.pop_back();
    KZylXMatrix global = node->GetLocalFromDefaultTake() * parentGlobal;
    if (const KZylNodeAttribute* attribute = node->GetNodeAttribute(); attribute && attribute->Is(KZylMesh::ClassId))
      AddMesh(static_cast<const KZylMesh&>(*attribute), global, bounds);
    for (int i = 0; i < node->GetChildCount(); ++i) pending.push_back({node->GetChild(i), global});
  }
  return bounds;
}

}  // namespace zyldae
