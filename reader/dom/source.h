#pragma once
// Reading a COLLADA `source`: its data array seen through its common accessor.
//
// The accessor's `offset` (default 0), `stride` (default 1) and `count` (default: as many
// items as fit) select the items; its named `param`s select, in order, the components that
// fill each value (an unnamed param skips its component; a float4x4 param spans 16). Items
// are read only as far as the array's values reach: the declared counts of the document never
// decide how much is allocated. Missing components are 0 (a colour's alpha 1, a matrix's
// from the identity).

#include <algorithm>
#include <cstdint>
#include <vector>

#include "kit/karray.h"
#include "kit/kmath.h"
#include "kit/kstring.h"
#include "reader/dom/dom.h"
#include "reader/dom/source_item.h"

namespace zylsdk {

// How much of a source is read. The traditional reading takes the named params only, and texts
// from Name_array or IDREF_array; the complete reading takes every param, and SID_array too.
struct SourceRules {
  bool unnamedParams = false;
  bool sidArrays = false;
  static SourceRules Everything() { return {true, true}; }
};

// Which items of a source's array are read, and which positions inside an item feed the
// components of each value.
struct AccessorLayout {
  int64_t offset = 0;
  int64_t stride = 1;
  KString declaredCount;            // the accessor's count as written ("" when absent)
  int64_t count = 0;                // the items read, once the values are known
  std::vector<int64_t> components;  // positions inside an item, in component order
};

// A source of numbers read where the document holds them: each item is made when it is asked
// for, and the array is never copied out. Item(i) is the item ImportSource gives at i, so a
// reader that picks items by index (a polygon vertex's normal, a skin's weight) needs no copy
// of the source.
class NumberSource {
 public:
  NumberSource() = default;
  NumberSource(const NumberSource&) = delete;
  NumberSource& operator=(const NumberSource&) = delete;

  // False, with no items, for a null source and one without float_array or accessor.
  bool Open(const DaeElement* source, const SourceRules& rules = {});
  int64_t Count() const { return mLayout.count; }
  // The item at `index`, which must be below Count(); T is double, KZylVector2, KZylVector4
  // or KZylColor.
  template <class T>
  T Item(int64_t index) const {
    // Most sources lay each item's components side by side from its start: those items are
    // made here, without a call; the others (params skipped, items cut by the array's end) by
    // ItemOfAnyLayout.
    const size_t components = std::min(mComponentCount, static_cast<size_t>(ComponentsOf<T>()));
    const int64_t start = mLayout.offset + index * mLayout.stride;
    if (components > mLeadingComponents || start + static_cast<int64_t>(components) > ValueCount())
      return ItemOfAnyLayout<T>(index);
    const double* values = mValues->data() + start;
    T item{};
    for (size_t k = 0; k < components; ++k) SetComponent(item, static_cast<int>(k), values[k]);
    return item;
  }

 private:
  template <class T>
  T ItemOfAnyLayout(int64_t index) const;

  int64_t ValueCount() const { return static_cast<int64_t>(mValues->size()); }

  AccessorLayout mLayout;
  size_t mComponentCount = 0;     // the layout's components
  size_t mLeadingComponents = 0;  // how many of them are the item's first values, in order
  std::vector<double> mStorage;   // the values, when the tree kept the array as text
  const std::vector<double>* mValues = &mStorage;
};

// Each fills `out` (emptied first) and returns false for a null source or one without the
// array it needs (`float_array`; `Name_array` or `IDREF_array` for texts) or without an
// accessor.
bool ImportSource(const DaeElement* source, KArrayTemplate<double>& out, const SourceRules& rules = {});
bool ImportSource(const DaeElement* source, KArrayTemplate<KZylVector2>& out, const SourceRules& rules = {});
bool ImportSource(const DaeElement* source, KArrayTemplate<KZylVector4>& out, const SourceRules& rules = {});
bool ImportSource(const DaeElement* source, KArrayTemplate<KZylColor>& out, const SourceRules& rules = {});
// Matrices are converted as COLLADA writes them: value 4r+c goes to the kit's row c, column r.
bool ImportSource(const DaeElement* source, KArrayTemplate<KZylXMatrix>& out, const SourceRules& rules = {});
bool ImportSource(const DaeElement* source, KArrayTemplate<KString>& out, const SourceRules& rules = {});

// Every selected component of every item, item after item: a source of X, Y, Z triples gives
// three values per item, where ImportSource of doubles keeps only the first. Only components
// inside the item (before the stride) count; missing values are 0 (texts "").
bool ImportSourceComponents(const DaeElement* source, KArrayTemplate<double>& out);
bool ImportSourceComponents(const DaeElement* source, KArrayTemplate<KString>& out);

}  // namespace zylsdk
