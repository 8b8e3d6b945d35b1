// The complete reading's skin joints. A controller names its joints by sid (or, in many files,
// by node id or name); a sid is looked up among the nodes below the skeleton roots that the
// instance_controller gives, then the name is tried as a node id, then as a node name. Each
// skin's clusters then link to those nodes of the visual scene, and its bind pose holds them
// at their bind matrices.

#include <string>
#include <unordered_map>
#include <vector>

#include "reader/collada_import.h"
#include "reader/dom/dom.h"

namespace zylsdk {
namespace {

using ElementsByName = std::unordered_map<std::string, const DaeElement*>;

// The node elements of the subtree of `root` (itself included when it is a node) by the value of
// `attribute`: the first in document order for each value.
ElementsByName IndexNodes(const DaeElement* root, const char* attribute) {
  ElementsByName index;
  std::vector<const DaeElement*> pending(1, root);
  std::vector<const DaeElement*> children;
  while (!pending.empty()) {
    const DaeElement* element = pending.back();
    pending.pop_back();
    if (DAE_IsElement(element, "node")) index.emplace(DAE_GetProperty(element, attribute).Std(), element);
    children.clear();
    for (DaeElement* child = firstChildElement(element); child; child = nextSiblingElement(child))
      if (DAE_IsElement(child, "node")) children.push_back(child);
    pending.insert(pending.end(), children.rbegin(), children.rend());
  }
  return index;
}

class JointFinder {
 public:
  JointFinder(KZylReaderCollada::DocumentState& state, const DaeElement* visualScene)
      : mState(state), mVisualScene(visualScene) {}

  // The node of the visual scene that joint `name` of a skin instanced by `instance` names;
  // null when none does.
  KZylNode* Find(const DaeElement* instance, const KString& name) {
    for (DaeElement* skeleton = firstChildElement(instance); skeleton; skeleton = nextSiblingElement(skeleton)) {
      if (!DAE_IsElement(skeleton, "skeleton")) continue;
      const DaeElement* root = mState.elementsById.Find(DAE_GetContent(skeleton).Mid(1), "node");
      if (KZylNode* joint = NodeOf(Lookup(mSidsByRoot, root, "sid"), name)) return joint;
    }
    if (KZylNode* joint = NodeOf(mState.elementsById.Find(name, "node"))) return joint;
    return NodeOf(Lookup(mNamesByScene, mVisualScene, "name"), name);
  }

 private:
  const ElementsByName* Lookup(std::unordered_map<const DaeElement*, ElementsByName>& indexes, const DaeElement* root,
                               const char* attribute) {
    if (!root) return nullptr;
    auto found = indexes.find(root);
    if (found == indexes.end()) found = indexes.emplace(root, IndexNodes(root, attribute)).first;
    return &found->second;
  }
  KZylNode* NodeOf(const ElementsByName* index, const KString& name) {
    if (!index) return nullptr;
    auto found = index->find(name.Std());
    return found == index->end() ? nullptr : NodeOf(found->second);
  }
  KZylNode* NodeOf(const DaeElement* element) {
    auto found = mState.nodeOfElement.find(element);
    return found == mState.nodeOfElement.end() ? nullptr : found->second;
  }

  KZylReaderCollada::DocumentState& mState;
  const DaeElement* mVisualScene;
  std::unordered_map<const DaeElement*, ElementsByName> mSidsByRoot;
  std::unordered_map<const DaeElement*, ElementsByName> mNamesByScene;
};

}  // namespace

void KZylReaderCollada::LinkSkinsToJoints() {
  JointFinder joints(*mState, mVisualSceneElement);
  for (const SkinInstance& skin : mState->skinInstances) {
    KZylPose* pose = KZylPose::Create(mManager, skin.controller->id.Buffer());
    pose->SetIsBindPose(true);
    for (size_t i = 0; i < skin.clusters.size(); ++i) {
      KZylCluster* cluster = skin.clusters[i];
      KZylNode* placeholder = cluster->GetLink();
      if (!placeholder) continue;
      const KString name = placeholder->GetName();
      KZylNode* joint = joints.Find(skin.instance, name);
      cluster->DisconnectZylSrc(placeholder);
      cluster->SetLink(joint);
      if (joint) {
        pose->Add(joint, cluster->GetTransformLinkMatrix(), false);
      } else {
        AddNotificationWarning("joint " + name + " of controller " + skin.controller->id +
                               " not found: its cluster is left without a link");
      }
    }
    // The skinned node itself, at the bind shape matrix.
    pose->Add(skin.node, skin.controller->bindShapeMatrix, false);
    if (KZylPose* placeholderPose = mState->bindPoses.GetAt(skin.poseIndex)) placeholderPose->Destroy();
    mState->bindPoses.SetAt(skin.poseIndex, pose);
  }
  mState->skinInstances.clear();
  mState->nodeOfElement.clear();
}

}  // namespace zylsdk
