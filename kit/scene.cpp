#include "kit/scene.h"

#include <algorithm>

#include "kit/geometry.h"
#include "kit/manager.h"
#include "kit/material.h"
#include "kit/pose.h"
#include "kit/texture.h"

namespace zylsdk {

KZYL_IMPLEMENT_CLASS(KZylSceneInfo, KZylObject)
KZYL_IMPLEMENT_CLASS(KZylScene, KZylObject)

void KZylSceneInfo::CopyFrom(const KZylObject& source) {
  KZylObject::CopyFrom(source);
  if (!source.Is(KZylSceneInfo::ClassId)) return;
  const KZylSceneInfo& info = static_cast<const KZylSceneInfo&>(source);
  mAuthor = info.mAuthor;
  mTitle = info.mTitle;
  mSubject = info.mSubject;
  mKeywords = info.mKeywords;
  mRevision = info.mRevision;
  mComment = info.mComment;
}

KZylScene::KZylScene(KZylSdkManager& manager, const char* name)
    : KZylObject(manager, name), mRootNode(KZylNode::Create(&manager, "RootNode")) {
  mRootNode->mOwnerScene = this;
}

void KZylScene::SetTakeInfo(const KZylTakeInfo& takeInfo) {
  for (KZylTakeInfo& take : mTakes) {
    if (take.mName == takeInfo.mName) {
      take = takeInfo;
      return;
    }
  }
  mTakes.push_back(takeInfo);
}

const KZylTakeInfo* KZylScene::GetTakeInfo(const KString& name) const {
  for (const KZylTakeInfo& take : mTakes)
    if (take.mName == name) return &take;
  return nullptr;
}

const KZylTakeInfo* KZylScene::GetTakeInfo(int index) const {
  return (index >= 0 && index < GetTakeCount()) ? &mTakes[static_cast<size_t>(index)] : nullptr;
}

bool KZylScene::SetCurrentTake(const KString& name) {
  if (!GetTakeInfo(name)) return false;
  mCurrentTake = name;
  return true;
}

bool KZylScene::AddPose(KZylPose* pose) {
  if (!pose) return false;
  mPoses.push_back(pose);
  return true;
}

KZylPose* KZylScene::GetPose(int index) const {
  return (index >= 0 && index < GetPoseCount()) ? mPoses[static_cast<size_t>(index)] : nullptr;
}

namespace {

// Visits the nodes below `root` depth first, children in order, until `visit` returns false.
template <typename Visit>
void VisitNodesBelow(KZylNode* root, Visit visit) {
  if (!root) return;
  std::vector<KZylNode*> pending;
  for (int i = root->GetChildCount() - 1; i >= 0; --i) pending.push_back(root->GetChild(i));
  while (!pending.empty()) {
    KZylNode* node = pending.back();
    pending.pop_back();
    if (!visit(node)) return;
    for (int i = node->GetChildCount() - 1; i >= 0; --i) pending.push_back(node->GetChild(i));
  }
}

}  // namespace

std::vector<KZylNode*> KZylScene::GetNodes() const {
  std::vector<KZylNode*> nodes;
  VisitNodesBelow(mRootNode, [&](KZylNode* node) {
    nodes.push_back(node);
    return true;
  });
  return nodes;
}

KZylNode* KZylScene::FindNodeByName(const KString& name) const {
  if (!mRootNode) return nullptr;
  if (mRootNode->GetName() == name) return mRootNode;
  KZylNode* found = nullptr;
  VisitNodesBelow(mRootNode, [&](KZylNode* node) {
    if (node->GetName() == name) found = node;
    return !found;
  });
  return found;
}

// Walks the hierarchy itself rather than through GetNodes: a list of every node would cost a
// document-sized allocation for the few that hold a geometry.
const std::vector<KZylGeometry*>& KZylScene::Geometries() const {
  uint64_t version = GetZylSdkManager()->GetHierarchyVersion();
  if (version != mGeometriesVersion) {
    mGeometries.clear();
    VisitNodesBelow(mRootNode, [&](KZylNode* node) {
      if (KZylGeometry* geometry = node->GetGeometry()) mGeometries.push_back(geometry);
      return true;
    });
    mGeometriesVersion = version;
  }
  return mGeometries;
}

int KZylScene::GetGeometryCount() const { return static_cast<int>(Geometries().size()); }

KZylGeometry* KZylScene::GetGeometry(int index) const {
  const std::vector<KZylGeometry*>& geometries = Geometries();
  return (index >= 0 && static_cast<size_t>(index) < geometries.size()) ? geometries[static_cast<size_t>(index)] : nullptr;
}

int KZylScene::GetMaterialCount() const { return GetSrcObjectCount(KZylSurfaceMaterial::ClassId); }

KZylSurfaceMaterial* KZylScene::GetMaterial(int index) const {
  return static_cast<KZylSurfaceMaterial*>(GetSrcObject(KZylSurfaceMaterial::ClassId, index));
}

int KZylScene::GetTextureCount() const { return GetSrcObjectCount(KZylTexture::ClassId); }

KZylTexture* KZylScene::GetTexture(int index) const {
  return static_cast<KZylTexture*>(GetSrcObject(KZylTexture::ClassId, index));
}

void KZylScene::ForgetObjects(const ObjectSet& gone) {
  KZylObject::ForgetObjects(gone);
  if (mRootNode && gone.count(mRootNode)) mRootNode = nullptr;
  if (mSceneInfo && gone.count(mSceneInfo)) mSceneInfo = nullptr;
  mPoses.erase(std::remove_if(mPoses.begin(), mPoses.end(), [&](KZylPose* p) { return gone.count(p) != 0; }),
               mPoses.end());
}

}  // namespace zylsdk
