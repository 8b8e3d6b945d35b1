#include "tools/zyldae/scene_stats.h"

#include <algorithm>

namespace zyldae {

using namespace zylsdk;

namespace {

void CountCurve(const KFCurve* curve, SceneStats& stats) {
  if (!curve || curve->KeyGetCount() == 0) return;
  ++stats.curves;
  stats.keys += curve->KeyGetCount();
}

}  // namespace

SceneStats ComputeStats(const KZylScene& scene) {
  SceneStats stats;
  stats.materials = scene.GetMaterialCount();
  stats.textures = scene.GetTextureCount();
  for (const KZylNode* node : scene.GetNodes()) {
    ++stats.nodes;
    const KZylGeometry* geometry = node->GetGeometry();
    if (const KZylNodeAttribute* attribute = node->GetNodeAttribute(); attribute && attribute->Is(KZylMesh::ClassId)) {
      const KZylMesh& mesh = static_cast<const KZylMesh&>(*attribute);
      ++stats.meshes;
      stats.polygons += mesh.GetPolygonCount();
      for (int p = 0; p < mesh.GetPolygonCount(); ++p) stats.triangles += std::max(mesh.GetPolygonSize(p) - 2, 0);
      stats.shapes += mesh.GetShapeCount();
      for (int d = 0; d < mesh.GetDeformerCount(KZylDeformer::eSkin); ++d) {
        ++stats.skins;
        stats.clusters += static_cast<const KZylSkin*>(mesh.GetDeformer(d, KZylDeformer::eSkin))->GetClusterCount();
      }
    }
    for (int t = 0; t < node->GetTakeNodeCount(); ++t) {
      const KZylTakeNode* take = node->GetTakeNode(t);
      for (int c = 0; c < KZylTakeNode::eChannelCount; ++c)
        CountCurve(take->FindCurve(static_cast<KZylTakeNode::EChannel>(c)), stats);
      if (geometry)
        for (int s = 0; s < geometry->GetShapeCount(); ++s) CountCurve(take->FindShapeChannel(geometry, s), stats);
    }
  }
  return stats;
}

}  // namespace zyldae
