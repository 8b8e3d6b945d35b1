#include "kit/pose.h"

#include <algorithm>

#include "kit/manager.h"
#include "kit/node.h"

namespace zylsdk {

KZYL_IMPLEMENT_CLASS(KZylPose, KZylObject)

int KZylPose::Add(KZylNode* node, const KZylMatrix& matrix, bool local) {
  mEntries.push_back({node, matrix, local});
  return GetCount() - 1;
}

KZylNode* KZylPose::GetNode(int index) const {
  return (index >= 0 && index < GetCount()) ? mEntries[static_cast<size_t>(index)].node : nullptr;
}

KZylMatrix KZylPose::GetMatrix(int index) const {
  return (index >= 0 && index < GetCount()) ? mEntries[static_cast<size_t>(index)].matrix : KZylMatrix();
}

bool KZylPose::IsLocalMatrix(int index) const {
  return index >= 0 && index < GetCount() && mEntries[static_cast<size_t>(index)].local;
}

int KZylPose::Find(const KZylNode* node) const {
  for (size_t i = 0; i < mEntries.size(); ++i)
    if (mEntries[i].node == node) return static_cast<int>(i);
  return -1;
}

void KZylPose::Remove(int index) {
  if (index >= 0 && index < GetCount()) mEntries.erase(mEntries.begin() + index);
}

void KZylPose::CopyFrom(const KZylObject& source) {
  KZylObject::CopyFrom(source);
  if (!source.Is(KZylPose::ClassId)) return;
  const KZylPose& pose = static_cast<const KZylPose&>(source);
  mEntries = pose.mEntries;
  mIsBindPose = pose.mIsBindPose;
}

void KZylPose::ForgetObjects(const ObjectSet& gone) {
  KZylObject::ForgetObjects(gone);
  mEntries.erase(std::remove_if(mEntries.begin(), mEntries.end(), [&](const Entry& e) { return gone.count(e.node) != 0; }),
                 mEntries.end());
}

}  // namespace zylsdk
