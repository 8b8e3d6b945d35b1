#include "kit/node.h"

#include <algorithm>
#include <iterator>

#include "kit/geometry.h"
#include "kit/manager.h"
#include "kit/memory_advice.h"
#include "kit/scene.h"

namespace zylsdk {

KZYL_IMPLEMENT_CLASS(KZylNode, KZylObject)

KZylNode::KZylNode(KZylSdkManager& manager, const char* name) : KZylObject(manager, name) {}

const KZylNode::PivotSet& KZylNode::DefaultPivots() {
  static const PivotSet defaults;
  return defaults;
}

const KZylNode::PivotSet& KZylNode::Pivots(EPivotSet set) const {
  const std::unique_ptr<PivotSet>& pivots = PivotsOf(set);
  return pivots ? *pivots : DefaultPivots();
}

KZylNode::PivotSet& KZylNode::Pivots(EPivotSet set) {
  std::unique_ptr<PivotSet>& pivots = set == eDestinationPivot ? mDestinationPivots : mSourcePivots;
  if (!pivots) pivots = std::make_unique<PivotSet>();
  return *pivots;
}

bool KZylNode::AddChild(KZylNode* child) {
  if (!child) {
    GetError().SetLastError(1, "Cannot add a null child");
    return false;
  }
  if (child->mParent) {
    GetError().SetLastError(2, KString("Node ") + child->GetName() + " already has a parent");
    return false;
  }
  for (const KZylNode* n = this; n; n = n->mParent) {
    if (n == child) {
      GetError().SetLastError(3, KString("Node ") + child->GetName() + " is this node or one of its ancestors");
      return false;
    }
  }
  if (!mChildren) mChildren = std::make_unique<std::vector<KZylNode*>>();
  MakeRoomForOne(*mChildren);
  mChildren->push_back(child);
  child->mParent = this;
  GetZylSdkManager()->TouchHierarchy();
  return true;
}

bool KZylNode::RemoveChild(KZylNode* child) {
  if (!mChildren) return false;
  auto found = std::find(mChildren->begin(), mChildren->end(), child);
  if (found == mChildren->end()) return false;
  mChildren->erase(found);
  child->mParent = nullptr;
  GetZylSdkManager()->TouchHierarchy();
  return true;
}

int KZylNode::GetChildCount(bool recursive) const {
  if (!recursive) return static_cast<int>(Children().size());
  int count = 0;
  std::vector<const KZylNode*> pending(1, this);
  while (!pending.empty()) {
    const KZylNode* node = pending.back();
    pending.pop_back();
    const std::vector<KZylNode*>& children = node->Children();
    count += static_cast<int>(children.size());
    pending.insert(pending.end(), children.begin(), children.end());
  }
  return count;
}

KZylNode* KZylNode::GetChild(int index) const {
  return (index >= 0 && index < GetChildCount()) ? Children()[static_cast<size_t>(index)] : nullptr;
}

const std::vector<KZylNode*>& KZylNode::Children() const {
  static const std::vector<KZylNode*> none;
  return mChildren ? *mChildren : none;
}

KZylNode* KZylNode::FindChild(const KString& name, bool recursive, bool) const {
  // Each node first looks at its direct children, then searches each child's subtree in order.
  // An explicit stack keeps deep hierarchies off the call stack.
  struct Frame {
    const KZylNode* node;
    size_t next;  // next child whose subtree is searched
  };
  for (KZylNode* child : Children())
    if (child->GetName() == name) return child;
  if (!recursive) return nullptr;
  std::vector<Frame> stack{{this, 0}};
  while (!stack.empty()) {
    Frame& frame = stack.back();
    if (frame.next >= frame.node->Children().size()) {
      stack.pop_back();
      continue;
    }
    const KZylNode* child = frame.node->Children()[frame.next++];
    for (KZylNode* grandChild : child->Children())
      if (grandChild->GetName() == name) return grandChild;
    stack.push_back({child, 0});
  }
  return nullptr;
}

bool KZylNode::SetNodeAttribute(KZylNodeAttribute* attribute) {
  if (attribute == mAttribute) return true;
  if (mAttribute) mAttribute->RemoveNode(this);
  mAttribute = attribute;
  if (attribute) attribute->AddNode(this);
  GetZylSdkManager()->TouchHierarchy();
  return true;
}

KZylGeometry* KZylNode::GetGeometry() const {
  return (mAttribute && mAttribute->Is(KZylGeometry::ClassId)) ? static_cast<KZylGeometry*>(mAttribute) : nullptr;
}

KZylScene* KZylNode::GetScene() const {
  const KZylNode* root = this;
  while (root->mParent) root = root->mParent;
  return root->mOwnerScene;
}

KZylXMatrix KZylNode::GetLocalFromDefaultTake(EPivotSet set) const {
  const PivotSet& p = Pivots(set);
  auto negate = [](const KZylVector4& v) { return KZylVector4(-v[0], -v[1], -v[2], 0.0); };
  KZylXMatrix rotation = RotationMatrix(p.postRotation, eEulerXYZ).Inverse() *
                         RotationMatrix(mRotation, GetRotationOrder(set)) * RotationMatrix(p.preRotation, eEulerXYZ);
  return TranslationMatrix(negate(p.scalingPivot)) * ScalingMatrix(mScaling) * TranslationMatrix(p.scalingPivot) *
         TranslationMatrix(p.scalingOffset) * TranslationMatrix(negate(p.rotationPivot)) * rotation *
         TranslationMatrix(p.rotationPivot) * TranslationMatrix(p.rotationOffset) * TranslationMatrix(mTranslation);
}

KZylXMatrix KZylNode::GetGlobalFromDefaultTake(EPivotSet set) const {
  KZylXMatrix global = GetLocalFromDefaultTake(set);
  for (const KZylNode* parent = mParent; parent; parent = parent->mParent)
    global = global * parent->GetLocalFromDefaultTake(set);
  return global;
}

void KZylNode::SetGlobalState(const KZylXMatrix& global) {
  KZylXMatrix local = mParent ? global * mParent->GetGlobalFromDefaultTake(eSourcePivot).Inverse() : global;
  KZylVector4 translation = local.GetT();
  mTranslation = KZylVector4(translation[0], translation[1], translation[2], mTranslation[3]);
  KZylVector4 scaling = local.GetS();
  mScaling = KZylVector4(scaling[0], scaling[1], scaling[2], mScaling[3]);
  mRotation = EulerAngles(local, GetRotationOrder(eSourcePivot));
}

void KZylNode::CopyFrom(const KZylObject& source) {
  KZylObject::CopyFrom(source);
  if (!source.Is(KZylNode::ClassId)) return;
  const KZylNode& node = static_cast<const KZylNode&>(source);
  mTranslation = node.mTranslation;
  mRotation = node.mRotation;
  mScaling = node.mScaling;
  mSourcePivots = node.mSourcePivots ? std::make_unique<PivotSet>(*node.mSourcePivots) : nullptr;
  mDestinationPivots = node.mDestinationPivots ? std::make_unique<PivotSet>(*node.mDestinationPivots) : nullptr;
  std::copy(std::begin(node.mRotationOrders), std::end(node.mRotationOrders), std::begin(mRotationOrders));
  std::copy(std::begin(node.mRotationActive), std::end(node.mRotationActive), std::begin(mRotationActive));
  mInheritType = node.mInheritType;
  mShadingMode = node.mShadingMode;
}

void KZylNode::ForgetObjects(const ObjectSet& gone) {
  KZylObject::ForgetObjects(gone);
  if (mParent && gone.count(mParent)) mParent = nullptr;
  if (mOwnerScene && gone.count(mOwnerScene)) mOwnerScene = nullptr;
  if (mChildren)
    mChildren->erase(
        std::remove_if(mChildren->begin(), mChildren->end(), [&](KZylNode* c) { return gone.count(c) != 0; }),
        mChildren->end());
  if (mAttribute && gone.count(mAttribute)) mAttribute = nullptr;
  ForgetTakeObjects(gone);
}

}  // namespace zylsdk
