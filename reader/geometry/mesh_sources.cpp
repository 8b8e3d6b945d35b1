#include "reader/geometry/mesh_sources.h"

#include "reader/dom/dom.h"

namespace zylsdk {

const DaeElement* MeshSources::Find(const KString& attribute) { return EntryOf(attribute).element; }

const NumberSource* MeshSources::Numbers(const KString& attribute) {
  Entry& entry = EntryOf(attribute);
  if (!entry.numbersOpened) {
    entry.numbersOpened = true;
    auto numbers = std::make_unique<NumberSource>();
    if (numbers->Open(entry.element, mRules)) entry.numbers = std::move(numbers);
  }
  return entry.numbers.get();
}

MeshSources::Entry& MeshSources::EntryOf(const KString& attribute) {
  auto found = mEntries.find(attribute);
  if (found != mEntries.end()) return found->second;

  Entry entry;
  entry.element = findChildById(mMesh, mMeshEnd, attribute.Mid(1));
  return mEntries.emplace(attribute, std::move(entry)).first->second;
}

}  // namespace zylsdk
