#pragma once
// Which entry of a layer element's direct array belongs to a polygon vertex, whatever the
// element's mapping and reference modes. Every index is checked: an entry outside its array
// gives -1, never a read.

#include "kit/layer.h"

namespace zylgltf {

// Where a value is asked for: the polygon, the vertex's position among all polygon vertices,
// and its control point.
struct VertexPlace {
  int polygon = 0;
  int polygonVertex = 0;
  int controlPoint = 0;
};

// The index into the direct array of `element` (holding `directCount` entries) for `place`;
// -1 when the element maps by edge or not at all, or an index falls outside its array.
int DirectIndex(const zylsdk::KZylLayerElement& element, int directCount, const VertexPlace& place);

// The value of a layer element at `place`, or `fallback` when there is none.
template <class Element, class Value>
Value LayerValue(const Element& element, const VertexPlace& place, const Value& fallback) {
  const auto& direct = element.GetDirectArray();
  const int index = DirectIndex(element, direct.GetCount(), place);
  return index < 0 ? fallback : direct[index];
}

}  // namespace zylgltf
