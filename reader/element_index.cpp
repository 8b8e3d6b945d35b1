#include "reader/element_index.h"

#include "reader/dom/dom.h"

namespace zylsdk {

void ElementIndex::SetRoot(const xmlNode* root) {
  mRoot = root;
  mBuilt = false;
  mElements.clear();
}

xmlNode* ElementIndex::Find(const KString& id, const char* name) {
  if (!mBuilt) Build();
  auto found = mElements.find(id.Std());
  if (found == mElements.end()) return nullptr;
  for (xmlNode* element : found->second)
    if (!name || DAE_IsElement(element, name)) return element;
  return nullptr;
}

size_t ElementIndex::GetCount() {
  if (!mBuilt) Build();
  return mElements.size();
}

void ElementIndex::Build() {
  mBuilt = true;
  // Document order with an explicit stack: deep documents stay off the call stack.
  std::vector<const xmlNode*> pending;
  if (mRoot) pending.push_back(mRoot);
  while (!pending.empty()) {
    const xmlNode* element = pending.back();
    pending.pop_back();
    KString storage;
    const char* id = DAE_PropertyText(element, "id", storage);
    if (*id) {
      std::vector<xmlNode*>& elements = mElements[id];
      bool nameSeen = false;
      for (const xmlNode* known : elements) nameSeen = nameSeen || DAE_IsElement(known, DAE_GetName(element));
      if (!nameSeen) elements.push_back(const_cast<xmlNode*>(element));
    }
    for (const xmlNode* child = element->last; child; child = child->prev)
      if (child->type == XML_ELEMENT_NODE) pending.push_back(child);
  }
}

}  // namespace zylsdk
