#pragma once
// Every element of a document that has an id, by that id: the first such element in document
// order. Built on the first question, so that documents that never ask pay nothing.

#include <string>
#include <unordered_map>
#include <vector>

#include "kit/kstring.h"
#include "reader/dom/dom.h"

namespace zylsdk {

class ElementIndex {
 public:
  // The document whose elements are indexed (its root element); forgets an earlier index.
  void SetRoot(const DaeElement* root);
  // The first element whose "id" is `id`; null when there is none. With `name`, only elements
  // of that name count, the first of them in document order.
  DaeElement* Find(const KString& id, const char* name = nullptr);
  // The number of distinct ids.
  size_t GetCount();

 private:
  void Build();

  const DaeElement* mRoot = nullptr;
  bool mBuilt = false;
  // Each id to its elements in document order, the first of each element name only.
  std::unordered_map<std::string, std::vector<DaeElement*>> mElements;
};

}  // namespace zylsdk
