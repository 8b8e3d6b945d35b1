#pragma once
// KZylGeometryConverter: conversions of geometry data.

#include "kit/object.h"

namespace zylsdk {

class KZylMesh;

class KZylGeometryConverter : public KZylObject {
  KZYL_DECLARE_CLASS(KZylGeometryConverter)
 public:
  // Rewrites the normals of the mesh and of each of its shapes as by-polygon-vertex, direct:
  // by-control-point, by-polygon and all-same normals are expanded through the polygons
  // (indexed ones through their index array), direct by-polygon-vertex normals are kept, as
  // are normals by edge. Returns false, changing nothing, when a polygon vertex names a control
  // point that the mesh or a shape does not have, or when the mesh is null.
  bool EmulateNormalsByPolygonVertex(KZylMesh* mesh);

 protected:
  using KZylObject::KZylObject;
};

}  // namespace zylsdk
