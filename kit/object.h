#pragma once
// KZylPlug, KZylObject and KZylProperty: the base of every object that the manager owns.
//
// Every object is made with `Class::Create(manager, name)` and belongs to the manager, which
// destroys it at the latest when the manager itself is destroyed. Objects can be connected:
// `a.ConnectZylSrc(b)` makes b a source of a (and a a destination of b); a material connected
// to a node and a cluster's link node are such connections.

#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "kit/enums.h"
#include "kit/kerror.h"
#include "kit/kmath.h"
#include "kit/kstring.h"
#include "kit/ktime.h"

namespace zylsdk {

class KZylSdkManager;
class KZylObject;
class KZylScene;
using ObjectSet = std::unordered_set<const KZylObject*>;

// The run-time class of an object: a name and the parent class.
struct KZylClassId {
  const char* name;
  const KZylClassId* parent;
  bool Is(const KZylClassId& other) const {
    for (const KZylClassId* c = this; c; c = c->parent)
      if (c == &other) return true;
    return false;
  }
};

// Declares the class id, `Create(manager, name)` and the same-kind factory of a kit class.
// KZYL_IMPLEMENT_CLASS in the class's source file defines them.
#define KZYL_DECLARE_CLASS(Class)                                                           \
 public:                                                                                     \
  static const KZylClassId ClassId;                                                          \
  const KZylClassId& GetClassId() const override { return ClassId; }                        \
  static Class* Create(KZylSdkManager* manager, const char* name);                          \
  KZylObject* CreateSameKind(KZylSdkManager& manager, const char* name) const override;     \
                                                                                             \
 private:

#define KZYL_IMPLEMENT_CLASS(Class, Parent)                                                     \
  const KZylClassId Class::ClassId = {#Class, &Parent::ClassId};                                \
  Class* Class::Create(KZylSdkManager* manager, const char* name) {                             \
    static_assert(alignof(Class) <= 8, "kit objects are aligned to 8 bytes");                   \
    return manager ? manager->Adopt(new (*manager) Class(*manager, name)) : nullptr;            \
  }                                                                                             \
  KZylObject* Class::CreateSameKind(KZylSdkManager& manager, const char* name) const {          \
    return Create(&manager, name);                                                              \
  }

// A handle to one property of an object. Handles stay valid as long as their object lives.
class KZylProperty {
 public:
  KZylProperty() = default;

  // Adds a dynamic property to `owner`; an existing property of that name is returned instead.
  static KZylProperty Create(KZylObject* owner, const KString& name, EZylType type, const char* label = "");

  bool IsValid() const { return mOwner != nullptr && mIndex >= 0; }
  KString GetName() const;
  KString GetLabel() const;
  EZylType GetPropertyDataType() const;
  bool IsDynamic() const;

  // Writers return false (and change nothing) when the value does not fit the property's type:
  // numbers fit numeric types (a colour fits a three-double property, its alpha dropped), texts
  // fit strings, times fit times.
  bool Set(bool value);
  bool Set(int value);
  bool Set(double value);
  bool Set(const KZylColor& value);
  bool Set(const KZylVector4& value);
  bool Set(const KZylMatrix& value);
  bool Set(const KString& value);
  bool Set(const char* value) { return Set(KString(value)); }
  bool Set(KTime value);

  // Readers: numeric types convert between each other; a mismatch gives the default value.
  bool GetBool() const;
  int GetInt() const;
  double GetDouble() const;
  KZylColor GetColor() const;  // from a three- or four-double property
  KZylVector4 GetVector4() const;
  KZylMatrix GetMatrix() const;
  KString GetString() const;
  KTime GetTime() const;
  // The numeric components (1, 3, 4 or 16 of them); empty for strings and times.
  std::vector<double> GetNumbers() const;

 private:
  friend class KZylObject;
  KZylProperty(KZylObject* owner, int index) : mOwner(owner), mIndex(index) {}
  const struct KZylPropertyData* Data() const;
  // The property's data for a write: its object's own copy, when it shared its table.
  KZylPropertyData* WritableData();
  bool SetNumbers(const double* values, int count, bool vectorValue);

  KZylObject* mOwner = nullptr;
  int mIndex = -1;
};

class KZylPlug {
 public:
  KZylPlug() = default;
  virtual ~KZylPlug();

  // Makes `source` a source of this object; false when it is null, this object, or already one.
  // Sources keep the order they were connected in.
  bool ConnectZylSrc(KZylObject* source);
  bool DisconnectZylSrc(KZylObject* source);
  bool IsConnectedZylSrc(const KZylObject* source) const;
  int GetSrcObjectCount() const;
  KZylObject* GetSrcObject(int index) const;
  int GetSrcObjectCount(const KZylClassId& classId) const;
  KZylObject* GetSrcObject(const KZylClassId& classId, int index) const;
  int GetDstObjectCount() const;
  KZylObject* GetDstObject(int index) const;
  int GetDstObjectCount(const KZylClassId& classId) const;
  KZylObject* GetDstObject(const KZylClassId& classId, int index) const;

 protected:
  void DisconnectAll();

 private:
  struct Links;
  struct SourceIndex;
  KZylObject* Self();
  Links& OwnLinks();  // made with the first connection
  const std::vector<KZylObject*>& Sources() const;
  const std::vector<KZylObject*>& Destinations() const;
  // The sources of one class, in order, from the index; null while there are few sources.
  const std::vector<KZylObject*>* SourcesOfClass(const KZylClassId& classId) const;

  // The sources and destinations, made with the first connection to or from this object: most
  // objects of a large scene (nodes, their attributes) have none.
  std::unique_ptr<Links> mLinks;
};

class KZylObject : public KZylPlug {
 public:
  static const KZylClassId ClassId;
  virtual const KZylClassId& GetClassId() const { return ClassId; }
  bool Is(const KZylClassId& classId) const { return GetClassId().Is(classId); }

  KZylObject(const KZylObject&) = delete;
  KZylObject& operator=(const KZylObject&) = delete;
  ~KZylObject() override;

  // Objects live in their manager's object memory (kit/object_memory.h): `Create` makes them
  // there, and `delete` (the manager's) gives their room back; the room of an object whose
  // constructor failed is not used again.
  static void* operator new(size_t bytes, KZylSdkManager& manager);
  static void operator delete(void* object, KZylSdkManager& manager);
  static void operator delete(void* object, size_t bytes);

  KZylSdkManager* GetZylSdkManager() const { return mManager; }
  // A number that no other object of the manager ever had, not even a destroyed one.
  uint64_t GetUniqueID() const { return mUniqueID; }

  const KString& GetName() const { return mName; }
  void SetName(const KString& name) { mName = name; }
  // The name after its last ':' (the whole name when it has none).
  KString GetNameWithoutNameSpacePrefix() const;

  // Properties, static (made by the class) and dynamic (added later), in creation order.
  int GetPropertyCount() const;
  KZylProperty GetProperty(int index) const;
  // The property of that name; an invalid handle when there is none. The flag is accepted for
  // compatibility and has no effect.
  KZylProperty FindProperty(const KString& name, bool caseSensitive = true) const;

  // The scene this object belongs to: for most objects the first scene it is a source of.
  virtual KZylScene* GetScene() const;

  // A new object of the same class, owned by the same manager, holding copies of every
  // property value and of the class's own fields. References to other objects are copied as
  // references. The kind is accepted for compatibility; every clone is a deep copy of values.
  // (The copy holds its source's properties until either of them writes one, and the writer
  // then keeps only what it wrote, so that copying costs little memory; no write to one is
  // ever seen by the other.)
  KZylObject* Clone(int cloneKind = 2) const;

  // Removes the object from every place in the kit that refers to it and frees it.
  // KZylSdkManager::DestroyObjects does the same for many objects in one pass.
  void Destroy();

  const KError& GetError() const;
  KError& GetError();
  const KString& GetLastErrorString() const { return GetError().GetLastErrorString(); }
  int GetLastErrorID() const { return GetError().GetLastErrorID(); }

  virtual KZylObject* CreateSameKind(KZylSdkManager& manager, const char* name) const;

 protected:
  KZylObject(KZylSdkManager& manager, const char* name);

  // Adds a static property with its initial value; used by constructors. The manager keeps each
  // name once, so that a literal is never copied into a string of its own.
  KZylProperty AddProperty(std::string_view name, EZylType type);
  // Makes room for `count` properties in all, so that a class that knows how many its
  // constructors add grows its table once.
  void ReserveProperties(int count);
  // Gives this object the properties of its class, called by the most derived class's
  // constructor: the first object of the class that a manager makes gets them from `add`
  // (which calls AddProperty), and every later one shares that first table until it writes a
  // property. A large scene holds thousands of materials, each with the same dozen defaults.
  template <class Add>
  void MakeClassProperties(const KZylClassId& classId, Add add) {
    if (ShareClassProperties(classId)) return;
    add();
    KeepClassProperties(classId);
  }
  // Copies the class's own fields (beyond properties) from `source`; overridden by classes
  // that have any, calling their parent's version.
  virtual void CopyFrom(const KZylObject& source);
  // Called on every live object before the objects of `gone` are destroyed: drop every
  // reference to them.
  virtual void ForgetObjects(const ObjectSet& gone);

 private:
  friend class KZylSdkManager;
  friend class KZylProperty;

  struct PropertyTable;
  // The table for a write: made with the first property, copied first when shared.
  PropertyTable& OwnProperties();
  void ReleaseProperties();
  void ShareProperties(PropertyTable* table);
  bool PropertiesCopyAsShared(const KZylObject& source) const;
  bool ShareClassProperties(const KZylClassId& classId);
  void KeepClassProperties(const KZylClassId& classId);
  // Used by the manager for the tables it keeps for their classes.
  static void ReleaseTable(PropertyTable* table);

  KZylSdkManager* mManager;
  uint64_t mUniqueID = 0;
  KString mName;
  // Made with the first property: most objects of a large scene (nodes, their attributes) have
  // none, and a scene holds hundreds of thousands of them. A clone shares its source's
  // properties until either writes one. (The few objects that have an error keep it in their
  // manager, KZylSdkManager::mObjectErrors.)
  PropertyTable* mProperties = nullptr;
};

}  // namespace zylsdk
