#include "kit/manager.h"

#include <algorithm>

#include "kit/reader_base.h"

namespace zylsdk {

KZylSdkManager::KZylSdkManager() : mUserNotification(std::make_unique<KZylUserNotification>()) {}

KZylSdkManager::~KZylSdkManager() {
  // Newest first, so that nothing outlives an object made from it. Objects only drop their
  // own storage in their destructors, so no notification is needed here.
  while (!mObjects.empty()) mObjects.pop_back();
}

void KZylSdkManager::SetUserNotification(std::unique_ptr<KZylUserNotification> notification) {
  mUserNotification = std::move(notification);
}

void KZylSdkManager::RegisterReader(const KString& extension, ReaderFactory factory) {
  mReaderFactories[extension.Upper()] = std::move(factory);
}

std::unique_ptr<KZylReader> KZylSdkManager::CreateReader(const KString& fileNameOrExtension) {
  int dot = fileNameOrExtension.ReverseFind('.');
  KString extension = (dot < 0 ? fileNameOrExtension : fileNameOrExtension.Mid(dot + 1)).Upper();
  auto found = mReaderFactories.find(extension);
  if (found == mReaderFactories.end()) return nullptr;
  return found->second(*this);
}

void KZylSdkManager::AdoptObject(KZylObject* object) {
  object->mUniqueID = mNextUniqueID++;
  mSlots.emplace(object, mObjects.size());
  mObjects.emplace_back(object);
  ++mLiveObjects;
  for (const KZylClassId* c = &object->GetClassId(); c; c = c->parent) mObjectsByClass[c].push_back(object);
}

void KZylSdkManager::DestroyObjects(const std::vector<KZylObject*>& objects) {
  ObjectSet gone;
  for (KZylObject* object : objects)
    if (object && mSlots.count(object)) gone.insert(object);
  if (gone.empty()) return;
  for (const std::unique_ptr<KZylObject>& other : mObjects)
    if (other && !gone.count(other.get())) other->ForgetObjects(gone);
  for (const KZylObject* object : gone) const_cast<KZylObject*>(object)->DisconnectAll();
  for (auto& [classId, list] : mObjectsByClass)
    list.erase(std::remove_if(list.begin(), list.end(), [&](KZylObject* o) { return gone.count(o) != 0; }),
               list.end());
  for (const KZylObject* object : gone) {
    auto slot = mSlots.find(object);
    mObjects[slot->second].reset();
    mSlots.erase(slot);
    --mLiveObjects;
  }
  ++mHierarchyVersion;
}

bool KZylSdkManager::Holds(const KZylObject* object, uint64_t uniqueID) const {
  return mSlots.count(object) != 0 && object->GetUniqueID() == uniqueID;
}

int KZylSdkManager::GetSrcObjectCount(const KZylClassId& classId) const {
  auto found = mObjectsByClass.find(&classId);
  return found == mObjectsByClass.end() ? 0 : static_cast<int>(found->second.size());
}

KZylObject* KZylSdkManager::GetSrcObject(const KZylClassId& classId, int index) const {
  auto found = mObjectsByClass.find(&classId);
  if (found == mObjectsByClass.end() || index < 0 || static_cast<size_t>(index) >= found->second.size())
    return nullptr;
  return found->second[static_cast<size_t>(index)];
}

template <class E>
E* KZylSdkManager::KeepLayerElement(E* element) {
  mLayerElements.emplace(element, std::unique_ptr<KZylLayerElement>(element));
  return element;
}

KZylLayerElementNormal* KZylSdkManager::CreateKZylLayerElementNormal(const char* name) {
  return KeepLayerElement(new KZylLayerElementNormal(name));
}
KZylLayerElementVertexColor* KZylSdkManager::CreateKZylLayerElementVertexColor(const char* name) {
  return KeepLayerElement(new KZylLayerElementVertexColor(name));
}
KZylLayerElementUV* KZylSdkManager::CreateKZylLayerElementUV(const char* name) {
  return KeepLayerElement(new KZylLayerElementUV(name));
}
KZylLayerElementMaterial* KZylSdkManager::CreateKZylLayerElementMaterial(const char* name) {
  return KeepLayerElement(new KZylLayerElementMaterial(name));
}
KZylLayerElementTexture* KZylSdkManager::CreateKZylLayerElementTexture(const char* name) {
  return KeepLayerElement(new KZylLayerElementTexture(name));
}

std::unique_ptr<KZylLayerElement> KZylSdkManager::ReleaseLayerElement(KZylLayerElement* element) {
  auto found = mLayerElements.find(element);
  if (found == mLayerElements.end()) return nullptr;
  std::unique_ptr<KZylLayerElement> released = std::move(found->second);
  mLayerElements.erase(found);
  return released;
}

}  // namespace zylsdk
