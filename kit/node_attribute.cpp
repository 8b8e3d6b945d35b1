#include "kit/node_attribute.h"

#include <algorithm>

#include "kit/manager.h"
#include "kit/node.h"

namespace zylsdk {

KZYL_IMPLEMENT_CLASS(KZylNodeAttribute, KZylObject)
KZYL_IMPLEMENT_CLASS(KZylNull, KZylNodeAttribute)
KZYL_IMPLEMENT_CLASS(KZylMarker, KZylNodeAttribute)
KZYL_IMPLEMENT_CLASS(KZylSkeleton, KZylNodeAttribute)
KZYL_IMPLEMENT_CLASS(KZylNurb, KZylNodeAttribute)
KZYL_IMPLEMENT_CLASS(KZylPatch, KZylNodeAttribute)
KZYL_IMPLEMENT_CLASS(KZylCameraSwitcher, KZylNodeAttribute)

KZylNode* KZylNodeAttribute::GetNode(int index) const {
  if (index < 0 || index >= GetNodeCount()) return nullptr;
  return index == 0 ? mFirstNode : (*mOtherNodes)[static_cast<size_t>(index - 1)];
}

void KZylNodeAttribute::AddNode(KZylNode* node) {
  if (!mFirstNode) {
    mFirstNode = node;
    return;
  }
  if (!mOtherNodes) mOtherNodes = std::make_unique<std::vector<KZylNode*>>();
  mOtherNodes->push_back(node);
}

template <class Gone>
void KZylNodeAttribute::RemoveNodes(Gone&& gone) {
  if (mOtherNodes) mOtherNodes->erase(std::remove_if(mOtherNodes->begin(), mOtherNodes->end(), gone), mOtherNodes->end());
  if (mFirstNode && gone(mFirstNode)) {
    mFirstNode = nullptr;
    if (mOtherNodes && !mOtherNodes->empty()) {
      mFirstNode = mOtherNodes->front();
      mOtherNodes->erase(mOtherNodes->begin());
    }
  }
}

void KZylNodeAttribute::ForgetObjects(const ObjectSet& gone) {
  KZylObject::ForgetObjects(gone);
  RemoveNodes([&](KZylNode* node) { return gone.count(node) != 0; });
}

void KZylNodeAttribute::RemoveNode(KZylNode* node) {
  RemoveNodes([node](KZylNode* held) { return held == node; });
}

void KZylSkeleton::CopyFrom(const KZylObject& source) {
  KZylNodeAttribute::CopyFrom(source);
  if (source.Is(KZylSkeleton::ClassId)) mSkeletonType = static_cast<const KZylSkeleton&>(source).mSkeletonType;
}

}  // namespace zylsdk
