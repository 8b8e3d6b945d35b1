#include "tools/zyldae/scene_stats.h"

#include "tools/zyldae/scene_objects.h"

#include <algorithm>
#include <vector>

namespace zyldae {

using namespace zylsdk;

void Box::Add(double x, double y, double z) {
  const std::array<double, 3> point{x, y, z};
  for (int axis = 0; axis < 3; ++axis) {
    min[axis] = empty ? point[axis] : std::min(min[axis], point[axis]);
    max[axis] = empty ? point[axis] : std::max(max[axis], point[axis]);
  }
  empty = false;
}

void Box::Add(const Box& other) {
  if (other.empty) return;
  Add(other.min[0], other.min[1], other.min[2]);
  Add(other.max[0], other.max[1], other.max[2]);
}

namespace {

// Counts a curve holding keys; tells whether it did.
bool CountCurve(const KFCurve* curve, SceneStats& stats) {
  if (!curve || curve->KeyGetCount() == 0) return false;
  ++stats.curves;
  stats.keys += curve->KeyGetCount();
  return true;
}

long long TriangleCount(const KZylMesh& mesh) {
  long long triangles = 0;
  for (int p = 0; p < mesh.GetPolygonCount(); ++p) triangles += std::max(0, mesh.GetPolygonSize(p) - 2);
  return triangles;
}

// The control points the polygons use, each once, through `global`.
Box UsedPointsBox(const KZylMesh& mesh, const KZylXMatrix& global) {
  const int pointCount = mesh.GetControlPointsCount();
  std::vector<bool> used(static_cast<size_t>(pointCount), false);
  for (int vertex : mesh.GetPolygonVertices())
    if (vertex >= 0 && vertex < pointCount) used[static_cast<size_t>(vertex)] = true;
  Box box;
  for (int i = 0; i < pointCount; ++i) {
    if (!used[static_cast<size_t>(i)]) continue;
    const KZylVector4 point = global.MultT(mesh.GetControlPointAt(i));
    box.Add(point[0], point[1], point[2]);
  }
  return box;
}

}  // namespace

SceneStats ComputeStats(const KZylScene& scene) {
  SceneStats stats;
  stats.materials = scene.GetMaterialCount();
  stats.textures = static_cast<int>(SceneObjects(scene).Textures().size());
  for (const KZylNode* node : scene.GetNodes()) {
    ++stats.nodes;
    const KZylGeometry* geometry = node->GetGeometry();
    if (const KZylNodeAttribute* attribute = node->GetNodeAttribute(); attribute && attribute->Is(KZylMesh::ClassId)) {
      const KZylMesh& mesh = static_cast<const KZylMesh&>(*attribute);
      ++stats.meshes;
      stats.polygons += mesh.GetPolygonCount();
      stats.triangles += TriangleCount(mesh);
      stats.worldBox.Add(UsedPointsBox(mesh, node->GetGlobalFromDefaultTake()));
      stats.shapes += mesh.GetShapeCount();
      for (int d = 0; d < mesh.GetDeformerCount(KZylDeformer::eSkin); ++d) {
        ++stats.skins;
        stats.clusters += static_cast<const KZylSkin*>(mesh.GetDeformer(d, KZylDeformer::eSkin))->GetClusterCount();
      }
    }
    bool animated = false;
    for (int t = 0; t < node->GetTakeNodeCount(); ++t) {
      const KZylTakeNode* take = node->GetTakeNode(t);
      for (int c = 0; c < KZylTakeNode::eChannelCount; ++c)
        animated |= CountCurve(take->FindCurve(static_cast<KZylTakeNode::EChannel>(c)), stats);
      if (geometry)
        for (int s = 0; s < geometry->GetShapeCount(); ++s)
          animated |= CountCurve(take->FindShapeChannel(geometry, s), stats);
    }
    stats.animatedNodes += animated ? 1 : 0;
  }
  return stats;
}

}  // namespace zyldae
