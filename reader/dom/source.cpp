#include "reader/dom/source.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "reader/dom/dom.h"
#include "reader/dom/numbers.h"
#include "reader/dom/source_item.h"

namespace zylsdk {
namespace {

// Strides up to this read their values straight into the items (see ImportNumbers).
constexpr int64_t kStreamedStride = 64;

int64_t ReadInteger(const KString& text, int64_t fallback) {
  if (text.IsEmpty()) return fallback;
  const char* cursor = text.Buffer();
  return strtoint(&cursor);
}

int ParamWidth(const KString& type) {
  if (type == "float4x4") return 16;
  if (type == "float3x3") return 9;
  return 1;
}

// The number of items to read from `valueCount` values: items are read while they start inside
// the array; without a declared count, only whole items.
void CountItems(int64_t valueCount, AccessorLayout& layout) {
  int64_t available = valueCount > layout.offset ? valueCount - layout.offset : 0;
  int64_t starting = (available + layout.stride - 1) / layout.stride;
  int64_t whole = available / layout.stride;
  layout.count = layout.declaredCount.IsEmpty() ? whole
                                                : std::clamp<int64_t>(ReadInteger(layout.declaredCount, 0), 0, starting);
}

bool ReadLayout(const DaeElement* source, AccessorLayout& layout, const SourceRules& rules) {
  DaeElement* accessor = findChildByType(getTechniqueCommonNode(source), "accessor");
  if (!accessor) return false;
  layout.offset = std::max<int64_t>(0, ReadInteger(DAE_GetProperty(accessor, "offset"), 0));
  layout.stride = std::max<int64_t>(1, ReadInteger(DAE_GetProperty(accessor, "stride"), 1));
  layout.declaredCount = DAE_GetProperty(accessor, "count");

  int64_t position = 0;
  KArrayTemplate<DaeElement*> params;
  findChildrenByType(accessor, "param", params);
  for (DaeElement* param : params) {
    int width = ParamWidth(DAE_GetProperty(param, "type"));
    if (rules.unnamedParams || !DAE_GetProperty(param, "name").IsEmpty())
      for (int k = 0; k < width; ++k) layout.components.push_back(position + k);
    position += width;
  }
  return true;
}

// The item at `index`: its components from the values inside the array, the others left as a
// default item has them.
template <class T, class Value>
T ItemAt(const AccessorLayout& layout, const std::vector<Value>& values, int64_t index) {
  const int64_t size = static_cast<int64_t>(values.size());
  const size_t components = std::min<size_t>(layout.components.size(), ComponentsOf<T>());
  T item{};
  const int64_t base = layout.offset + index * layout.stride;
  for (size_t k = 0; k < components; ++k) {
    const int64_t at = base + layout.components[k];
    if (at < size) SetComponent(item, static_cast<int>(k), values[static_cast<size_t>(at)]);
  }
  return item;
}

template <class T, class Value>
void ReadItems(const AccessorLayout& layout, const std::vector<Value>& values, KArrayTemplate<T>& out) {
  out.ReserveToFill(static_cast<int>(layout.count));
  for (int64_t i = 0; i < layout.count; ++i) out.Add(ItemAt<T>(layout, values, i));
}

// The components of every item, one after another. Components at or past the stride are left
// out, so that the result never outgrows the array by more than one item.
template <class Value>
void ReadComponents(const AccessorLayout& layout, const std::vector<Value>& values, KArrayTemplate<Value>& out) {
  const int64_t size = static_cast<int64_t>(values.size());
  std::vector<int64_t> inside;
  for (int64_t position : layout.components)
    if (position < layout.stride) inside.push_back(position);
  std::vector<Value>& components = out.Std();
  ReserveToFill(components, components.size() + static_cast<size_t>(layout.count) * inside.size());
  for (int64_t i = 0; i < layout.count; ++i) {
    const int64_t base = layout.offset + i * layout.stride;
    for (int64_t position : inside) {
      const int64_t at = base + position;
      components.push_back(at < size ? values[static_cast<size_t>(at)] : Value());
    }
  }
}

// The numbers of the source's float_array and its accessor's layout; false without either.
bool ReadNumberSource(const DaeElement* source, std::vector<double>& values, AccessorLayout& layout,
                      const SourceRules& rules = {}) {
  DaeElement* array = findChildByType(source, "float_array");
  if (!array || !ReadLayout(source, layout, rules)) return false;
  values = DAE_GetDoubles(array, values);
  CountItems(static_cast<int64_t>(values.size()), layout);
  return true;
}

// Whether the values can go straight into the items as they are read: a small stride, and no
// component taken from beyond its item.
template <class T>
bool CanStream(const AccessorLayout& layout) {
  if (layout.stride > kStreamedStride) return false;
  const size_t used = std::min<size_t>(layout.components.size(), ComponentsOf<T>());
  for (size_t k = 0; k < used; ++k)
    if (layout.components[k] >= layout.stride) return false;
  return true;
}

// Reads the array's numbers straight into the items, in one pass and without a copy of the
// values: the same items as ReadItems gives for such a layout.
template <class T>
void StreamItems(const DaeElement* array, AccessorLayout& layout, KArrayTemplate<T>& out) {
  std::vector<int> componentAt(static_cast<size_t>(layout.stride), -1);
  const size_t used = std::min<size_t>(layout.components.size(), ComponentsOf<T>());
  for (size_t k = 0; k < used; ++k) componentAt[static_cast<size_t>(layout.components[k])] = static_cast<int>(k);

  std::vector<double> storage;
  const std::vector<double>& values = DAE_GetDoubles(array, storage);
  std::vector<T>& items = out.Std();
  ReserveToFill(items, values.size() / static_cast<size_t>(layout.stride) + 1);
  int64_t index = 0;
  int64_t position = 0;
  for (double value : values) {
    if (index++ < layout.offset) continue;
    if (position == 0) items.emplace_back();
    if (int component = componentAt[static_cast<size_t>(position)]; component >= 0)
      SetComponent(items.back(), component, value);
    if (++position == layout.stride) position = 0;
  }
  CountItems(index, layout);
  items.resize(static_cast<size_t>(layout.count));
}

template <class T>
bool ImportNumbers(const DaeElement* source, KArrayTemplate<T>& out, const SourceRules& rules) {
  out.Clear();
  DaeElement* array = findChildByType(source, "float_array");
  AccessorLayout layout;
  if (!array || !ReadLayout(source, layout, rules)) return false;
  if (CanStream<T>(layout)) {
    StreamItems(array, layout, out);
    return true;
  }
  std::vector<double> storage;
  const std::vector<double>& values = DAE_GetDoubles(array, storage);
  CountItems(static_cast<int64_t>(values.size()), layout);
  ReadItems(layout, values, out);
  return true;
}

// The words of the source's Name_array (or IDREF_array) and its accessor's layout; false
// without either.
bool ReadNameSource(const DaeElement* source, std::vector<KString>& words, AccessorLayout& layout,
                    const SourceRules& rules = {}) {
  DaeElement* array = findChildByType(source, "Name_array");
  if (!array) array = findChildByType(source, "IDREF_array");
  if (!array && rules.sidArrays) array = findChildByType(source, "SID_array");
  if (!array) return false;
  if (!ReadLayout(source, layout, rules)) return false;
  words = DAE_GetWords(array, words);
  CountItems(static_cast<int64_t>(words.size()), layout);
  return true;
}

}  // namespace

bool NumberSource::Open(const DaeElement* source, const SourceRules& rules) {
  mLayout = AccessorLayout();
  mStorage.clear();
  mValues = &mStorage;
  mComponentCount = mLeadingComponents = 0;
  DaeElement* array = findChildByType(source, "float_array");
  if (!array || !ReadLayout(source, mLayout, rules)) {
    mLayout = AccessorLayout();
    return false;
  }
  mValues = &DAE_GetDoubles(array, mStorage);
  CountItems(static_cast<int64_t>(mValues->size()), mLayout);
  mComponentCount = mLayout.components.size();
  while (mLeadingComponents < mComponentCount &&
         mLayout.components[mLeadingComponents] == static_cast<int64_t>(mLeadingComponents))
    ++mLeadingComponents;
  return true;
}

template <class T>
T NumberSource::ItemOfAnyLayout(int64_t index) const {
  return ItemAt<T>(mLayout, *mValues, index);
}

template double NumberSource::ItemOfAnyLayout<double>(int64_t) const;
template KZylVector2 NumberSource::ItemOfAnyLayout<KZylVector2>(int64_t) const;
template KZylVector4 NumberSource::ItemOfAnyLayout<KZylVector4>(int64_t) const;
template KZylColor NumberSource::ItemOfAnyLayout<KZylColor>(int64_t) const;

bool ImportSource(const DaeElement* source, KArrayTemplate<double>& out, const SourceRules& rules) {
  return ImportNumbers(source, out, rules);
}
bool ImportSource(const DaeElement* source, KArrayTemplate<KZylVector2>& out, const SourceRules& rules) {
  return ImportNumbers(source, out, rules);
}
bool ImportSource(const DaeElement* source, KArrayTemplate<KZylVector4>& out, const SourceRules& rules) {
  return ImportNumbers(source, out, rules);
}
bool ImportSource(const DaeElement* source, KArrayTemplate<KZylColor>& out, const SourceRules& rules) {
  return ImportNumbers(source, out, rules);
}
bool ImportSource(const DaeElement* source, KArrayTemplate<KZylXMatrix>& out, const SourceRules& rules) {
  return ImportNumbers(source, out, rules);
}

bool ImportSource(const DaeElement* source, KArrayTemplate<KString>& out, const SourceRules& rules) {
  out.Clear();
  std::vector<KString> words;
  AccessorLayout layout;
  if (!ReadNameSource(source, words, layout, rules)) return false;
  ReadItems(layout, words, out);
  return true;
}

bool ImportSourceComponents(const DaeElement* source, KArrayTemplate<double>& out) {
  out.Clear();
  std::vector<double> values;
  AccessorLayout layout;
  if (!ReadNumberSource(source, values, layout)) return false;
  // One component per value, all of them in order (a plain list of times or values): the
  // values are the components and are handed over without a copy.
  const bool everyValue = layout.offset == 0 && layout.stride == 1 && layout.components.size() == 1 &&
                          layout.components[0] == 0 && layout.count == static_cast<int64_t>(values.size());
  if (everyValue) {
    out.Std().swap(values);
    return true;
  }
  ReadComponents(layout, values, out);
  return true;
}

bool ImportSourceComponents(const DaeElement* source, KArrayTemplate<KString>& out) {
  out.Clear();
  std::vector<KString> words;
  AccessorLayout layout;
  if (!ReadNameSource(source, words, layout)) return false;
  ReadComponents(layout, words, out);
  return true;
}

}  // namespace zylsdk
