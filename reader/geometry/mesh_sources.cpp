#include "reader/geometry/mesh_sources.h"

#include <vector>

#include "reader/dom/dom.h"

namespace zylsdk {

const xmlNode* MeshSources::Find(const KString& attribute) { return EntryOf(attribute).element; }

MeshSources::Entry& MeshSources::EntryOf(const KString& attribute) {
  auto found = mEntries.find(attribute);
  if (found != mEntries.end()) return found->second;

  if (!mIndexed) {
    // One walk of the mesh in document order, with an explicit stack; the first element of an
    // id wins, as in a search from the top.
    mIndexed = true;
    std::vector<const xmlNode*> pending;
    for (const xmlNode* child = mMesh ? mMesh->last : nullptr; child; child = child->prev)
      if (child->type == XML_ELEMENT_NODE) pending.push_back(child);
    while (!pending.empty()) {
      const xmlNode* node = pending.back();
      pending.pop_back();
      if (xmlHasProp(node, reinterpret_cast<const xmlChar*>("id")))
        mElementsById.emplace(DAE_GetProperty(node, "id").Std(), node);
      for (const xmlNode* child = node->last; child; child = child->prev)
        if (child->type == XML_ELEMENT_NODE) pending.push_back(child);
    }
  }

  Entry entry;
  auto element = mElementsById.find(attribute.Mid(1).Std());
  if (element != mElementsById.end()) entry.element = element->second;
  return mEntries.emplace(attribute, std::move(entry)).first->second;
}

}  // namespace zylsdk
