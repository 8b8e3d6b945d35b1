#pragma once
// KZylSdkManager: owns every kit object, the user notification and the reader factories.
//
// Objects made through a manager live until they are destroyed or the manager is. Two managers
// share nothing; each may be used on its own thread.

#include <functional>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "kit/layer.h"
#include "kit/notification.h"
#include "kit/object.h"

namespace zylsdk {

class KZylReader;
class ObjectMemory;
class PropertyNames;

class KZylSdkManager {
 public:
  using ReaderFactory = std::function<std::unique_ptr<KZylReader>(KZylSdkManager&)>;

  KZylSdkManager();
  ~KZylSdkManager();
  KZylSdkManager(const KZylSdkManager&) = delete;
  KZylSdkManager& operator=(const KZylSdkManager&) = delete;

  // The sink of the readers' warnings and errors; a manager starts with one. Null when the
  // application removed it with SetUserNotification(nullptr).
  KZylUserNotification* GetUserNotification() const { return mUserNotification.get(); }
  void SetUserNotification(std::unique_ptr<KZylUserNotification> notification);

  // Readers. A reader library registers a factory for a file extension ("dae"); CreateReader
  // takes a file name or an extension and answers null when no reader is registered for it.
  // The application owns the reader, which must not outlive the manager.
  void RegisterReader(const KString& extension, ReaderFactory factory);
  std::unique_ptr<KZylReader> CreateReader(const KString& fileNameOrExtension);

  // Objects of a class (subclasses included) in creation order. The list of a class is made
  // on first request after objects were made or destroyed.
  int GetSrcObjectCount(const KZylClassId& classId) const;
  KZylObject* GetSrcObject(const KZylClassId& classId, int index) const;
  template <class T>
  int GetSrcObjectCount() const { return GetSrcObjectCount(T::ClassId); }
  template <class T>
  T* GetSrcObject(int index) const { return static_cast<T*>(GetSrcObject(T::ClassId, index)); }
  int GetObjectCount() const { return static_cast<int>(mLiveObjects); }
  // The live object that has this unique id (KZylObject::GetUniqueID), or null when it was
  // destroyed or never existed.
  KZylObject* FindObject(uint64_t uniqueID) const;
  // True when `object` is alive in this manager and is the object that had `uniqueID` (an
  // address can be reused after a destruction; an id cannot).
  bool Holds(const KZylObject* object, uint64_t uniqueID) const { return object && FindObject(uniqueID) == object; }

  // Layer elements. A new element belongs to the manager until a layer adopts it (the layer's
  // Set... call); elements never adopted are freed with the manager.
  KZylLayerElementNormal* CreateKZylLayerElementNormal(const char* name);
  KZylLayerElementVertexColor* CreateKZylLayerElementVertexColor(const char* name);
  KZylLayerElementUV* CreateKZylLayerElementUV(const char* name);
  KZylLayerElementMaterial* CreateKZylLayerElementMaterial(const char* name);
  KZylLayerElementTexture* CreateKZylLayerElementTexture(const char* name);
  // Hands an element the manager still holds over to a caller; null when it holds none such.
  std::unique_ptr<KZylLayerElement> ReleaseLayerElement(KZylLayerElement* element);

  // Counts every change of a node hierarchy (children or attributes) made through this
  // manager's objects, so that scenes can cache what they derive from their hierarchy.
  uint64_t GetHierarchyVersion() const { return mHierarchyVersion; }
  void TouchHierarchy() { ++mHierarchyVersion; }

  // Used by `Class::Create`: takes ownership of a new object and returns it.
  template <class T>
  T* Adopt(T* object) {
    AdoptObject(object);
    return object;
  }
  // Destroys the objects in one pass over the manager's objects: each is removed from every
  // place in the kit that refers to it (see KZylObject::Destroy). The objects must be alive;
  // objects of another manager are ignored.
  void DestroyObjects(const std::vector<KZylObject*>& objects);

 private:
  void AdoptObject(KZylObject* object);
  template <class E>
  E* KeepLayerElement(E* element);

  const std::vector<KZylObject*>& ObjectsOfClass(const KZylClassId& classId) const;

  friend class KZylObject;
  // Declared before the objects, so that both outlive them.
  std::unique_ptr<ObjectMemory> mObjectMemory;
  std::unique_ptr<PropertyNames> mPropertyNames;
  // The properties each class gives its objects, shared by them (KZylObject::MakeClassProperties).
  std::unordered_map<const KZylClassId*, KZylObject::PropertyTable*> mClassProperties;
  // The errors of the objects that have one (KZylObject::GetError): few objects ever do.
  std::unordered_map<const KZylObject*, std::unique_ptr<KError>> mObjectErrors;
  std::vector<std::unique_ptr<KZylObject>> mObjects;  // creation order; destroyed slots are null
  size_t mLiveObjects = 0;
  uint64_t mObjectsVersion = 0;  // changes whenever an object is made or destroyed
  mutable std::unordered_map<const KZylClassId*, std::vector<KZylObject*>> mObjectsByClass;
  mutable uint64_t mObjectsByClassVersion = 0;
  std::unordered_map<KZylLayerElement*, std::unique_ptr<KZylLayerElement>> mLayerElements;
  std::unique_ptr<KZylUserNotification> mUserNotification;
  std::unordered_map<KString, ReaderFactory> mReaderFactories;
  uint64_t mHierarchyVersion = 0;
};

}  // namespace zylsdk
