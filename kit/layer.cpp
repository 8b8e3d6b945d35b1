#include "kit/layer.h"

#include "kit/manager.h"
#include "kit/material.h"
#include "kit/texture.h"

namespace zylsdk {

KZylLayerElementUV* KZylLayer::GetUVs(ELayerElementType channel) const {
  auto found = mUVs.find(channel);
  return found == mUVs.end() ? nullptr : found->second.get();
}

KZylLayerElementTexture* KZylLayer::GetTextures(ELayerElementType channel) const {
  auto found = mTextures.find(channel);
  return found == mTextures.end() ? nullptr : found->second.get();
}

std::vector<KZylLayer::ELayerElementType> KZylLayer::GetUVChannels() const {
  std::vector<ELayerElementType> channels;
  for (const auto& entry : mUVs) channels.push_back(static_cast<ELayerElementType>(entry.first));
  return channels;
}

std::vector<KZylLayer::ELayerElementType> KZylLayer::GetTextureChannels() const {
  std::vector<ELayerElementType> channels;
  for (const auto& entry : mTextures) channels.push_back(static_cast<ELayerElementType>(entry.first));
  return channels;
}

template <class E>
std::unique_ptr<E> KZylLayer::Adopt(E* element) {
  if (!element) return nullptr;
  std::unique_ptr<KZylLayerElement> owned = mManager->ReleaseLayerElement(element);
  if (owned) return std::unique_ptr<E>(static_cast<E*>(owned.release()));
  // Owned elsewhere (another layer): keep a copy of it.
  return std::unique_ptr<E>(static_cast<E*>(element->Clone().release()));
}

void KZylLayer::SetNormals(KZylLayerElementNormal* element) {
  if (element != mNormals.get()) mNormals = Adopt(element);
}

void KZylLayer::SetVertexColors(KZylLayerElementVertexColor* element) {
  if (element != mVertexColors.get()) mVertexColors = Adopt(element);
}

void KZylLayer::SetMaterials(KZylLayerElementMaterial* element) {
  if (element != mMaterials.get()) mMaterials = Adopt(element);
}

void KZylLayer::SetUVs(KZylLayerElementUV* element, ELayerElementType channel) {
  if (element == GetUVs(channel)) return;
  if (element)
    mUVs[channel] = Adopt(element);
  else
    mUVs.erase(channel);
}

void KZylLayer::SetTextures(ELayerElementType channel, KZylLayerElementTexture* element) {
  if (element == GetTextures(channel)) return;
  if (element)
    mTextures[channel] = Adopt(element);
  else
    mTextures.erase(channel);
}

bool KZylLayer::HasElement(ELayerElementType type) const {
  switch (type) {
    case KZylLayerElement::eNormal: return mNormals != nullptr;
    case KZylLayerElement::eVertexColor: return mVertexColors != nullptr;
    case KZylLayerElement::eMaterial: return mMaterials != nullptr;
    case KZylLayerElement::eUV: return !mUVs.empty();
    default: return mTextures.count(type) != 0;
  }
}

namespace {

template <class E>
std::unique_ptr<E> CloneElement(const std::unique_ptr<E>& element) {
  if (!element) return nullptr;
  return std::unique_ptr<E>(static_cast<E*>(element->Clone().release()));
}

}  // namespace

void KZylLayer::Clone(const KZylLayer& source, KZylSdkManager*) {
  if (&source == this) return;
  mNormals = CloneElement(source.mNormals);
  mVertexColors = CloneElement(source.mVertexColors);
  mMaterials = CloneElement(source.mMaterials);
  mUVs.clear();
  for (const auto& [channel, element] : source.mUVs) mUVs[channel] = CloneElement(element);
  mTextures.clear();
  for (const auto& [channel, element] : source.mTextures) mTextures[channel] = CloneElement(element);
}

namespace {

// Nulls the entries of destroyed objects, writing to the array only when one is there (a
// write would give a shared array storage of its own).
template <class T>
void ForgetEntries(KArrayTemplate<T*>& entries, const std::unordered_set<const KZylObject*>& gone) {
  const KArrayTemplate<T*>& readOnly = entries;
  for (int i = 0; i < readOnly.GetCount(); ++i)
    if (readOnly[i] && gone.count(readOnly[i])) entries[i] = nullptr;
}

}  // namespace

void KZylLayer::ForgetObjects(const std::unordered_set<const KZylObject*>& gone) {
  if (mMaterials) ForgetEntries(mMaterials->GetDirectArray(), gone);
  for (auto& entry : mTextures) ForgetEntries(entry.second->GetDirectArray(), gone);
}

}  // namespace zylsdk
