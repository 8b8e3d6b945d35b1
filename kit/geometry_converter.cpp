#include "kit/geometry_converter.h"

#include <vector>

#include "kit/geometry.h"
#include "kit/manager.h"

namespace zylsdk {

KZYL_IMPLEMENT_CLASS(KZylGeometryConverter, KZylObject)

namespace {

// The normals of `geometry` expanded per polygon vertex of `mesh`; false when a polygon
// vertex has no control point in `geometry`.
bool ExpandNormals(const KZylMesh& mesh, const KZylGeometryBase& geometry, KArrayTemplate<KZylVector4>& expanded) {
  const KArrayTemplate<int>& vertices = mesh.GetPolygonVertices();
  for (int index : vertices)
    if (index < 0 || index >= geometry.GetControlPointsCount()) return false;
  const KZylLayerElementNormal* normals = geometry.GetNormals();
  expanded.Clear();
  if (!normals) return true;
  if (normals->GetMappingMode() != KZylLayerElement::eByControlPoint) {
    expanded = normals->GetDirectArray();
    return true;
  }
  expanded.Reserve(vertices.GetCount());
  for (int index : vertices) expanded.Add(normals->GetDirectArray().GetAt(index));
  return true;
}

}  // namespace

bool KZylGeometryConverter::EmulateNormalsByPolygonVertex(KZylMesh* mesh) {
  if (!mesh) return false;
  // Check and compute everything first, so that a failure changes nothing.
  std::vector<const KZylGeometryBase*> geometries{mesh};
  for (int i = 0; i < mesh->GetShapeCount(); ++i)
    if (mesh->GetShape(i)) geometries.push_back(mesh->GetShape(i));
  std::vector<KArrayTemplate<KZylVector4>> results(geometries.size());
  for (size_t i = 0; i < geometries.size(); ++i)
    if (!ExpandNormals(*mesh, *geometries[i], results[i])) return false;

  for (size_t i = 0; i < geometries.size(); ++i) {
    KZylLayerElementNormal* normals = geometries[i]->GetNormals();
    if (!normals) continue;
    normals->SetMappingMode(KZylLayerElement::eByPolygonVertex);
    normals->SetReferenceMode(KZylLayerElement::eDirect);
    normals->GetIndexArray().Clear();
    normals->GetDirectArray() = std::move(results[i]);
  }
  return true;
}

}  // namespace zylsdk
