#include "kit/deformer.h"

#include <algorithm>

#include "kit/manager.h"
#include "kit/node.h"

namespace zylsdk {

KZYL_IMPLEMENT_CLASS(KZylDeformer, KZylObject)
KZYL_IMPLEMENT_CLASS(KZylSkin, KZylDeformer)
KZYL_IMPLEMENT_CLASS(KZylCluster, KZylObject)

bool KZylSkin::AddCluster(KZylCluster* cluster) {
  if (!cluster || std::find(mClusters.begin(), mClusters.end(), cluster) != mClusters.end()) return false;
  mClusters.push_back(cluster);
  return true;
}

bool KZylSkin::RemoveCluster(KZylCluster* cluster) {
  auto found = std::find(mClusters.begin(), mClusters.end(), cluster);
  if (found == mClusters.end()) return false;
  mClusters.erase(found);
  return true;
}

KZylCluster* KZylSkin::GetCluster(int index) const {
  return (index >= 0 && index < GetClusterCount()) ? mClusters[static_cast<size_t>(index)] : nullptr;
}

void KZylSkin::ForgetObjects(const ObjectSet& gone) {
  KZylDeformer::ForgetObjects(gone);
  mClusters.erase(
      std::remove_if(mClusters.begin(), mClusters.end(), [&](KZylCluster* c) { return gone.count(c) != 0; }),
      mClusters.end());
}

void KZylCluster::AddControlPointIndex(int index, double weight) {
  mIndices.Add(index);
  mWeights.Add(weight);
}

void KZylCluster::ReserveControlPoints(int count) {
  mIndices.Reserve(count);
  mWeights.Reserve(count);
}

void KZylCluster::CopyControlPointsFrom(const KZylCluster& source) {
  mIndices = source.mIndices;
  mWeights = source.mWeights;
}

void KZylCluster::SetLink(const KZylNode* node) {
  while (KZylNode* old = GetLink()) DisconnectZylSrc(old);
  if (node) ConnectZylSrc(const_cast<KZylNode*>(node));
}

KZylNode* KZylCluster::GetLink() const { return static_cast<KZylNode*>(GetSrcObject(KZylNode::ClassId, 0)); }

void KZylCluster::CopyFrom(const KZylObject& source) {
  KZylObject::CopyFrom(source);
  if (!source.Is(KZylCluster::ClassId)) return;
  const KZylCluster& cluster = static_cast<const KZylCluster&>(source);
  mLinkMode = cluster.mLinkMode;
  CopyControlPointsFrom(cluster);
  mTransform = cluster.mTransform;
  mTransformLink = cluster.mTransformLink;
  SetLink(cluster.GetLink());
}

}  // namespace zylsdk
