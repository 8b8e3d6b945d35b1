#include "kit/reader_base.h"

#include <unordered_map>

#include "kit/scene.h"

namespace zylsdk {

void KZylReader::GetVersion(int& major, int& minor, int& revision) const {
  major = 1;
  minor = 4;
  revision = 0;
}

bool KZylReader::CheckDuplicateNodeNames(const KZylScene& scene, KStringList& duplicates) const {
  std::unordered_map<KString, int> seen;
  for (const KZylNode* node : scene.GetNodes())
    if (++seen[node->GetName()] == 2) duplicates.Add(node->GetName());
  return duplicates.GetCount() == 0;
}

}  // namespace zylsdk
