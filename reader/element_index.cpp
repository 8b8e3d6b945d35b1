#include "reader/element_index.h"

#include <algorithm>

#include "reader/dom/dom.h"

namespace zylsdk {

void ElementIndex::SetRoot(const DaeElement* root) {
  mRoot = root;
  mBuilt = false;
  mElements.clear();
}

DaeElement* ElementIndex::Find(const KString& id, const char* name) {
  if (!mBuilt) Build();
  auto found = mElements.find(id.Std());
  if (found == mElements.end()) return nullptr;
  for (DaeElement* element : found->second)
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
  std::vector<const DaeElement*> pending;
  if (mRoot) pending.push_back(mRoot);
  while (!pending.empty()) {
    const DaeElement* element = pending.back();
    pending.pop_back();
    KString storage;
    const char* id = DAE_PropertyText(element, "id", storage);
    if (*id) {
      std::vector<DaeElement*>& elements = mElements[id];
      bool nameSeen = false;
      for (const DaeElement* known : elements) nameSeen = nameSeen || DAE_IsElement(known, DAE_GetName(element));
      if (!nameSeen) elements.push_back(const_cast<DaeElement*>(element));
    }
    const size_t firstChild = pending.size();
    for (const DaeElement* child = firstChildElement(element); child; child = nextSiblingElement(child))
      pending.push_back(child);
    std::reverse(pending.begin() + static_cast<std::ptrdiff_t>(firstChild), pending.end());
  }
}

}  // namespace zylsdk
