#pragma once
// Deformers: skins made of clusters. A cluster binds control points, with weights, to a link
// node (a joint); its transform matrix is the geometry's bind matrix and its transform-link
// matrix the link's global matrix at bind time.

#include <vector>

#include "kit/karray.h"
#include "kit/object.h"

namespace zylsdk {

class KZylNode;
class KZylCluster;

class KZylDeformer : public KZylObject {
  KZYL_DECLARE_CLASS(KZylDeformer)
 public:
  enum EDeformerType { eUnidentified = 0, eSkin = 1, eVertexCache = 2 };
  virtual EDeformerType GetDeformerType() const { return eUnidentified; }

 protected:
  using KZylObject::KZylObject;
};

class KZylSkin : public KZylDeformer {
  KZYL_DECLARE_CLASS(KZylSkin)
 public:
  EDeformerType GetDeformerType() const override { return eSkin; }
  // Adds a cluster; false when it is null or already in this skin.
  bool AddCluster(KZylCluster* cluster);
  bool RemoveCluster(KZylCluster* cluster);
  int GetClusterCount() const { return static_cast<int>(mClusters.size()); }
  KZylCluster* GetCluster(int index) const;

 protected:
  using KZylDeformer::KZylDeformer;
  void ForgetObjects(const ObjectSet& gone) override;

 private:
  std::vector<KZylCluster*> mClusters;
};

// Defaults: link mode normalize, no control points, identity matrices, no link.
class KZylCluster : public KZylObject {
  KZYL_DECLARE_CLASS(KZylCluster)
 public:
  enum ELinkMode { eNormalize = 0, eAdditive = 1, eTotalOne = 2 };

  ELinkMode GetLinkMode() const { return mLinkMode; }
  void SetLinkMode(ELinkMode mode) { mLinkMode = mode; }

  // Appends a control-point index with its weight.
  void AddControlPointIndex(int index, double weight);
  // Makes room for `count` control points in all, so that adding them moves nothing.
  void ReserveControlPoints(int count);
  int GetControlPointIndicesCount() const { return mIndices.GetCount(); }
  const KArrayTemplate<int>& GetControlPointIndices() const { return mIndices; }
  const KArrayTemplate<double>& GetControlPointWeights() const { return mWeights; }
  // Replaces this cluster's control points and weights by those of `source` (the arrays are
  // shared until one of the clusters changes them).
  void CopyControlPointsFrom(const KZylCluster& source);
  // Removes the control points outside 0..`pointCount`-1, with their weights; returns how many.
  int RemoveControlPointsOutside(int pointCount);

  const KZylXMatrix& GetTransformMatrix() const { return mTransform; }
  void SetTransformMatrix(const KZylXMatrix& matrix) { mTransform = matrix; }
  const KZylXMatrix& GetTransformLinkMatrix() const { return mTransformLink; }
  void SetTransformLinkMatrix(const KZylXMatrix& matrix) { mTransformLink = matrix; }

  // The link node is a source connection of the cluster: setting it replaces the previous
  // link; null removes it.
  void SetLink(const KZylNode* node);
  KZylNode* GetLink() const;

 protected:
  using KZylObject::KZylObject;
  void CopyFrom(const KZylObject& source) override;

 private:
  ELinkMode mLinkMode = eNormalize;
  KArrayTemplate<int> mIndices;
  KArrayTemplate<double> mWeights;
  KZylXMatrix mTransform;
  KZylXMatrix mTransformLink;
};

}  // namespace zylsdk
