#pragma once
// Geometry: the layer container, control points with their normals (KZylGeometryBase),
// deformers and shapes (KZylGeometry), shapes themselves (KZylShape) and meshes with polygons
// (KZylMesh).

#include <memory>
#include <unordered_set>
#include <vector>

#include "kit/layer.h"
#include "kit/node_attribute.h"

namespace zylsdk {

class KZylDeformer;
class KZylCluster;
class KZylSkin;
class KZylShape;
class KZylSurfaceMaterial;

// A node attribute that holds numbered layers of layer elements.
class KZylLayerContainer : public KZylNodeAttribute {
  KZYL_DECLARE_CLASS(KZylLayerContainer)
 public:
  using ELayerElementType = KZylLayerElement::ELayerElementType;

  int GetLayerCount() const { return static_cast<int>(mLayers.size()); }
  // The number of layers that hold an element of `type` (the flag is accepted for
  // compatibility and has no effect).
  int GetLayerCount(ELayerElementType type, bool = false) const;
  // Layer `index`, or null.
  KZylLayer* GetLayer(int index) const;
  // The `index`-th layer among those that hold an element of `type`, or null.
  KZylLayer* GetLayer(int index, ELayerElementType type, bool = false) const;
  // Appends a layer and returns its index.
  int CreateLayer();

  // The index of the first material named `name` in the direct array of the material element
  // of layer `layer`; -1 when there is none.
  int GMI(const KString& name, int layer = 0) const;

 protected:
  using KZylNodeAttribute::KZylNodeAttribute;
  void CopyFrom(const KZylObject& source) override;
  void ForgetObjects(const ObjectSet& gone) override;

 private:
  std::vector<std::unique_ptr<KZylLayer>> mLayers;
};

// Control points, and their normals in layer 0.
class KZylGeometryBase : public KZylLayerContainer {
  KZYL_DECLARE_CLASS(KZylGeometryBase)
 public:
  // Makes the geometry hold exactly `count` control points: existing points are kept, new ones
  // are (0, 0, 0, 1).
  virtual void InitControlPointArray(int count);
  int GetControlPointsCount() const { return mControlPoints.GetCount(); }
  const KArrayTemplate<KZylVector4>& GetControlPoints() const { return mControlPoints; }
  KArrayTemplate<KZylVector4>& GetControlPoints() { return mControlPoints; }
  // Bounded access: outside the array the read gives (0, 0, 0, 0) and the write does nothing.
  KZylVector4 GetControlPointAt(int index) const { return mControlPoints.GetAt(index); }
  void SetControlPointAt(const KZylVector4& position, int index) { mControlPoints.SetAt(index, position); }

  // Stores control point `index` and its normal. Writes outside the control points do
  // nothing; the normal is stored only when layer 0 has a normal element that maps by control
  // point and is long enough.
  virtual void SetControlPointAndNormal(const KZylVector4& position, const KZylVector4& normal, int index);

  // The normal element of layer 0, or null.
  KZylLayerElementNormal* GetNormals() const;
  // Creates layer 0 and its normal element when missing, and gives the element `count`
  // zero normals mapped by control point, direct.
  void InitNormals(int count = 0);

 protected:
  using KZylLayerContainer::KZylLayerContainer;
  void CopyFrom(const KZylObject& source) override;

 private:
  KArrayTemplate<KZylVector4> mControlPoints;
};

// A geometry that can be deformed: skins and clusters, and shapes (morph targets) with their
// weights.
class KZylGeometry : public KZylGeometryBase {
  KZYL_DECLARE_CLASS(KZylGeometry)
 public:
  // Deformers, of any type or of one type (KZylDeformer::EDeformerType; 0 for any).
  bool AddDeformer(KZylDeformer* deformer);
  int GetDeformerCount(int type = 0) const;
  KZylDeformer* GetDeformer(int index, int type = 0) const;
  // Adds the cluster to the first skin, creating the skin when there is none.
  bool AddLink(KZylCluster* cluster);

  // Adds a shape and returns its index; -1 with a last-error text when the shape is null, the
  // name is empty or already used on this geometry, or the shape's control-point count is not
  // this geometry's. A new shape gets a double property named after it, value 0: its weight.
  virtual int AddShape(KZylShape* shape, const KString& name);
  int GetShapeCount() const { return static_cast<int>(mShapes.size()); }
  KZylShape* GetShape(int index) const;
  KString GetShapeName(int index) const;

 protected:
  using KZylGeometryBase::KZylGeometryBase;
  void ForgetObjects(const ObjectSet& gone) override;

 private:
  std::vector<KZylDeformer*> mDeformers;
  struct ShapeEntry {
    KZylShape* shape;
    KString name;
  };
  std::vector<ShapeEntry> mShapes;
  std::unordered_set<KString> mShapeNames;  // the names of mShapes, for the check of a new name
};

// A morph target: control points with their normals.
class KZylShape : public KZylGeometryBase {
  KZYL_DECLARE_CLASS(KZylShape)
 protected:
  using KZylGeometryBase::KZylGeometryBase;
};

// A polygon mesh. Polygons list control-point indices; each also keeps a material index, a
// texture index and a group. Indices are stored as given: consumers check them against the
// control points.
class KZylMesh : public KZylGeometry {
  KZYL_DECLARE_CLASS(KZylMesh)
 public:
  EAttributeType GetAttributeType() const override { return eMesh; }

  // Starts a polygon (closing one still open). The polygon counts at once, ended or not.
  void BeginPolygon(int material = -1, int texture = -1, int group = -1, bool legacy = true);
  // Appends a control-point index to the open polygon; without one, starts a polygon first.
  void AddPolygon(int index, int textureUVIndex = -1);
  void EndPolygon();
  // Replaces this mesh's polygons by those of `source` (their arrays shared until one changes).
  void CopyPolygonsFrom(const KZylMesh& source);
  // Makes room for `polygons` more polygons holding `vertices` more vertices in all, so that
  // building a large mesh does not move its arrays while they grow.
  void ReservePolygons(int64_t polygons, int64_t vertices);

  int GetPolygonCount() const { return mPolygons.GetCount(); }
  // The number of vertices of a polygon; -1 for an index outside the polygons.
  int GetPolygonSize(int polygon) const;
  // The control-point index of a polygon's vertex; -1 outside the polygon.
  int GetPolygonVertex(int polygon, int position) const;
  // All polygon vertices in order, and where each polygon starts in that array.
  const KArrayTemplate<int>& GetPolygonVertices() const { return mPolygonVertices; }
  int GetPolygonVertexIndex(int polygon) const;
  int GetPolygonVertexCount() const { return mPolygonVertices.GetCount(); }
  int GetPolygonMaterial(int polygon) const;
  int GetPolygonTexture(int polygon) const;
  int GetPolygonGroup(int polygon) const;
  // Sets every polygon vertex that indexes no control point to -1; returns how many it set.
  int ClearVerticesOutsideControlPoints();

  // Smooth normals, counter-clockwise winding: each control point gets the normalised sum of
  // the (Newell) normals of the polygons that use it (zero where the sum is zero; indices
  // outside the control points are skipped). They are written to layer 0's normal element,
  // by polygon vertex, direct, one entry per polygon vertex. The flag is accepted for
  // compatibility (clockwise winding is not supported).
  bool ComputeVertexNormals(bool clockwise = false);

 protected:
  using KZylGeometry::KZylGeometry;
  void CopyFrom(const KZylObject& source) override;

 private:
  struct Polygon {
    int start;
    int size;
    int material;
    int texture;
    int group;
  };
  KArrayTemplate<Polygon> mPolygons;
  KArrayTemplate<int> mPolygonVertices;
  bool mPolygonOpen = false;
};

}  // namespace zylsdk
