#include "reader/geometry/mesh_sources.h"

#include "reader/dom/dom.h"

namespace zylsdk {

const DaeElement* MeshSources::Find(const KString& attribute) { return EntryOf(attribute).element; }

MeshSources::Entry& MeshSources::EntryOf(const KString& attribute) {
  auto found = mEntries.find(attribute);
  if (found != mEntries.end()) return found->second;

  Entry entry;
  entry.element = findChildById(mMesh, attribute.Mid(1));
  return mEntries.emplace(attribute, std::move(entry)).first->second;
}

}  // namespace zylsdk
