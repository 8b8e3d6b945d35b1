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
  return (index >= 0 && index < GetNodeCount()) ? mNodes[static_cast<size_t>(index)] : nullptr;
}

void KZylNodeAttribute::ForgetObjects(const ObjectSet& gone) {
  KZylObject::ForgetObjects(gone);
  mNodes.erase(std::remove_if(mNodes.begin(), mNodes.end(), [&](KZylNode* n) { return gone.count(n) != 0; }),
               mNodes.end());
}

void KZylSkeleton::CopyFrom(const KZylObject& source) {
  KZylNodeAttribute::CopyFrom(source);
  if (source.Is(KZylSkeleton::ClassId)) mSkeletonType = static_cast<const KZylSkeleton&>(source).mSkeletonType;
}

}  // namespace zylsdk
