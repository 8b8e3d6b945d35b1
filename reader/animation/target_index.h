#pragma once
// Lookups of the animation import that hold for a whole document: animations are read once
// the scene is complete, and reading them changes no node's name or place, so each answer is
// computed once instead of once per channel.

#include <unordered_map>
#include <vector>

#include "kit/zylsdk.h"
#include "reader/dom/dom.h"
#include "reader/records.h"

namespace zylsdk {

class AnimationTargetIndex {
 public:
  // The node of a morph's shape records, and for each target position of the morph the index
  // of the shape it made on that node's geometry.
  struct MorphNode {
    KString name;
    std::unordered_map<int, int> shapeByTarget;
  };

  // `root`: the scene's root node; `sceneElement`: the document's `scene` element (may be null).
  AnimationTargetIndex(KZylNode* root, const DaeElement* sceneElement);

  // True when the index was made for this root.
  bool Covers(const KZylNode* root) const { return mRoot == root; }

  // The node that root->FindChild(name, true, false) gives: the first of that name when the
  // direct children of each node are looked at before its grandchildren, depth first.
  KZylNode* FindNode(const KString& name) const;

  // The first node that FindInstances gives for the url "#" + id over the visual scenes that
  // the `scene` element instances; null when it gives none.
  KZylNode* FindInstance(const KString& id) const;

  // The nodes of a morph key's shape records, in the order of their first record.
  const std::vector<MorphNode>& MorphNodes(const KString& key, const ShapeRecordList& records);

 private:
  KZylNode* mRoot;
  std::unordered_map<KString, KZylNode*> mNodes;
  // For each instance url, the first element of the instanced visual scenes that holds it, in
  // the order FindInstances looks.
  std::unordered_map<KString, const DaeElement*> mInstances;
  std::unordered_map<KString, std::vector<MorphNode>> mMorphs;
};

}  // namespace zylsdk
