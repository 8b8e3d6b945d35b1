#include "reader/animation/target_index.h"

#include "reader/collada_reader.h"
#include "reader/dom/dom.h"

namespace zylsdk {
namespace {

// The visual_scene elements that the `scene` element instances, in its order; a url that
// names no visual_scene of the document is passed over.
std::vector<DaeElement*> InstancedVisualScenes(const DaeElement* sceneElement) {
  std::vector<DaeElement*> instanced;
  if (!sceneElement) return instanced;
  std::unordered_map<KString, DaeElement*> byId;
  for (DaeElement* library = firstChildElement(parentElement(sceneElement)); library; library = nextSiblingElement(library)) {
    if (!DAE_IsElement(library, "library_visual_scenes")) continue;
    for (DaeElement* visualScene = firstChildElement(library); visualScene; visualScene = nextSiblingElement(visualScene))
      if (DAE_IsElement(visualScene, "visual_scene")) byId.emplace(DAE_GetProperty(visualScene, "id"), visualScene);
  }
  for (DaeElement* child = firstChildElement(sceneElement); child; child = nextSiblingElement(child)) {
    if (!DAE_IsElement(child, "instance_visual_scene")) continue;
    auto found = byId.find(DAE_GetUrl(child));
    if (found != byId.end()) instanced.push_back(found->second);
  }
  return instanced;
}

}  // namespace

AnimationTargetIndex::AnimationTargetIndex(KZylNode* root, const DaeElement* sceneElement)
    : mRoot(root), mVisualScenes(InstancedVisualScenes(sceneElement)) {
  if (!root) return;
  // The first node of a name wins, in the order FindChild looks: the root's children, then,
  // depth first, the children of each node that is visited.
  auto indexChildren = [this](const KZylNode* node) {
    for (int i = 0; i < node->GetChildCount(); ++i) mNodes.emplace(node->GetChild(i)->GetName(), node->GetChild(i));
  };
  indexChildren(root);
  std::vector<const KZylNode*> pending;
  for (int i = root->GetChildCount() - 1; i >= 0; --i) pending.push_back(root->GetChild(i));
  while (!pending.empty()) {
    const KZylNode* node = pending.back();
    pending.pop_back();
    indexChildren(node);
    for (int i = node->GetChildCount() - 1; i >= 0; --i) pending.push_back(node->GetChild(i));
  }
}

KZylNode* AnimationTargetIndex::FindNode(const KString& name) const {
  auto found = mNodes.find(name);
  return found == mNodes.end() ? nullptr : found->second;
}

KZylNode* AnimationTargetIndex::FindInstance(KZylReaderCollada& reader, const KString& id) {
  auto cached = mInstances.find(id);
  if (cached != mInstances.end()) return cached->second;
  KZylNode* first = nullptr;
  for (DaeElement* visualScene : mVisualScenes) {
    KArrayTemplate<KZylNode*> nodes = reader.FindInstances(visualScene, mRoot, "#" + id);
    if (nodes.IsEmpty()) continue;
    first = nodes[0];
    break;
  }
  mInstances.emplace(id, first);
  return first;
}

const std::vector<AnimationTargetIndex::MorphNode>& AnimationTargetIndex::MorphNodes(const KString& key,
                                                                                     const ShapeRecordList& records) {
  auto cached = mMorphs.find(key);
  if (cached != mMorphs.end()) return cached->second;
  std::vector<MorphNode>& nodes = mMorphs[key];
  std::unordered_map<KString, size_t> positions;
  for (const ShapeRecord& record : records) {
    auto inserted = positions.emplace(record.name, nodes.size());
    if (inserted.second) nodes.push_back(MorphNode{record.name, {}});
    // The first record of a target position on a node wins.
    nodes[inserted.first->second].shapeByTarget.emplace(record.targetPosition, record.index);
  }
  return nodes;
}

}  // namespace zylsdk
