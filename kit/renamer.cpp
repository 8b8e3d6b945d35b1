#include "kit/renamer.h"

#include <algorithm>
#include <string_view>

#include "kit/scene.h"

namespace zylsdk {
namespace {

// True when two of the nodes share a non-empty name. Most scenes have none, and finding that
// out over views of the names costs far less than the renaming's sets of names.
bool HasRepeatedName(const std::vector<KZylNode*>& nodes) {
  std::vector<std::string_view> names;
  names.reserve(nodes.size());
  for (const KZylNode* node : nodes)
    if (!node->GetName().IsEmpty()) names.emplace_back(node->GetName().Std());
  std::sort(names.begin(), names.end());
  return std::adjacent_find(names.begin(), names.end()) != names.end();
}

}  // namespace

void KNumberRenamingStrategy::Clear() {
  mUsed.clear();
  mNextSuffix.clear();
}

KString KNumberRenamingStrategy::MakeUnique(const KString& name) {
  if (mUsed.insert(name).second) return name;
  // Names only ever join the used set, so the search for a suffix can resume where it stopped.
  int& suffix = mNextSuffix.try_emplace(name, 1).first->second;
  KString candidate = name + suffix;
  while (mUsed.count(candidate)) candidate = name + ++suffix;
  mUsed.insert(candidate);
  return candidate;
}

void KZylSceneRenamer::RenameFor(int mode) {
  if (mode != eColladaToZyl) return;
  std::vector<KZylNode*> nodes = mScene.GetNodes();
  mStrategy->Clear();
  if (!HasRepeatedName(nodes)) return;
  // Every name present counts as used, so that a suffixed name never takes another node's name.
  for (KZylNode* node : nodes) mStrategy->Reserve(node->GetName());
  std::unordered_set<KString> kept;
  for (KZylNode* node : nodes) {
    const KString& name = node->GetName();
    if (name.IsEmpty() || kept.insert(name).second) continue;
    node->SetName(mStrategy->MakeUnique(name));
  }
}

}  // namespace zylsdk
