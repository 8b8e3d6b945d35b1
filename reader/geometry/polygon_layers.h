#pragma once
// The inputs of a mesh's polygons and triangles other than VERTEX: normals, colours and
// texture coordinates into layer elements mapped by polygon vertex, on the layer of the
// input's set.

#include <unordered_set>

#include "reader/collada_reader.h"
#include "reader/dom/dom.h"
#include "reader/geometry/mesh_sources.h"
#include "reader/geometry/primitive_lists.h"

namespace zylsdk {

// An input other than VERTEX, as written.
struct AttributeInput {
  KString semantic;
  int set = 0;
  int offset = 0;
  KString source;
};

// Reads the attribute inputs of every element of one mesh, in order.
class PolygonLayers {
 public:
  PolygonLayers(KZylReaderCollada& reader, KZylMesh& mesh, const DaeElement* meshElement)
      : mReader(reader), mMesh(mesh), mSources(meshElement) {}

  // Adds the input's values for every vertex of `lists`; false (with the error said) when its
  // source is missing or unreadable.
  bool Import(const AttributeInput& input, const PrimitiveLists& lists);
  // True once an input has given the mesh its normals.
  bool NormalsRead() const { return mNormalsRead; }

 private:
  KZylLayer& LayerOfSet(int set);
  template <class T>
  const KArrayTemplate<T>* Values(const KString& source);

  KZylReaderCollada& mReader;
  KZylMesh& mMesh;
  MeshSources mSources;
  // Sources already met in this mesh, by their attribute as written.
  std::unordered_set<KString> mSeenSources;
  bool mNormalsRead = false;
};

}  // namespace zylsdk
