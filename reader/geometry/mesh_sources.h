#pragma once
// The `source` elements of one `mesh` (or of a controller's `skin` or `morph`), found by the
// attributes that name them ("#id") and read once per kind of value, however many inputs refer
// to them. A source is either copied out as values (Read) or seen in place (Numbers), which
// costs no copy for readers that pick its items by index.

#include <memory>
#include <tuple>
#include <unordered_map>

#include "kit/karray.h"
#include "kit/kmath.h"
#include "kit/kstring.h"
#include "reader/dom/dom.h"
#include "reader/dom/source.h"

namespace zylsdk {

class MeshSources {
 public:
  explicit MeshSources(const DaeElement* mesh, const SourceRules& rules = {})
      : mMesh(mesh), mMeshEnd(mesh ? mesh->DescendantsEnd() : 0), mRules(rules) {}

  // The element below the mesh whose id is the attribute less its first character (the "#" of
  // a local reference, dropped without being looked at); null when there is none.
  const DaeElement* Find(const KString& attribute);

  // The values of that source as vectors, colours, texture coordinates, numbers, matrices or
  // names; null when there is no such source or it cannot be read.
  template <class T>
  const KArrayTemplate<T>* Read(const KString& attribute) {
    Entry& entry = EntryOf(attribute);
    Values<T>& values = std::get<Values<T>>(entry.values);
    if (!values.read) {
      values.read = true;
      values.ok = ImportSource(entry.element, values.items, mRules);
    }
    return values.ok ? &values.items : nullptr;
  }

  // The numbers of that source where the document holds them; null when there is no such
  // source or it cannot be read.
  const NumberSource* Numbers(const KString& attribute);

 private:
  template <class T>
  struct Values {
    bool read = false;
    bool ok = false;
    KArrayTemplate<T> items;
  };
  struct Entry {
    const DaeElement* element = nullptr;
    std::tuple<Values<KZylVector4>, Values<KZylColor>, Values<KZylVector2>, Values<double>, Values<KZylXMatrix>,
               Values<KString>>
        values;
    // Made on the first call to Numbers; stays null when the source cannot be read.
    std::unique_ptr<NumberSource> numbers;
    bool numbersOpened = false;
  };

  Entry& EntryOf(const KString& attribute);

  const DaeElement* mMesh;
  uint32_t mMeshEnd;  // its DescendantsEnd()
  SourceRules mRules;
  std::unordered_map<KString, Entry> mEntries;
};

}  // namespace zylsdk
