#include "reader/element_index.h"

#include "reader/dom/element.h"

namespace zylsdk {

void ElementIndex::SetDocument(const DaeElement* element) {
  mDocument = element ? &element->Document() : nullptr;
  mFirstByName.clear();
}

DaeElement* ElementIndex::Find(const KString& id, const char* name) {
  if (!mDocument) return nullptr;
  auto known = mFirstByName.find(id.Std());
  if (known == mFirstByName.end()) {
    std::unordered_map<std::string_view, DaeElement*>& first = mFirstByName[id.Std()];
    for (DaeElement* element : mDocument->ElementsWithId(id.Std())) {
      first.emplace(std::string_view(), element);
      first.emplace(DAE_GetName(element), element);
    }
    known = mFirstByName.find(id.Std());
  }
  auto found = known->second.find(name ? std::string_view(name) : std::string_view());
  return found == known->second.end() ? nullptr : found->second;
}

size_t ElementIndex::GetElementCount() const { return mDocument ? mDocument->ElementCount() : 0; }

}  // namespace zylsdk
