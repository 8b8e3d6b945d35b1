#pragma once
// The vertex lists of one primitive element of a mesh (`polygons`, `triangles`, `polylist`,
// `tristrips`, `trifans`), parsed once, and the walk over the polygons they make. A vertex is a
// run of `stride` integers; each input reads its value at its offset inside the run. Reads never
// leave a list: a position past its end, or a negative offset, gives -1.

#include <cstdint>
#include <vector>

#include "kit/karray.h"
#include "reader/dom/dom.h"

namespace zylsdk {

// How the vertices of an element make polygons.
enum class PrimitiveKind {
  kPolygons,   // each `p` is one polygon
  kTriangles,  // every three vertices of a `p` are a triangle; a trailing partial one stays open
  kPolylist,   // the `p` is cut into polygons by the sizes of `vcount`
  kTristrips,  // each `p` is a strip of triangles
  kTrifans,    // each `p` is a fan of triangles
};

// The kind of a primitive element by its name; false for other elements.
bool PrimitiveKindOf(const DaeElement* element, PrimitiveKind& kind);

class PrimitiveLists {
 public:
  // `count` vertices starting at vertex `first` of list `list`; `open` for a trailing partial
  // triangle, which is begun and never ended.
  struct Polygon {
    int list;
    int64_t first;
    int64_t count;
    bool open;
  };

  // Parses the element's lists. `vertexOffset` places the control-point index inside a vertex:
  // strips and fans drop the triangles whose three control points are not distinct (the
  // stitching between strips). With `readHoledPolygons`, the outer `p` of each `ph` of a
  // `polygons` element is a polygon too, in document order.
  PrimitiveLists(const DaeElement* element, int64_t stride, PrimitiveKind kind, int vertexOffset = 0,
                 bool readHoledPolygons = false);

  int64_t GetPolygonCount() const { return mPolygonCount; }
  int64_t GetTotalVertexCount() const { return mTotalVertexCount; }

  // Calls visit(polygon) for each polygon, in order. Polygons are made on the way, so that a
  // large mesh costs nothing per polygon here.
  template <class Visit>
  void ForEachPolygon(Visit&& visit) const;

  // Calls visit(value) for each vertex of one polygon, in order.
  template <class Visit>
  void ForEachValue(const Polygon& polygon, int offset, Visit&& visit) const;
  // The same over every polygon.
  template <class Visit>
  void ForEachValue(int offset, Visit&& visit) const {
    ForEachPolygon([&](const Polygon& polygon) { ForEachValue(polygon, offset, visit); });
  }

 private:
  // Cuts list 0 into polygons of the sizes of `vcount`, as far as its vertices reach.
  void ReadPolygonSizes(const DaeElement* element);
  // Replaces each strip or fan by a list of its triangles' vertices.
  void UnrollStripsAndFans(PrimitiveKind kind, int vertexOffset);
  // Adds the values of a `p`, or with `joinLast` appends them to the last list.
  void AddList(const DaeElement* list, bool joinLast);
  int64_t VertexCountOf(int list) const;

  // A list's values: the document's own, or those of mOwned.
  struct IntList {
    const int* data;
    int64_t size;
  };
  std::vector<IntList> mLists;
  // Lists made here (joined, unrolled, or read from text). Their values never move once made
  // (moving a vector keeps its storage), so mLists can point into them.
  std::vector<std::vector<int>> mOwned;
  int64_t mStride;
  // Vertices per polygon: 0 for a polygon per list, 3 for triangles; with `mCounted`, the
  // sizes of `mPolygonSizes` over list 0.
  int64_t mPolygonSize = 0;
  bool mCounted = false;
  std::vector<int> mPolygonSizes;
  int64_t mPolygonCount = 0;
  int64_t mTotalVertexCount = 0;
};

template <class Visit>
void PrimitiveLists::ForEachPolygon(Visit&& visit) const {
  if (mCounted) {
    int64_t first = 0;
    for (const int size : mPolygonSizes) {
      visit(Polygon{0, first, size, false});
      first += size;
    }
    return;
  }
  for (int list = 0; list < static_cast<int>(mLists.size()); ++list) {
    const int64_t vertices = VertexCountOf(list);
    if (mPolygonSize == 0) {
      visit(Polygon{list, 0, vertices, false});
      continue;
    }
    for (int64_t first = 0; first < vertices; first += mPolygonSize) {
      const int64_t count = vertices - first < mPolygonSize ? vertices - first : mPolygonSize;
      visit(Polygon{list, first, count, count < mPolygonSize});
    }
  }
}

template <class Visit>
void PrimitiveLists::ForEachValue(const Polygon& polygon, int offset, Visit&& visit) const {
  const IntList& values = mLists[static_cast<size_t>(polygon.list)];
  const int64_t length = values.size;
  const int* data = values.data;
  const int64_t end = (polygon.first + polygon.count) * mStride;
  for (int64_t position = polygon.first * mStride; position < end; position += mStride) {
    const int64_t at = position + offset;
    visit(offset >= 0 && at < length ? data[at] : -1);
  }
}

// Makes room for `extra` more items (kit/memory_advice.h: geometric growth, room prepared).
template <class T>
void ReserveMore(KArrayTemplate<T>& array, int64_t extra) {
  ReserveToAppend(array.Std(), static_cast<size_t>(extra > 0 ? extra : 0));
}

}  // namespace zylsdk
