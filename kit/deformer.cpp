#include "kit/deformer.h"
#include <vector>
#include <utility>

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
  // Not mapped ahead: a skin's clusters fill while the lists they come from are given back.
  mIndices.Reserve(count);
  mWeights.Reserve(count);
}

void KZylCluster::CopyControlPointsFrom(const KZylCluster& source) {
  mIndices = source.mIndices;
  mWeights = source.mWeights;
}

int KZylCluster::RemoveControlPointsOutside(int pointCount) {
  auto outside = [pointCount](int index) { return index < 0 || index >= pointCount; };
  const std::vector<int>& indices = std::as_const(mIndices).Std();
  if (std::none_of(indices.begin(), indices.end(), outside)) return 0;
  // Written only when needed: the arrays may be shared with the cluster this one copies.
  std::vector<int> keptIndices;
  std::vector<double> keptWeights;
  const std::vector<double>& weights = std::as_const(mWeights).Std();
  for (size_t i = 0; i < indices.size(); ++i) {
    if (outside(indices[i])) continue;
    keptIndices.push_back(indices[i]);
    keptWeights.push_back(i < weights.size() ? weights[i] : 0.0);
  }
  const int removed = static_cast<int>(indices.size() - keptIndices.size());
  mIndices.Std() = std::move(keptIndices);
  mWeights.Std() = std::move(keptWeights);
  return removed;
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
