#include "kit/renamer.h"

#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>

#include "kit/half_full_table.h"
#include "kit/scene.h"

namespace zylsdk {
namespace {

// True when two of the nodes share a non-empty name. Most scenes have none, and finding that
// out costs far less than the renaming's sets of names: each name goes into an open-addressing
// table of their hashes (at most half full), where it meets only the names of its probe run.
bool HasRepeatedName(const std::vector<KZylNode*>& nodes) {
  struct Slot {
    uint32_t hash;
    uint32_t node;  // the node's index plus one; 0 for a free slot
  };
  const size_t size = HalfFullSlots(nodes.size(), 64);
  const size_t mask = size - 1;
  std::vector<Slot> slots(size, Slot{0, 0});
  for (size_t i = 0; i < nodes.size(); ++i) {
    const std::string_view name = nodes[i]->GetName().Std();
    if (name.empty()) continue;
    const uint32_t hash = static_cast<uint32_t>(std::hash<std::string_view>()(name));
    size_t at = hash & mask;
    for (; slots[at].node != 0; at = (at + 1) & mask)
      if (slots[at].hash == hash && nodes[slots[at].node - 1]->GetName().Std() == name) return true;
    slots[at] = {hash, static_cast<uint32_t>(i + 1)};
  }
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
