#include "reader/geometry/polygon_layers.h"

#include <algorithm>
#include <climits>

#include "reader/dom/dom.h"

namespace zylsdk {
namespace {

// Layers are numbered by the inputs' sets; beyond this a set would only make empty layers.
constexpr int kLargestSet = 255;

void AppendNormals(KZylLayerElementNormal& element, const KString& name, const NumberSource& normals,
                   const PrimitiveLists& lists, int offset) {
  element.SetMappingMode(KZylLayerElement::eByPolygonVertex);
  element.SetReferenceMode(KZylLayerElement::eDirect);
  element.SetName(name);
  KArrayTemplate<KZylVector4>& direct = element.GetDirectArray();
  ReserveMore(direct, lists.GetTotalVertexCount());
  // A vector per polygon vertex; an index outside the source gives a zero vector.
  std::vector<KZylVector4>& out = direct.Std();
  const int64_t count = normals.Count();
  lists.ForEachValue(offset, [&](int index) {
    out.push_back(index >= 0 && index < count ? normals.Item<KZylVector4>(index) : KZylVector4());
  });
}

// Colours and texture coordinates: an index per polygon vertex, each moved by the placement's
// base, and the source's values when the placement asks for them.
template <class T, class Element>
void AppendIndexed(Element& element, const KString& name, const NumberSource& values,
                   const SourcePlacement& placement, const PrimitiveLists& lists, int offset) {
  element.SetMappingMode(KZylLayerElement::eByPolygonVertex);
  element.SetReferenceMode(KZylLayerElement::eIndexToDirect);
  element.SetName(name);
  KArrayTemplate<int>& indices = element.GetIndexArray();
  ReserveMore(indices, lists.GetTotalVertexCount());
  const int base = placement.base;
  lists.ForEachValue(offset, [&](int index) {
    indices.Add(index >= 0 && base > 0 ? static_cast<int>(std::min<int64_t>(int64_t{index} + base, INT_MAX)) : index);
  });
  if (!placement.appendValues) return;
  KArrayTemplate<T>& direct = element.GetDirectArray();
  const int64_t count = values.Count();
  ReserveMore(direct, count);
  for (int64_t i = 0; i < count; ++i) direct.Add(values.Item<T>(i));
}

}  // namespace

// The source's numbers; null (with the error said) when it cannot be read.
const NumberSource* PolygonLayers::Numbers(const KString& source) {
  const NumberSource* numbers = mSources.Numbers(source);
  if (!numbers) mReader.AddNotificationError("reading array in <source>: " + source);
  return numbers;
}

bool PolygonLayers::Import(const AttributeInput& input, const PrimitiveLists& lists) {
  if (input.set < 0 || input.set > kLargestSet) {
    mReader.AddNotificationWarning(KString("input set out of range: ") + input.set);
    return true;
  }
  KZylLayer& layer = LayerOfSet(input.set);
  const DaeElement* source = mSources.Find(input.source);
  if (!source) {
    mReader.AddNotificationError(KString("source") + " " + "\"" + input.source + "\"" + " not found as <" + "source" +
                                 "> for <input>");
    return false;
  }
  const bool seenInMesh = !mSeenSources.insert(input.source).second;
  const KString name = DAE_GetProperty(source, "name");
  KZylSdkManager* manager = mMesh.GetZylSdkManager();

  if (input.semantic == "NORMAL") {
    const NumberSource* normals = Numbers(input.source);
    if (!normals) return false;
    if (!layer.GetNormals()) layer.SetNormals(manager->CreateKZylLayerElementNormal(""));
    AppendNormals(*layer.GetNormals(), name, *normals, lists, input.offset);
    mNormalsRead = true;
  } else if (input.semantic == "COLOR") {
    const NumberSource* colors = Numbers(input.source);
    if (!colors) return false;
    if (!layer.GetVertexColors() || GivesWay(layer.GetVertexColors()))
      layer.SetVertexColors(manager->CreateKZylLayerElementVertexColor(""));
    KZylLayerElementVertexColor& element = *layer.GetVertexColors();
    AppendIndexed<KZylColor>(element, name, *colors, Place(element, element.GetDirectArray().GetCount(), input.source, seenInMesh),
                  lists, input.offset);
  } else if (input.semantic == "UV" || input.semantic == "TEXCOORD") {
    const NumberSource* uvs = Numbers(input.source);
    if (!uvs) return false;
    // Every UV set serves the diffuse channel.
    const auto channel = KZylLayerElement::eDiffuseTextures;
    if (!layer.GetUVs(channel) || GivesWay(layer.GetUVs(channel)))
      layer.SetUVs(manager->CreateKZylLayerElementUV(""), channel);
    KZylLayerElementUV& element = *layer.GetUVs(channel);
    AppendIndexed<KZylVector2>(element, name, *uvs, Place(element, element.GetDirectArray().GetCount(), input.source, seenInMesh),
                  lists, input.offset);
  } else {
    mReader.AddNotificationWarning("Unknown property for polygons: " + input.semantic);
  }
  return true;
}

SourcePlacement PolygonLayers::Place(const KZylLayerElement& element, int valueCount, const KString& source,
                                     bool seenInMesh) {
  if (!mReader.IsComplete()) return {!seenInMesh, 0};
  auto placed = mSourceBases[&element].emplace(source, valueCount);
  return {placed.second, placed.first->second};
}

bool PolygonLayers::GivesWay(const KZylLayerElement* element) const {
  return mReader.IsComplete() && element->GetMappingMode() == KZylLayerElement::eByControlPoint;
}

KZylLayer& PolygonLayers::LayerOfSet(int set) {
  while (!mMesh.GetLayer(set)) mMesh.CreateLayer();
  return *mMesh.GetLayer(set);
}

}  // namespace zylsdk
