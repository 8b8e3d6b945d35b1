// Scene and node copies: each visual scene is built into a scene of its own and copied, node by
// node, into the scene being read; then the skin clusters are linked to the copied nodes.

#include <algorithm>
#include <memory>
#include <utility>
#include <unordered_map>
#include <vector>

#include "reader/collada_import.h"

namespace zylsdk {
namespace {

// The nodes of `top` and of its subtree, depth first, each node before its children; an
// explicit stack keeps deep hierarchies off the call stack.
void AppendSubtree(KZylNode* top, std::vector<KZylNode*>& nodes) {
  std::vector<KZylNode*> pending(1, top);
  while (!pending.empty()) {
    KZylNode* current = pending.back();
    pending.pop_back();
    nodes.push_back(current);
    for (int i = current->GetChildCount() - 1; i >= 0; --i) pending.push_back(current->GetChild(i));
  }
}

// The clusters of the skins of the node's mesh.
std::vector<KZylCluster*> ClustersOf(const KZylNode& node) {
  std::vector<KZylCluster*> clusters;
  KZylNodeAttribute* attribute = node.GetNodeAttribute();
  if (!attribute || attribute->GetAttributeType() != KZylNodeAttribute::eMesh) return clusters;
  const KZylGeometry* geometry = static_cast<const KZylMesh*>(attribute);
  for (int d = 0; d < geometry->GetDeformerCount(KZylDeformer::eSkin); ++d) {
    const KZylSkin* skin = static_cast<const KZylSkin*>(geometry->GetDeformer(d, KZylDeformer::eSkin));
    for (int c = 0; c < skin->GetClusterCount(); ++c) clusters.push_back(skin->GetCluster(c));
  }
  return clusters;
}

using NodeCopies = std::unordered_map<const KZylNode*, KZylNode*>;

// Each node of the source's hierarchy to its copy: the copy of the source root's children are
// the destination root's children from `firstCopiedChild` on, in order, with the same shape.
NodeCopies MapCopies(const KZylNode& sourceRoot, KZylNode& destinationRoot, int firstCopiedChild) {
  NodeCopies copies;
  copies.emplace(&sourceRoot, &destinationRoot);
  std::vector<std::pair<const KZylNode*, KZylNode*>> pending;
  for (int i = 0; i < sourceRoot.GetChildCount(); ++i)
    pending.emplace_back(sourceRoot.GetChild(i), destinationRoot.GetChild(firstCopiedChild + i));
  while (!pending.empty()) {
    auto [source, copy] = pending.back();
    pending.pop_back();
    if (!source || !copy) continue;
    copies.emplace(source, copy);
    for (int i = 0; i < source->GetChildCount(); ++i) pending.emplace_back(source->GetChild(i), copy->GetChild(i));
  }
  return copies;
}

KZylNode* CopyOf(const NodeCopies& copies, KZylNode* node) {
  auto found = copies.find(node);
  return found == copies.end() ? node : found->second;
}

// The entries of `source` with the copies of their nodes.
void CopyPoseOfCopies(KZylPose& destination, const KZylPose& source, const NodeCopies& copies) {
  for (int i = 0; i < source.GetCount(); ++i)
    destination.Add(CopyOf(copies, source.GetNode(i)), source.GetMatrix(i), source.IsLocalMatrix(i));
}

// Links the clusters of the copied nodes' skins to the copies of their joints.
void RetargetClusters(const KZylNode& destinationRoot, int firstCopiedChild, const NodeCopies& copies) {
  std::vector<const KZylNode*> pending;
  for (int i = firstCopiedChild; i < destinationRoot.GetChildCount(); ++i) pending.push_back(destinationRoot.GetChild(i));
  while (!pending.empty()) {
    const KZylNode* node = pending.back();
    pending.pop_back();
    for (KZylCluster* cluster : ClustersOf(*node))
      if (KZylNode* link = cluster->GetLink()) cluster->SetLink(CopyOf(copies, link));
    for (int i = 0; i < node->GetChildCount(); ++i) pending.push_back(node->GetChild(i));
  }
}

}  // namespace

// Skin clusters linked to the nodes of one destination scene by name, kept from one copy to
// the next: each copy relinks the clusters it brought, and those that waited for a name it
// brought, instead of the whole scene again. A cluster links to the first node, depth-first
// pre-order from the root, named as its link without name-space prefix; copies only ever add
// nodes after those of earlier copies, so an answer once given stays right.
class SceneLinks {
 public:
  explicit SceneLinks(const KZylScene& scene) : mScene(&scene) {}
  bool Covers(const KZylScene* scene) const { return mScene == scene; }

  // `nodes` come after every node added before, in depth-first pre-order; a node already added
  // (the root) only has its clusters relinked again. Names are indexed only once a cluster
  // needs them: most scenes have no skin, and their nodes only wait in order.
  void Add(const std::vector<KZylNode*>& nodes) {
    const bool linking = !mWaiting.empty() || std::any_of(nodes.begin(), nodes.end(), [](const KZylNode* node) {
      return !ClustersOf(*node).empty();
    });
    if (!linking) {
      mUnindexed.insert(mUnindexed.end(), nodes.begin(), nodes.end());
      return;
    }
    // Earlier nodes first: the first node of a name is the one a cluster links to.
    for (KZylNode* node : mUnindexed) mNodes.emplace(node->GetName(), node);
    mUnindexed.clear();
    std::vector<KString> newNames;
    for (KZylNode* node : nodes)
      if (mNodes.emplace(node->GetName(), node).second) newNames.push_back(node->GetName());
    for (const KZylNode* node : nodes) RelinkClusters(*node);
    for (const KString& name : newNames) {
      auto waiting = mWaiting.find(name);
      if (waiting == mWaiting.end()) continue;
      const std::vector<KZylCluster*> clusters = std::move(waiting->second);
      mWaiting.erase(waiting);
      for (KZylCluster* cluster : clusters) Relink(*cluster);
    }
  }

 private:
  void RelinkClusters(const KZylNode& node) {
    for (KZylCluster* cluster : ClustersOf(node)) Relink(*cluster);
  }

  // A link that names no node of the scene stays, and waits for a copy that brings the name.
  void Relink(KZylCluster& cluster) {
    KZylNode* link = cluster.GetLink();
    if (!link) return;
    const KString name = link->GetNameWithoutNameSpacePrefix();
    auto found = mNodes.find(name);
    if (found == mNodes.end()) {
      mWaiting[name].push_back(&cluster);
      return;
    }
    cluster.DisconnectZylSrc(link);
    cluster.SetLink(found->second);
  }

  const KZylScene* mScene;
  std::vector<KZylNode*> mUnindexed;
  std::unordered_map<KString, KZylNode*> mNodes;
  std::unordered_map<KString, std::vector<KZylCluster*>> mWaiting;
};

namespace {

// The nodes a copy brought, listed as it copied them (the root, whose attribute each copy
// replaces, then the copied subtrees), with the subtrees of the root's first `earlierChildren`
// children put after the root: every node of the scene for its first copy.
std::vector<KZylNode*> WithEarlierNodes(std::vector<KZylNode*> copied, KZylNode* root, int earlierChildren) {
  if (earlierChildren == 0) return copied;
  std::vector<KZylNode*> nodes(1, root);
  for (int i = 0; i < earlierChildren; ++i) AppendSubtree(root->GetChild(i), nodes);
  nodes.insert(nodes.end(), copied.begin() + 1, copied.end());
  return nodes;
}

}  // namespace

bool KZylReaderCollada::CopyScene(KZylScene* destination, KZylScene* source) {
  std::shared_ptr<SceneLinks>& links = mState->sceneLinks;
  const bool firstCopy = !links || !links->Covers(destination);
  const int firstCopiedChild = destination->GetRootNode()->GetChildCount();
  // The traditional reading links the copied nodes' clusters by name: it lists them on the way.
  std::vector<KZylNode*> copied;
  if (!(mStatus = CopyNodeSubtree(destination->GetRootNode(), source->GetRootNode(), mComplete ? nullptr : &copied)))
    return false;
  // The complete reading points the copies' clusters and poses at the copied nodes, exactly;
  // the traditional reading re-links clusters by name and keeps the poses' nodes.
  const NodeCopies copies =
      mComplete ? MapCopies(*source->GetRootNode(), *destination->GetRootNode(), firstCopiedChild) : NodeCopies();
  // Every pose arrives as a bind pose, whatever it was.
  for (int i = 0; i < source->GetPoseCount(); ++i) {
    KZylPose* sourcePose = source->GetPose(i);
    KZylPose* pose = KZylPose::Create(mManager, sourcePose->GetName().Buffer());
    pose->SetIsBindPose(true);
    if (mComplete) {
      CopyPoseOfCopies(*pose, *sourcePose, copies);
    } else {
      CopyPose(pose, sourcePose);
    }
    destination->AddPose(pose);
  }
  if (mComplete) {
    RetargetClusters(*destination->GetRootNode(), firstCopiedChild, copies);
    return mStatus = true;
  }
  if (firstCopy) links = std::make_shared<SceneLinks>(*destination);
  links->Add(WithEarlierNodes(std::move(copied), destination->GetRootNode(), firstCopy ? firstCopiedChild : 0));
  return mStatus = true;
}

bool KZylReaderCollada::CopyNodeHierarchy(KZylNode* destination, KZylNode* source) {
  return CopyNodeSubtree(destination, source, nullptr);
}

bool KZylReaderCollada::CopyNodeSubtree(KZylNode* destination, KZylNode* source, std::vector<KZylNode*>* copied) {
  // Recursive: only pointers stay in the frame.
  if (copied) copied->push_back(destination);
  if (!(mStatus = CopyNode(destination, source))) return false;
  for (int i = 0; i < source->GetChildCount(); ++i) {
    KZylNode* child = source->GetChild(i);
    KZylNode* copy = KZylNode::Create(mManager, child->GetName().Buffer());
    if (!(mStatus = CopyNodeSubtree(copy, child, copied))) return false;
    destination->AddChild(copy);
  }
  return mStatus = true;
}

bool KZylReaderCollada::CopyNode(KZylNode* destination, KZylNode* source) {
  if (!(mStatus = CopyNodeAttribute(destination, source))) return false;
  destination->SetRotationOrder(eSourcePivot, source->GetRotationOrder(eSourcePivot));
  // Deliberately not the source's: copies always compose parent times child.
  destination->SetTransformationInheritType(eInheritRSrs);
  CopyNodeTransforms(destination, source);
  destination->SetShadingMode(source->GetShadingMode());
  return mStatus = true;
}

bool KZylReaderCollada::CopyNodeAttribute(KZylNode* destination, KZylNode* source) {
  KZylNodeAttribute* attribute = source->GetNodeAttribute();
  if (!attribute) return true;
  switch (attribute->GetAttributeType()) {
    case KZylNodeAttribute::eCamera: {
      KZylCamera* camera = KZylCamera::Create(mManager, "");
      destination->SetNodeAttribute(camera);
      CopyCamera(camera, static_cast<KZylCamera*>(attribute));
      break;
    }
    case KZylNodeAttribute::eLight: {
      KZylLight* light = KZylLight::Create(mManager, "");
      destination->SetNodeAttribute(light);
      CopyLight(light, static_cast<KZylLight*>(attribute));
      break;
    }
    case KZylNodeAttribute::eMesh: {
      KZylMesh* mesh = KZylMesh::Create(mManager, "");
      destination->SetNodeAttribute(mesh);
      CopyMesh(mesh, static_cast<KZylMesh*>(attribute));
      break;
    }
    case KZylNodeAttribute::eNull: {
      KZylNull* null = KZylNull::Create(mManager, "");
      destination->SetNodeAttribute(null);
      CopyNull(null, static_cast<KZylNull*>(attribute));
      break;
    }
    case KZylNodeAttribute::eNurb:
      destination->SetNodeAttribute(static_cast<KZylNodeAttribute*>(attribute->Clone(2)));
      break;
    case KZylNodeAttribute::eSkeleton: {
      KZylSkeleton* skeleton = KZylSkeleton::Create(mManager, "");
      destination->SetNodeAttribute(skeleton);
      CopySkeleton(skeleton, static_cast<KZylSkeleton*>(attribute));
      break;
    }
    default:
      AddNotificationWarning("unknown attribute type found in node " + source->GetName());
      break;
  }
  return true;
}

void KZylReaderCollada::CopyNodeTransforms(KZylNode* destination, KZylNode* source) {
  destination->SetDefaultT(source->GetDefaultT());
  destination->SetDefaultR(source->GetDefaultR());
  destination->SetDefaultS(source->GetDefaultS());
  // All pivot-set values are read before the first is written.
  const KZylVector4 preRotation = source->GetPreRotation(eSourcePivot);
  const KZylVector4 postRotation = source->GetPostRotation(eSourcePivot);
  const KZylVector4 rotationPivot = source->GetRotationPivot(eSourcePivot);
  const KZylVector4 scalingPivot = source->GetScalingPivot(eSourcePivot);
  const KZylVector4 rotationOffset = source->GetRotationOffset(eSourcePivot);
  const KZylVector4 scalingOffset = source->GetScalingOffset(eSourcePivot);
  destination->SetPreRotation(eSourcePivot, preRotation);
  destination->SetPostRotation(eSourcePivot, postRotation);
  destination->SetRotationPivot(eSourcePivot, rotationPivot);
  destination->SetScalingPivot(eSourcePivot, scalingPivot);
  destination->SetRotationOffset(eSourcePivot, rotationOffset);
  destination->SetScalingOffset(eSourcePivot, scalingOffset);
  destination->SetRotationActive(source->GetRotationActive(eSourcePivot), eSourcePivot);
}

void KZylReaderCollada::CopyPose(KZylPose* destination, KZylPose* source) {
  if (!source) return;
  for (int i = 0; i < source->GetCount(); ++i) destination->Add(source->GetNode(i), source->GetMatrix(i), false);
}

}  // namespace zylsdk
