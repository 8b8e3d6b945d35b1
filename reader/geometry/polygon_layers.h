#pragma once
// The inputs of a mesh's polygons and triangles other than VERTEX: normals, colours and
// texture coordinates into layer elements mapped by polygon vertex, on the layer of the
// input's set.

#include <unordered_map>
#include <unordered_set>

#include "reader/collada_import.h"
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

// Where an input's values go in its layer element: whether they are appended, and what its
// indices are moved by to reach them.
struct SourcePlacement {
  bool appendValues;
  int base;
};

// Reads the attribute inputs of every element of one mesh, in order, from the mesh's sources
// (shared with the reading of its control points).
class PolygonLayers {
 public:
  PolygonLayers(KZylReaderCollada& reader, KZylMesh& mesh, MeshSources& sources)
      : mReader(reader), mMesh(mesh), mSources(sources) {}

  // Adds the input's values for every vertex of `lists`; false (with the error said) when its
  // source is missing or unreadable.
  bool Import(const AttributeInput& input, const PrimitiveLists& lists);
  // True once an input has given the mesh its normals.
  bool NormalsRead() const { return mNormalsRead; }

 private:
  KZylLayer& LayerOfSet(int set);
  // The traditional reading appends a source's values once per mesh, to the first element that
  // uses it, and never moves indices; the complete reading gives each element the values of
  // every source it uses, once, and moves the indices onto them. `valueCount`: the element's
  // values so far.
  SourcePlacement Place(const KZylLayerElement& element, int valueCount, const KString& source, bool seenInMesh);
  // True when the polygons' own element replaces `element`: in the complete reading, the
  // colours and UVs that `vertices` gave by control point give way to those of the polygons.
  bool GivesWay(const KZylLayerElement* element) const;
  const NumberSource* Numbers(const KString& source);

  KZylReaderCollada& mReader;
  KZylMesh& mMesh;
  MeshSources& mSources;
  // Sources already met in this mesh, by their attribute as written.
  std::unordered_set<KString> mSeenSources;
  // For the complete reading: where each source's values start in each element.
  std::unordered_map<const KZylLayerElement*, std::unordered_map<KString, int>> mSourceBases;
  bool mNormalsRead = false;
};

}  // namespace zylsdk
