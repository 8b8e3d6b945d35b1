#include "kit/geometry.h"

#include <algorithm>
#include <array>
#include <climits>

#include "kit/deformer.h"
#include "kit/manager.h"
#include "kit/material.h"

namespace zylsdk {

KZYL_IMPLEMENT_CLASS(KZylLayerContainer, KZylNodeAttribute)
KZYL_IMPLEMENT_CLASS(KZylGeometryBase, KZylLayerContainer)
KZYL_IMPLEMENT_CLASS(KZylGeometry, KZylGeometryBase)
KZYL_IMPLEMENT_CLASS(KZylShape, KZylGeometryBase)
KZYL_IMPLEMENT_CLASS(KZylMesh, KZylGeometry)

// ---------------------------------------------------------------- KZylLayerContainer

int KZylLayerContainer::GetLayerCount(ELayerElementType type, bool) const {
  return static_cast<int>(std::count_if(mLayers.begin(), mLayers.end(),
                                        [&](const std::unique_ptr<KZylLayer>& l) { return l->HasElement(type); }));
}

KZylLayer* KZylLayerContainer::GetLayer(int index) const {
  return (index >= 0 && index < GetLayerCount()) ? mLayers[static_cast<size_t>(index)].get() : nullptr;
}

KZylLayer* KZylLayerContainer::GetLayer(int index, ELayerElementType type, bool) const {
  for (const auto& layer : mLayers)
    if (layer->HasElement(type) && index-- == 0) return layer.get();
  return nullptr;
}

int KZylLayerContainer::CreateLayer() {
  mLayers.push_back(std::make_unique<KZylLayer>(*GetZylSdkManager()));
  return GetLayerCount() - 1;
}

int KZylLayerContainer::GMI(const KString& name, int layer) const {
  KZylLayer* l = GetLayer(layer);
  KZylLayerElementMaterial* materials = l ? l->GetMaterials() : nullptr;
  if (!materials) return -1;
  const KArrayTemplate<KZylSurfaceMaterial*>& direct = materials->GetDirectArray();
  for (int i = 0; i < direct.GetCount(); ++i) {
    if (direct[i] && direct[i]->GetName() == name) return i;
  }
  return -1;
}

void KZylLayerContainer::CopyFrom(const KZylObject& source) {
  KZylNodeAttribute::CopyFrom(source);
  if (!source.Is(KZylLayerContainer::ClassId)) return;
  const KZylLayerContainer& container = static_cast<const KZylLayerContainer&>(source);
  mLayers.clear();
  for (const auto& layer : container.mLayers) {
    GetLayer(CreateLayer())->Clone(*layer, GetZylSdkManager());
  }
}

void KZylLayerContainer::ForgetObjects(const ObjectSet& gone) {
  KZylNodeAttribute::ForgetObjects(gone);
  for (const auto& layer : mLayers) layer->ForgetObjects(gone);
}

// ---------------------------------------------------------------- KZylGeometryBase

void KZylGeometryBase::InitControlPointArray(int count) {
  const size_t size = count > 0 ? static_cast<size_t>(count) : 0;
  ResizeToFill(mControlPoints.Std(), size, KZylVector4(0.0, 0.0, 0.0, 1.0));
}

void KZylGeometryBase::SetControlPointAndNormal(const KZylVector4& position, const KZylVector4& normal, int index) {
  if (!mControlPoints.SetAt(index, position)) return;
  KZylLayerElementNormal* normals = GetNormals();
  if (normals && normals->GetMappingMode() == KZylLayerElement::eByControlPoint) normals->GetDirectArray().SetAt(index, normal);
}

KZylLayerElementNormal* KZylGeometryBase::GetNormals() const {
  KZylLayer* layer = GetLayer(0);
  return layer ? layer->GetNormals() : nullptr;
}

void KZylGeometryBase::InitNormals(int count) {
  if (GetLayerCount() == 0) CreateLayer();
  KZylLayer* layer = GetLayer(0);
  if (!layer->GetNormals()) layer->SetNormals(GetZylSdkManager()->CreateKZylLayerElementNormal(""));
  KZylLayerElementNormal* normals = layer->GetNormals();
  normals->SetMappingMode(KZylLayerElement::eByControlPoint);
  normals->SetReferenceMode(KZylLayerElement::eDirect);
  normals->GetDirectArray().Clear();
  normals->GetDirectArray().Resize(count);
}

void KZylGeometryBase::CopyFrom(const KZylObject& source) {
  KZylLayerContainer::CopyFrom(source);
  if (source.Is(KZylGeometryBase::ClassId))
    mControlPoints = static_cast<const KZylGeometryBase&>(source).mControlPoints;
}

// ---------------------------------------------------------------- KZylGeometry

bool KZylGeometry::AddDeformer(KZylDeformer* deformer) {
  if (!deformer || std::find(mDeformers.begin(), mDeformers.end(), deformer) != mDeformers.end()) return false;
  mDeformers.push_back(deformer);
  return true;
}

int KZylGeometry::GetDeformerCount(int type) const {
  return static_cast<int>(std::count_if(mDeformers.begin(), mDeformers.end(), [&](const KZylDeformer* d) {
    return type == 0 || d->GetDeformerType() == type;
  }));
}

KZylDeformer* KZylGeometry::GetDeformer(int index, int type) const {
  for (KZylDeformer* deformer : mDeformers)
    if ((type == 0 || deformer->GetDeformerType() == type) && index-- == 0) return deformer;
  return nullptr;
}

bool KZylGeometry::AddLink(KZylCluster* cluster) {
  if (!cluster) return false;
  KZylSkin* skin = static_cast<KZylSkin*>(GetDeformer(0, KZylDeformer::eSkin));
  if (!skin) {
    skin = KZylSkin::Create(GetZylSdkManager(), "");
    AddDeformer(skin);
  }
  return skin->AddCluster(cluster);
}

int KZylGeometry::AddShape(KZylShape* shape, const KString& name) {
  if (!shape) {
    GetError().SetLastError(1, "The shape is null");
    return -1;
  }
  if (name.IsEmpty()) {
    GetError().SetLastError(2, "A shape needs a name");
    return -1;
  }
  if (mShapeNames.count(name) != 0) {
    GetError().SetLastError(3, KString("A shape named ") + name + " already exists");
    return -1;
  }
  if (shape->GetControlPointsCount() != GetControlPointsCount()) {
    GetError().SetLastError(4, KString("The shape has ") + shape->GetControlPointsCount() +
                                   " control points where the geometry has " + GetControlPointsCount());
    return -1;
  }
  mShapes.push_back({shape, name});
  mShapeNames.insert(name);
  KZylProperty weight = KZylProperty::Create(this, name, DTDouble);
  weight.Set(0.0);
  return GetShapeCount() - 1;
}

KZylShape* KZylGeometry::GetShape(int index) const {
  return (index >= 0 && index < GetShapeCount()) ? mShapes[static_cast<size_t>(index)].shape : nullptr;
}

KString KZylGeometry::GetShapeName(int index) const {
  return (index >= 0 && index < GetShapeCount()) ? mShapes[static_cast<size_t>(index)].name : KString();
}

void KZylGeometry::ForgetObjects(const ObjectSet& gone) {
  KZylGeometryBase::ForgetObjects(gone);
  mDeformers.erase(
      std::remove_if(mDeformers.begin(), mDeformers.end(), [&](KZylDeformer* d) { return gone.count(d) != 0; }),
      mDeformers.end());
  mShapes.erase(std::remove_if(mShapes.begin(), mShapes.end(), [&](const ShapeEntry& e) { return gone.count(e.shape) != 0; }),
                mShapes.end());
  mShapeNames.clear();
  for (const ShapeEntry& entry : mShapes) mShapeNames.insert(entry.name);
}

// ---------------------------------------------------------------- KZylMesh

void KZylMesh::BeginPolygon(int material, int texture, int group, bool) {
  mPolygons.Add({mPolygonVertices.GetCount(), 0, material, texture, group});
  mPolygonOpen = true;
}

void KZylMesh::AddPolygon(int index, int) {
  if (!mPolygonOpen) BeginPolygon();
  mPolygonVertices.Add(index);
  ++mPolygons[mPolygons.GetCount() - 1].size;
}

void KZylMesh::EndPolygon() { mPolygonOpen = false; }

int KZylMesh::ClearVerticesOutsideControlPoints() {
  const int points = GetControlPointsCount();
  auto outside = [points](int vertex) { return vertex != -1 && (vertex < 0 || vertex >= points); };
  const std::vector<int>& vertices = mPolygonVertices.Std();
  const int count = static_cast<int>(std::count_if(vertices.begin(), vertices.end(), outside));
  // Written only when needed: the array may be shared with the meshes copied from this one.
  if (count > 0)
    for (int& vertex : mPolygonVertices.Std())
      if (outside(vertex)) vertex = -1;
  return count;
}

void KZylMesh::CopyPolygonsFrom(const KZylMesh& source) {
  mPolygons = source.mPolygons;
  mPolygonVertices = source.mPolygonVertices;
  mPolygonOpen = false;
}

void KZylMesh::ReservePolygons(int64_t polygons, int64_t vertices) {
  // ReserveToAppend grows geometrically, so that many small reservations stay linear.
  auto count = [](int64_t more) { return static_cast<size_t>(std::clamp<int64_t>(more, 0, INT_MAX)); };
  ReserveToAppend(mPolygons.Std(), count(polygons));
  ReserveToAppend(mPolygonVertices.Std(), count(vertices));
}

int KZylMesh::GetPolygonSize(int polygon) const {
  return (polygon >= 0 && polygon < GetPolygonCount()) ? mPolygons[polygon].size : -1;
}

int KZylMesh::GetPolygonVertex(int polygon, int position) const {
  if (polygon < 0 || polygon >= GetPolygonCount()) return -1;
  const Polygon& p = mPolygons[polygon];
  if (position < 0 || position >= p.size) return -1;
  return mPolygonVertices[p.start + position];
}

int KZylMesh::GetPolygonVertexIndex(int polygon) const {
  return (polygon >= 0 && polygon < GetPolygonCount()) ? mPolygons[polygon].start : -1;
}

int KZylMesh::GetPolygonMaterial(int polygon) const {
  return (polygon >= 0 && polygon < GetPolygonCount()) ? mPolygons[polygon].material : -1;
}

int KZylMesh::GetPolygonTexture(int polygon) const {
  return (polygon >= 0 && polygon < GetPolygonCount()) ? mPolygons[polygon].texture : -1;
}

int KZylMesh::GetPolygonGroup(int polygon) const {
  return (polygon >= 0 && polygon < GetPolygonCount()) ? mPolygons[polygon].group : -1;
}

bool KZylMesh::ComputeVertexNormals(bool) {
  const int pointCount = GetControlPointsCount();
  const KArrayTemplate<KZylVector4>& points = GetControlPoints();
  // Each point's sum of the normals of its polygons: x, y and z, since a normal's w is 0 (a
  // quarter less memory while the mesh's own normals are made from them).
  std::vector<std::array<double, 3>> sums;
  ResizeToFill(sums, static_cast<size_t>(pointCount));
  auto valid = [&](int index) { return index >= 0 && index < pointCount; };
  const KArrayTemplate<Polygon>& polygons = mPolygons;
  const KArrayTemplate<int>& vertices = mPolygonVertices;
  std::vector<int> corners;
  for (const Polygon& polygon : polygons) {
    // Newell's method over the polygon's valid vertices.
    corners.clear();
    for (int k = 0; k < polygon.size; ++k) {
      int index = vertices[polygon.start + k];
      if (valid(index)) corners.push_back(index);
    }
    KZylVector4 normal;
    for (size_t k = 0; k < corners.size(); ++k) {
      const KZylVector4& a = points[corners[k]];
      const KZylVector4& b = points[corners[(k + 1) % corners.size()]];
      normal[0] += (a[1] - b[1]) * (a[2] + b[2]);
      normal[1] += (a[2] - b[2]) * (a[0] + b[0]);
      normal[2] += (a[0] - b[0]) * (a[1] + b[1]);
    }
    for (int index : corners)
      for (int c = 0; c < 3; ++c) sums[static_cast<size_t>(index)][static_cast<size_t>(c)] += normal[c];
  }
  for (std::array<double, 3>& sum : sums) {
    KZylVector4 unit(sum[0], sum[1], sum[2]);
    unit.Normalize();
    sum = {unit[0], unit[1], unit[2]};
  }

  if (GetLayerCount() == 0) CreateLayer();
  KZylLayer* layer = GetLayer(0);
  if (!layer->GetNormals()) layer->SetNormals(GetZylSdkManager()->CreateKZylLayerElementNormal(""));
  KZylLayerElementNormal* normals = layer->GetNormals();
  normals->SetMappingMode(KZylLayerElement::eByPolygonVertex);
  normals->SetReferenceMode(KZylLayerElement::eDirect);
  KArrayTemplate<KZylVector4>& direct = normals->GetDirectArray();
  direct.Clear();
  direct.ReserveToFill(vertices.GetCount());
  for (int index : vertices) {
    const std::array<double, 3> unit = valid(index) ? sums[static_cast<size_t>(index)] : std::array<double, 3>{};
    direct.Add(KZylVector4(unit[0], unit[1], unit[2]));
  }
  return true;
}

void KZylMesh::CopyFrom(const KZylObject& source) {
  KZylGeometry::CopyFrom(source);
  if (!source.Is(KZylMesh::ClassId)) return;
  const KZylMesh& mesh = static_cast<const KZylMesh&>(source);
  CopyPolygonsFrom(mesh);
}

}  // namespace zylsdk
