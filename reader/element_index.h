#pragma once
// A document's elements by id, as the complete reading looks them up: the first element of an
// id in document order, or the first of that id with a given element name. Built on the
// document's own index of ids, one id at a time, so that every question costs constant time.

#include <string>
#include <string_view>
#include <unordered_map>

#include "kit/kstring.h"
#include "reader/dom/dom.h"

namespace zylsdk {

class ElementIndex {
 public:
  // The document whose elements are looked up (any element of it); forgets earlier answers.
  void SetDocument(const DaeElement* element);
  // The first element whose "id" is `id`, or with `name` the first such element of that name;
  // null when there is none.
  DaeElement* Find(const KString& id, const char* name = nullptr);
  // How many elements the document holds: a bound for chains of references.
  size_t GetElementCount() const;

 private:
  const DaeDocument* mDocument = nullptr;
  // For each id asked about: the first element of each name ("" for the first of any name).
  std::unordered_map<std::string, std::unordered_map<std::string_view, DaeElement*>> mFirstByName;
};

}  // namespace zylsdk
