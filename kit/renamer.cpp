#include "kit/renamer.h"

#include <algorithm>
#include <functional>
#include <string_view>
#include <utility>

#include "kit/scene.h"

namespace zylsdk {
namespace {

// True when two of the nodes share a non-empty name. Most scenes have none, and finding that
// out costs far less than the renaming's sets of names: the names' hashes are sorted, and only
// names of equal hash are compared.
bool HasRepeatedName(const std::vector<KZylNode*>& nodes) {
  std::vector<std::pair<size_t, std::string_view>> names;
  names.reserve(nodes.size());
  for (const KZylNode* node : nodes) {
    const std::string_view name = node->GetName().Std();
    if (!name.empty()) names.emplace_back(std::hash<std::string_view>()(name), name);
  }
  std::sort(names.begin(), names.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  for (size_t i = 0; i < names.size(); ++i)
    for (size_t j = i + 1; j < names.size() && names[j].first == names[i].first; ++j)
      if (names[j].second == names[i].second) return true;
  return false;
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
