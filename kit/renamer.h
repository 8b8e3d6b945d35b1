#pragma once
// Scene renaming: makes node names unique after a read.

#include <unordered_map>
#include <unordered_set>

#include "kit/kstring.h"

namespace zylsdk {

class KZylScene;

// Number-suffix renaming: the first holder of a name keeps it, every later one gets the name
// followed by the smallest integer n >= 1 that no name in use has.
class KNumberRenamingStrategy {
 public:
  void Clear();
  // Marks a name as used.
  void Reserve(const KString& name) { mUsed.insert(name); }
  // A name not in use, made from `name`, marked as used; `name` itself when it is free.
  KString MakeUnique(const KString& name);

 private:
  std::unordered_set<KString> mUsed;
  std::unordered_map<KString, int> mNextSuffix;
};

class KZylSceneRenamer {
 public:
  enum ERenamingMode { eNone = 0, eColladaToZyl = 16 };

  explicit KZylSceneRenamer(KZylScene& scene) : mScene(scene), mStrategy(&mOwnStrategy) {}
  KZylSceneRenamer(KZylScene& scene, KNumberRenamingStrategy& strategy) : mScene(scene), mStrategy(&strategy) {}

  // eColladaToZyl: walks the nodes depth first, children in order, the root excluded; the first
  // node with a given non-empty name keeps it and every later one is renamed with a number
  // suffix, unique among all nodes. Other modes do nothing.
  void RenameFor(int mode);

 private:
  KZylScene& mScene;
  KNumberRenamingStrategy mOwnStrategy;
  KNumberRenamingStrategy* mStrategy;
};

}  // namespace zylsdk
