#include "kit/manager.h"

#include <algorithm>

#include "kit/memory_advice.h"
#include "kit/object_memory.h"
#include "kit/property_names.h"
#include "kit/reader_base.h"

namespace zylsdk {

KZylSdkManager::KZylSdkManager()
    : mObjectMemory(std::make_unique<ObjectMemory>()),
      mPropertyNames(std::make_unique<PropertyNames>()),
      mUserNotification(std::make_unique<KZylUserNotification>()) {}

KZylSdkManager::~KZylSdkManager() {
  // Newest first, so that nothing outlives an object made from it. Objects only drop their
  // own storage in their destructors, so no notification is needed here.
  while (!mObjects.empty()) mObjects.pop_back();
  for (auto& [classId, table] : mClassProperties) KZylObject::ReleaseTable(table);
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
  // An object's unique id is its position in mObjects plus one.
  MakeRoomForOne(mObjects);
  mObjects.emplace_back(object);
  object->mUniqueID = mObjects.size();
  ++mLiveObjects;
  ++mObjectsVersion;
}

void KZylSdkManager::DestroyObjects(const std::vector<KZylObject*>& objects) {
  ObjectSet gone;
  for (KZylObject* object : objects)
    if (object && object->GetZylSdkManager() == this) gone.insert(object);
  if (gone.empty()) return;
  for (const std::unique_ptr<KZylObject>& other : mObjects)
    if (other && !gone.count(other.get())) other->ForgetObjects(gone);
  for (const KZylObject* object : gone) {
    const_cast<KZylObject*>(object)->DisconnectAll();
    mObjects[object->GetUniqueID() - 1].reset();
    --mLiveObjects;
  }
  ++mObjectsVersion;
  ++mHierarchyVersion;
}

KZylObject* KZylSdkManager::FindObject(uint64_t uniqueID) const {
  return (uniqueID >= 1 && uniqueID <= mObjects.size()) ? mObjects[uniqueID - 1].get() : nullptr;
}

const std::vector<KZylObject*>& KZylSdkManager::ObjectsOfClass(const KZylClassId& classId) const {
  if (mObjectsByClassVersion != mObjectsVersion) {
    mObjectsByClass.clear();
    mObjectsByClassVersion = mObjectsVersion;
  }
  auto [entry, made] = mObjectsByClass.try_emplace(&classId);
  if (made)
    for (const std::unique_ptr<KZylObject>& object : mObjects)
      if (object && object->Is(classId)) entry->second.push_back(object.get());
  return entry->second;
}

int KZylSdkManager::GetSrcObjectCount(const KZylClassId& classId) const {
  return static_cast<int>(ObjectsOfClass(classId).size());
}

KZylObject* KZylSdkManager::GetSrcObject(const KZylClassId& classId, int index) const {
  const std::vector<KZylObject*>& objects = ObjectsOfClass(classId);
  return (index >= 0 && static_cast<size_t>(index) < objects.size()) ? objects[static_cast<size_t>(index)] : nullptr;
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
