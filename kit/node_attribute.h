#pragma once
// Node attributes: what a node is (a null, a marker, a skeleton joint, a mesh, a camera, a
// light...). A node has at most one attribute; the attribute knows the nodes that hold it.

#include <memory>
#include <vector>

#include "kit/object.h"

namespace zylsdk {

class KZylNode;

class KZylNodeAttribute : public KZylObject {
  KZYL_DECLARE_CLASS(KZylNodeAttribute)
 public:
  enum EAttributeType {
    eUnidentified = 0,
    eNull = 1,
    eMarker = 2,
    eSkeleton = 3,
    eMesh = 4,
    eNurb = 5,
    ePatch = 6,
    eCamera = 7,
    eCameraSwitcher = 8,
    eLight = 9
  };

  virtual EAttributeType GetAttributeType() const { return eUnidentified; }

  // The nodes that hold this attribute, in the order they received it.
  int GetNodeCount() const { return (mFirstNode ? 1 : 0) + (mOtherNodes ? static_cast<int>(mOtherNodes->size()) : 0); }
  KZylNode* GetNode(int index = 0) const;

 protected:
  KZylNodeAttribute(KZylSdkManager& manager, const char* name) : KZylObject(manager, name) {}
  void ForgetObjects(const ObjectSet& gone) override;

 private:
  friend class KZylNode;
  void AddNode(KZylNode* node);
  void RemoveNode(KZylNode* node);
  // Removes the nodes for which `gone` is true, keeping the others' order.
  template <class Gone>
  void RemoveNodes(Gone&& gone);

  // Most attributes belong to one node: it is held without an allocation, and the list of any
  // others is made with the second.
  KZylNode* mFirstNode = nullptr;
  std::unique_ptr<std::vector<KZylNode*>> mOtherNodes;
};

// A node that only carries a transform.
class KZylNull : public KZylNodeAttribute {
  KZYL_DECLARE_CLASS(KZylNull)
 public:
  EAttributeType GetAttributeType() const override { return eNull; }

 protected:
  using KZylNodeAttribute::KZylNodeAttribute;
};

class KZylMarker : public KZylNodeAttribute {
  KZYL_DECLARE_CLASS(KZylMarker)
 public:
  EAttributeType GetAttributeType() const override { return eMarker; }

 protected:
  using KZylNodeAttribute::KZylNodeAttribute;
};

// A joint of a skeleton. Default type: eRoot.
class KZylSkeleton : public KZylNodeAttribute {
  KZYL_DECLARE_CLASS(KZylSkeleton)
 public:
  enum ESkeletonType { eRoot = 0, eLimb = 1, eLimbNode = 2, eEffector = 3 };
  EAttributeType GetAttributeType() const override { return eSkeleton; }
  ESkeletonType GetSkeletonType() const { return mSkeletonType; }
  void SetSkeletonType(ESkeletonType type) { mSkeletonType = type; }

 protected:
  using KZylNodeAttribute::KZylNodeAttribute;
  void CopyFrom(const KZylObject& source) override;

 private:
  ESkeletonType mSkeletonType = eRoot;
};

// Kinds the kit names but does not model further: NURBS surfaces, patches and camera
// switchers. They exist so that scenes can carry them and copies can be made of them.
class KZylNurb : public KZylNodeAttribute {
  KZYL_DECLARE_CLASS(KZylNurb)
 public:
  EAttributeType GetAttributeType() const override { return eNurb; }

 protected:
  using KZylNodeAttribute::KZylNodeAttribute;
};

class KZylPatch : public KZylNodeAttribute {
  KZYL_DECLARE_CLASS(KZylPatch)
 public:
  EAttributeType GetAttributeType() const override { return ePatch; }

 protected:
  using KZylNodeAttribute::KZylNodeAttribute;
};

class KZylCameraSwitcher : public KZylNodeAttribute {
  KZYL_DECLARE_CLASS(KZylCameraSwitcher)
 public:
  EAttributeType GetAttributeType() const override { return eCameraSwitcher; }

 protected:
  using KZylNodeAttribute::KZylNodeAttribute;
};

}  // namespace zylsdk
