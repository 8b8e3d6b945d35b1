#include "gltf/layer_lookup.h"

namespace zylgltf {

using namespace zylsdk;

int DirectIndex(const KZylLayerElement& element, int directCount, const VertexPlace& place) {
  int entry = -1;
  switch (element.GetMappingMode()) {
    case KZylLayerElement::eByControlPoint: entry = place.controlPoint; break;
    case KZylLayerElement::eByPolygonVertex: entry = place.polygonVertex; break;
    case KZylLayerElement::eByPolygon: entry = place.polygon; break;
    case KZylLayerElement::eAllSame: entry = 0; break;
    default: return -1;
  }
  if (element.GetReferenceMode() != KZylLayerElement::eDirect) {
    const KArrayTemplate<int>& indices = element.GetIndexArray();
    if (!indices.IsValidIndex(entry)) return -1;
    entry = indices[entry];
  }
  return entry >= 0 && entry < directCount ? entry : -1;
}

}  // namespace zylgltf
