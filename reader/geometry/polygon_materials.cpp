#include "reader/geometry/polygon_materials.h"

namespace zylsdk {

PolygonMaterials::PolygonMaterials(KZylMesh& mesh, const IdList<TextureUseArray>& textures, int elementCount,
                                   bool placeTextures)
    : mMesh(mesh), mTextures(textures), mElementCount(elementCount), mPlaceTextures(placeTextures) {}

PolygonMaterials::Indices PolygonMaterials::Assign(const KString& materialName, int ordinal) {
  Indices indices;
  if (materialName.IsEmpty()) return indices;

  // A new material for every element, even when two elements name the same one: binding
  // replaces each slot on its own.
  KZylLayerElementMaterial& materials = MaterialElement();
  indices.material = materials.GetDirectArray().Add(KZylSurfaceMaterial::Create(mMesh.GetZylSdkManager(), materialName.Buffer()));
  materials.GetIndexArray().Add(indices.material);

  // The polygons carry the index of the material's last texture.
  if (!mPlaceTextures) return indices;
  if (const TextureUseArray* uses = mTextures.Lookup(materialName))
    for (const TextureUse& use : *uses) indices.texture = PlaceTexture(use, ordinal);
  return indices;
}

void PolygonMaterials::IndexEveryPolygon() {
  KZylLayerElementMaterial* element = mMesh.GetLayer(0)->GetMaterials();
  if (!element || element->GetMappingMode() != KZylLayerElement::eByPolygon) return;
  std::vector<int>& indices = element->GetIndexArray().Std();
  indices.clear();
  indices.reserve(static_cast<size_t>(mMesh.GetPolygonCount()));
  for (int polygon = 0; polygon < mMesh.GetPolygonCount(); ++polygon) indices.push_back(mMesh.GetPolygonMaterial(polygon));
}

KZylLayerElementMaterial& PolygonMaterials::MaterialElement() {
  KZylLayer* layer = mMesh.GetLayer(0);
  if (!layer->GetMaterials()) {
    KZylLayerElementMaterial* element = mMesh.GetZylSdkManager()->CreateKZylLayerElementMaterial("");
    // One material for the whole mesh when it has a single element, else one per polygon.
    element->SetMappingMode(mElementCount == 1 ? KZylLayerElement::eAllSame : KZylLayerElement::eByPolygon);
    element->SetReferenceMode(KZylLayerElement::eIndexToDirect);
    layer->SetMaterials(element);
  }
  return *layer->GetMaterials();
}

int PolygonMaterials::PlaceTexture(const TextureUse& use, int ordinal) {
  KZylLayer* layer = mMesh.GetLayer(use.layerIndex);
  if (!layer) layer = mMesh.GetLayer(mMesh.CreateLayer());
  if (!layer->GetTextures(use.layerKind))
    layer->SetTextures(use.layerKind, mMesh.GetZylSdkManager()->CreateKZylLayerElementTexture(""));
  KZylLayerElementTexture& element = *layer->GetTextures(use.layerKind);
  element.SetMappingMode(KZylLayerElement::eByPolygon);
  element.SetReferenceMode(KZylLayerElement::eIndexToDirect);
  const bool additive = use.texture->GetBlendMode() != KZylTexture::eNormal;
  element.SetBlendMode(additive ? KZylLayerElementTexture::eAdditive : KZylLayerElementTexture::eTranslucent);

  // One slot per element of the mesh; elements without this texture keep -1.
  KArrayTemplate<int>& slots = element.GetIndexArray();
  while (slots.GetCount() < mElementCount) slots.Add(-1);

  const KString& name = use.texture->GetName();
  int position = FindTexture(element, name);
  if (position < 0) {
    position = element.GetDirectArray().Add(use.texture);
    mTexturePositions[&element].emplace(name, position);
  }
  slots.SetAt(ordinal, position);
  return position;
}

int PolygonMaterials::FindTexture(KZylLayerElementTexture& element, const KString& name) {
  auto known = mTexturePositions.find(&element);
  if (known == mTexturePositions.end()) {
    // First meeting with this element: index what it already holds, first name first.
    std::unordered_map<KString, int>& positions = mTexturePositions[&element];
    const KArrayTemplate<KZylTexture*>& textures = element.GetDirectArray();
    for (int i = 0; i < textures.GetCount(); ++i)
      if (textures[i]) positions.emplace(textures[i]->GetName(), i);
    known = mTexturePositions.find(&element);
  }
  auto found = known->second.find(name);
  return found == known->second.end() ? -1 : found->second;
}

}  // namespace zylsdk
