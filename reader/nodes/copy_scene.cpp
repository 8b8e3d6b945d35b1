// Scene and node copies: each visual scene is built into a scene of its own and copied, node by
// node, into the scene being read; then the skin clusters are linked to the copied nodes.

#include <unordered_map>
#include <vector>

#include "reader/collada_import.h"

namespace zylsdk {
namespace {

// The nodes of a scene by name, each name giving its first node in depth-first pre-order from
// the root: the answers of FindNodeByName, without a walk per question. Built on first use.
class NodesByName {
 public:
  explicit NodesByName(const KZylScene& scene) : mScene(scene) {}

  KZylNode* Find(const KString& name) {
    if (!mBuilt) Build();
    auto found = mNodes.find(name);
    return found == mNodes.end() ? nullptr : found->second;
  }

 private:
  void Build() {
    mBuilt = true;
    if (KZylNode* root = mScene.GetRootNode()) mNodes.emplace(root->GetName(), root);
    for (KZylNode* node : mScene.GetNodes()) mNodes.emplace(node->GetName(), node);
  }

  const KZylScene& mScene;
  bool mBuilt = false;
  std::unordered_map<KString, KZylNode*> mNodes;
};

// Links the clusters of the node's skins to the scene's nodes of their link's name without
// name-space prefix; a link that names no node of the scene stays.
void RelinkClusters(const KZylNode& node, NodesByName& nodes) {
  KZylNodeAttribute* attribute = node.GetNodeAttribute();
  if (!attribute || attribute->GetAttributeType() != KZylNodeAttribute::eMesh) return;
  const KZylGeometry* geometry = static_cast<const KZylMesh*>(attribute);
  for (int d = 0; d < geometry->GetDeformerCount(KZylDeformer::eSkin); ++d) {
    const KZylSkin* skin = static_cast<const KZylSkin*>(geometry->GetDeformer(d, KZylDeformer::eSkin));
    for (int c = 0; c < skin->GetClusterCount(); ++c) {
      KZylCluster* cluster = skin->GetCluster(c);
      KZylNode* link = cluster->GetLink();
      if (!link) continue;
      if (KZylNode* found = nodes.Find(link->GetNameWithoutNameSpacePrefix())) {
        cluster->DisconnectZylSrc(link);
        cluster->SetLink(found);
      }
    }
  }
}

}  // namespace

bool KZylReaderCollada::CopyScene(KZylScene* destination, KZylScene* source) {
  if (!(mStatus = CopyNodeHierarchy(destination->GetRootNode(), source->GetRootNode()))) return false;
  // Every pose arrives as a bind pose, whatever it was.
  for (int i = 0; i < source->GetPoseCount(); ++i) {
    KZylPose* sourcePose = source->GetPose(i);
    KZylPose* pose = KZylPose::Create(mManager, sourcePose->GetName().Buffer());
    pose->SetIsBindPose(true);
    CopyPose(pose, sourcePose);
    destination->AddPose(pose);
  }
  UpdateLinkInHierarchy(destination, destination->GetRootNode());
  return mStatus = true;
}

bool KZylReaderCollada::CopyNodeHierarchy(KZylNode* destination, KZylNode* source) {
  // Recursive: only pointers stay in the frame.
  if (!(mStatus = CopyNode(destination, source))) return false;
  for (int i = 0; i < source->GetChildCount(); ++i) {
    KZylNode* child = source->GetChild(i);
    KZylNode* copy = KZylNode::Create(mManager, child->GetName().Buffer());
    if (!(mStatus = CopyNodeHierarchy(copy, child))) return false;
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

void KZylReaderCollada::UpdateLinkInHierarchy(KZylScene* scene, KZylNode* node) {
  // The node and its subtree, depth first, each node before its children; an explicit stack
  // keeps deep hierarchies off the call stack.
  NodesByName nodes(*scene);
  std::vector<const KZylNode*> pending(1, node);
  while (!pending.empty()) {
    const KZylNode* current = pending.back();
    pending.pop_back();
    if (!current) continue;
    RelinkClusters(*current, nodes);
    for (int i = current->GetChildCount() - 1; i >= 0; --i) pending.push_back(current->GetChild(i));
  }
}

}  // namespace zylsdk
