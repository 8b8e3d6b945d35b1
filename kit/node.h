#pragma once
// KZylNode: an element of a scene's hierarchy, with its transform, its attribute and its
// animation takes.
//
// The local matrix of a node (row vectors, applied left to right) is
//   Sp^-1 * S * Sp * Soff * Rp^-1 * Rpost^-1 * R * Rpre * Rp * Roff * T
// with S the default scaling, Sp the scaling pivot, Soff the scaling offset, Rp the rotation
// pivot, Rpre/Rpost the pre- and post-rotation (XYZ order), R the default rotation in the
// node's rotation order, Roff the rotation offset and T the default translation. The global
// matrix is the local matrix times the parent's global matrix.
//
// Defaults: translation (0, 0, 0, 1), rotation (0, 0, 0, 0), scaling (1, 1, 1, 1); pivots,
// offsets, pre- and post-rotation zero; rotation order XYZ; rotation inactive; inherit type
// RSrs; shading mode hard.

#include <cstring>
#include <memory>
#include <vector>

#include "kit/node_attribute.h"
#include "kit/take.h"

namespace zylsdk {

class KZylNode : public KZylObject, public KZylTakeNodeContainer {
  KZYL_DECLARE_CLASS(KZylNode)
 public:
  // Hierarchy. AddChild fails (false, with a last-error text on this node) for a null child,
  // a child that already has a parent, and this node or one of its ancestors.
  bool AddChild(KZylNode* child);
  // Detaches a direct child; false when it is not one.
  bool RemoveChild(KZylNode* child);
  KZylNode* GetParent() const { return mParent; }
  // Direct children, or with `recursive` every descendant.
  int GetChildCount(bool recursive = false) const;
  KZylNode* GetChild(int index) const;
  // First the direct children in order, then, when `recursive`, each child's subtree in child
  // order; null when no node has the name. The third flag is accepted and ignored.
  KZylNode* FindChild(const KString& name, bool recursive = true, bool initial = false) const;

  // Attribute. Setting one detaches the previous attribute, which stays with the manager.
  KZylNodeAttribute* GetNodeAttribute() const { return mAttribute; }
  bool SetNodeAttribute(KZylNodeAttribute* attribute);
  // The attribute as a geometry (mesh), or null.
  class KZylGeometry* GetGeometry() const;

  KZylScene* GetScene() const override;

  // Default transform.
  const KZylVector4& GetDefaultT() const { return mTranslation; }
  void SetDefaultT(const KZylVector4& translation) { mTranslation = translation; }
  const KZylVector4& GetDefaultR() const { return mRotation; }
  void SetDefaultR(const KZylVector4& rotation) { mRotation = rotation; }
  const KZylVector4& GetDefaultS() const { return mScaling; }
  void SetDefaultS(const KZylVector4& scaling) { mScaling = scaling; }

  // Pivot sets: the source set (eSourcePivot) describes the node as read; the destination set
  // is kept for conversions.
  const KZylVector4& GetPreRotation(EPivotSet set) const { return Pivots(set).preRotation; }
  void SetPreRotation(EPivotSet set, const KZylVector4& v) { SetPivotValue(set, &PivotSet::preRotation, v); }
  const KZylVector4& GetPostRotation(EPivotSet set) const { return Pivots(set).postRotation; }
  void SetPostRotation(EPivotSet set, const KZylVector4& v) { SetPivotValue(set, &PivotSet::postRotation, v); }
  const KZylVector4& GetRotationPivot(EPivotSet set) const { return Pivots(set).rotationPivot; }
  void SetRotationPivot(EPivotSet set, const KZylVector4& v) { SetPivotValue(set, &PivotSet::rotationPivot, v); }
  const KZylVector4& GetScalingPivot(EPivotSet set) const { return Pivots(set).scalingPivot; }
  void SetScalingPivot(EPivotSet set, const KZylVector4& v) { SetPivotValue(set, &PivotSet::scalingPivot, v); }
  const KZylVector4& GetRotationOffset(EPivotSet set) const { return Pivots(set).rotationOffset; }
  void SetRotationOffset(EPivotSet set, const KZylVector4& v) { SetPivotValue(set, &PivotSet::rotationOffset, v); }
  const KZylVector4& GetScalingOffset(EPivotSet set) const { return Pivots(set).scalingOffset; }
  void SetScalingOffset(EPivotSet set, const KZylVector4& v) { SetPivotValue(set, &PivotSet::scalingOffset, v); }
  ERotationOrder GetRotationOrder(EPivotSet set) const { return static_cast<ERotationOrder>(mRotationOrders[Slot(set)]); }
  void SetRotationOrder(EPivotSet set, ERotationOrder order) { mRotationOrders[Slot(set)] = static_cast<uint8_t>(order); }
  // Whether the node's pre- and post-rotation and rotation order are meant to be used. The
  // kit's matrices always include them; the switch tells exporters that they matter.
  bool GetRotationActive(EPivotSet set = eSourcePivot) const { return mRotationActive[Slot(set)]; }
  void SetRotationActive(bool active, EPivotSet set = eSourcePivot) { mRotationActive[Slot(set)] = active; }

  ETransformInheritType GetTransformationInheritType() const { return mInheritType; }
  void SetTransformationInheritType(ETransformInheritType type) { mInheritType = type; }
  EShadingMode GetShadingMode() const { return mShadingMode; }
  void SetShadingMode(EShadingMode mode) { mShadingMode = mode; }

  // The local matrix of the default transform, with the pivot set's pivots and rotations.
  KZylXMatrix GetLocalFromDefaultTake(EPivotSet set = eSourcePivot) const;
  // The global matrix: the local matrix times the parents' global matrix. Every inherit type
  // composes this way.
  KZylXMatrix GetGlobalFromDefaultTake(EPivotSet set = eSourcePivot) const;
  // Sets the default translation, rotation and scaling so that the node's global matrix is
  // `global`: the local matrix is `global` times the inverse of the parent's global matrix
  // (`global` itself without parent), decomposed into translation (fourth row), scaling (row
  // lengths, a negative determinant making the X scale negative) and rotation (Euler angles in
  // the node's source rotation order). Pivots, offsets and pre/post-rotation are neither used
  // nor changed, so the result is exact for nodes that have none.
  void SetGlobalState(const KZylXMatrix& global);

 protected:
  KZylNode(KZylSdkManager& manager, const char* name);
  void CopyFrom(const KZylObject& source) override;
  void ForgetObjects(const ObjectSet& gone) override;

 private:
  struct PivotSet {
    KZylVector4 preRotation;
    KZylVector4 postRotation;
    KZylVector4 rotationPivot;
    KZylVector4 scalingPivot;
    KZylVector4 rotationOffset;
    KZylVector4 scalingOffset;
  };
  // A pivot set is made when first given a value other than its default: until then it reads
  // as the defaults, and the many nodes that never have one do not carry it.
  const PivotSet& Pivots(EPivotSet set) const;
  PivotSet& Pivots(EPivotSet set);
  // The values of a set never given one; one shared copy rather than a set made per call.
  static const PivotSet& DefaultPivots();
  template <class Value>
  void SetPivotValue(EPivotSet set, Value PivotSet::*member, const Value& value) {
    if (!PivotsOf(set) && SameBits(value, DefaultPivots().*member)) return;
    Pivots(set).*member = value;
  }
  // Any value other than the destination set reads as the source set.
  static int Slot(EPivotSet set) { return set == eDestinationPivot ? 1 : 0; }
  const std::unique_ptr<PivotSet>& PivotsOf(EPivotSet set) const {
    return set == eDestinationPivot ? mDestinationPivots : mSourcePivots;
  }
  // Bit for bit, so that -0 is kept apart from 0.
  template <class Value>
  static bool SameBits(const Value& a, const Value& b) {
    return std::memcmp(&a, &b, sizeof(Value)) == 0;
  }

  const std::vector<KZylNode*>& Children() const;

  friend class KZylScene;
  KZylScene* mOwnerScene = nullptr;  // set on a scene's root node
  KZylNode* mParent = nullptr;
  // Made with the first child: most nodes of a large scene are leaves.
  std::unique_ptr<std::vector<KZylNode*>> mChildren;
  KZylNodeAttribute* mAttribute = nullptr;
  KZylVector4 mTranslation{0.0, 0.0, 0.0, 1.0};
  KZylVector4 mRotation{0.0, 0.0, 0.0, 0.0};
  KZylVector4 mScaling{1.0, 1.0, 1.0, 1.0};
  std::unique_ptr<PivotSet> mSourcePivots;
  std::unique_ptr<PivotSet> mDestinationPivots;
  ETransformInheritType mInheritType = eInheritRSrs;
  EShadingMode mShadingMode = eHardShading;
  // Apart from the pivot sets: most nodes that rotate have an order and the switch on, and
  // nothing else of a pivot set. Small, beside the enums, so that a node does not grow.
  uint8_t mRotationOrders[2] = {eEulerXYZ, eEulerXYZ};
  bool mRotationActive[2] = {false, false};
};

}  // namespace zylsdk
