#include "reader/geometry/polygon_layers.h"

#include "reader/dom/dom.h"

namespace zylsdk {
namespace {

// Layers are numbered by the inputs' sets; beyond this a set would only make empty layers.
constexpr int kLargestSet = 255;

void AppendNormals(KZylLayerElementNormal& element, const KString& name, const KArrayTemplate<KZylVector4>& normals,
                   const PrimitiveLists& lists, int offset) {
  element.SetMappingMode(KZylLayerElement::eByPolygonVertex);
  element.SetReferenceMode(KZylLayerElement::eDirect);
  element.SetName(name);
  KArrayTemplate<KZylVector4>& direct = element.GetDirectArray();
  ReserveMore(direct, lists.GetTotalVertexCount());
  // A vector per polygon vertex; an index outside the source gives a zero vector.
  std::vector<KZylVector4>& out = direct.Std();
  const int count = normals.GetCount();
  const KZylVector4* values = normals.GetArray();
  lists.ForEachValue(offset, [&](int index) { out.push_back(index >= 0 && index < count ? values[index] : KZylVector4()); });
}

// Colours and texture coordinates: an index per polygon vertex, and the source's values once
// per source. Indices are kept as written, never rebased onto values already in the element.
template <class Element, class T>
void AppendIndexed(Element& element, const KString& name, const KArrayTemplate<T>& values, bool sourceSeen,
                   const PrimitiveLists& lists, int offset) {
  element.SetMappingMode(KZylLayerElement::eByPolygonVertex);
  element.SetReferenceMode(KZylLayerElement::eIndexToDirect);
  element.SetName(name);
  KArrayTemplate<int>& indices = element.GetIndexArray();
  ReserveMore(indices, lists.GetTotalVertexCount());
  lists.ForEachValue(offset, [&](int index) { indices.Add(index); });
  if (sourceSeen) return;
  KArrayTemplate<T>& direct = element.GetDirectArray();
  ReserveMore(direct, values.GetCount());
  for (const T& value : values) direct.Add(value);
}

}  // namespace

// The source's values; null (with the error said) when it cannot be read.
template <class T>
const KArrayTemplate<T>* PolygonLayers::Values(const KString& source) {
  const KArrayTemplate<T>* values = mSources.Read<T>(source);
  if (!values) mReader.AddNotificationError("reading array in <source>: " + source);
  return values;
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
  const bool seen = !mSeenSources.insert(input.source).second;
  const KString name = DAE_GetProperty(source, "name");
  KZylSdkManager* manager = mMesh.GetZylSdkManager();

  if (input.semantic == "NORMAL") {
    const KArrayTemplate<KZylVector4>* normals = Values<KZylVector4>(input.source);
    if (!normals) return false;
    if (!layer.GetNormals()) layer.SetNormals(manager->CreateKZylLayerElementNormal(""));
    AppendNormals(*layer.GetNormals(), name, *normals, lists, input.offset);
    mNormalsRead = true;
  } else if (input.semantic == "COLOR") {
    const KArrayTemplate<KZylColor>* colors = Values<KZylColor>(input.source);
    if (!colors) return false;
    if (!layer.GetVertexColors()) layer.SetVertexColors(manager->CreateKZylLayerElementVertexColor(""));
    AppendIndexed(*layer.GetVertexColors(), name, *colors, seen, lists, input.offset);
  } else if (input.semantic == "UV" || input.semantic == "TEXCOORD") {
    const KArrayTemplate<KZylVector2>* uvs = Values<KZylVector2>(input.source);
    if (!uvs) return false;
    // Every UV set serves the diffuse channel.
    const auto channel = KZylLayerElement::eDiffuseTextures;
    if (!layer.GetUVs(channel)) layer.SetUVs(manager->CreateKZylLayerElementUV(""), channel);
    AppendIndexed(*layer.GetUVs(channel), name, *uvs, seen, lists, input.offset);
  } else {
    mReader.AddNotificationWarning("Unknown property for polygons: " + input.semantic);
  }
  return true;
}

KZylLayer& PolygonLayers::LayerOfSet(int set) {
  while (!mMesh.GetLayer(set)) mMesh.CreateLayer();
  return *mMesh.GetLayer(set);
}

}  // namespace zylsdk
