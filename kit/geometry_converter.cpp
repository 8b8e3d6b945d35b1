#include "kit/geometry_converter.h"

#include <vector>

#include "kit/geometry.h"
#include "kit/manager.h"

namespace zylsdk {

KZYL_IMPLEMENT_CLASS(KZylGeometryConverter, KZylObject)

namespace {

// The normal of entry `k` of the element: its direct array read directly, or through the
// index array (an index outside either array gives a zero normal).
KZylVector4 NormalAt(const KZylLayerElementNormal& normals, int k) {
  if (normals.GetReferenceMode() == KZylLayerElement::eDirect) return normals.GetDirectArray().GetAt(k);
  const KArrayTemplate<int>& indices = normals.GetIndexArray();
  return normals.GetDirectArray().GetAt(indices.IsValidIndex(k) ? indices[k] : -1);
}

// Whether the element has to be rewritten to give one direct normal per polygon vertex: direct
// normals per polygon vertex already do, and normals per edge (or without mapping) cannot.
bool NeedsExpansion(const KZylLayerElementNormal& normals) {
  switch (normals.GetMappingMode()) {
    case KZylLayerElement::eByControlPoint:
    case KZylLayerElement::eByPolygon:
    case KZylLayerElement::eAllSame:
      return true;
    case KZylLayerElement::eByPolygonVertex:
      return normals.GetReferenceMode() != KZylLayerElement::eDirect;
    default:
      return false;
  }
}

// The normals of `geometry` expanded per polygon vertex of `mesh`; false when a polygon
// vertex has no control point in `geometry`.
bool ExpandNormals(const KZylMesh& mesh, const KZylGeometryBase& geometry, KArrayTemplate<KZylVector4>& expanded) {
  const KArrayTemplate<int>& vertices = mesh.GetPolygonVertices();
  for (int index : vertices)
    if (index < 0 || index >= geometry.GetControlPointsCount()) return false;
  const KZylLayerElementNormal* normals = geometry.GetNormals();
  expanded.Clear();
  if (!normals) return true;
  if (!NeedsExpansion(*normals)) {
    expanded = normals->GetDirectArray();
    return true;
  }
  expanded.ReserveToFill(vertices.GetCount());
  for (int polygon = 0; polygon < mesh.GetPolygonCount(); ++polygon) {
    const int start = mesh.GetPolygonVertexIndex(polygon);
    for (int k = start; k < start + mesh.GetPolygonSize(polygon); ++k) {
      switch (normals->GetMappingMode()) {
        case KZylLayerElement::eByControlPoint: expanded.Add(NormalAt(*normals, vertices.GetAt(k))); break;
        case KZylLayerElement::eByPolygon: expanded.Add(NormalAt(*normals, polygon)); break;
        case KZylLayerElement::eAllSame: expanded.Add(NormalAt(*normals, 0)); break;
        default: expanded.Add(NormalAt(*normals, k)); break;
      }
    }
  }
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
