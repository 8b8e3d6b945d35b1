#pragma once
// The `p` lists of one `polygons` or `triangles` element, parsed once, and the walk over their
// vertices. A vertex is a run of `stride` integers; each input reads its value at its offset
// inside the run. Reads never leave a list: a position past its end, or a negative offset,
// gives -1.

#include <cstdint>
#include <vector>

#include "kit/karray.h"
#include "reader/dom/dom.h"

namespace zylsdk {

class PrimitiveLists {
 public:
  // Parses every `p` child of `element`, in document order.
  PrimitiveLists(const DaeElement* element, int64_t stride);

  int GetListCount() const { return static_cast<int>(mLists.size()); }
  // Vertices of list `list`: positions 0, stride, 2 * stride... below its length. A length
  // that is not a multiple of the stride still starts a vertex at its last position.
  int64_t GetVertexCount(int list) const;
  int64_t GetTotalVertexCount() const { return mTotalVertexCount; }

  // Calls visit(value) for each vertex of list `list`, in order.
  template <class Visit>
  void ForEachValue(int list, int offset, Visit&& visit) const {
    const KArrayTemplate<int>& values = mLists[static_cast<size_t>(list)];
    const int64_t length = values.GetCount();
    const int* data = values.GetArray();
    for (int64_t position = 0; position < length; position += mStride) {
      const int64_t at = position + offset;
      visit(offset >= 0 && at < length ? data[at] : -1);
    }
  }
  // The same over all lists, one after the other.
  template <class Visit>
  void ForEachValue(int offset, Visit&& visit) const {
    for (int list = 0; list < GetListCount(); ++list) ForEachValue(list, offset, visit);
  }

 private:
  std::vector<KArrayTemplate<int>> mLists;
  int64_t mStride;
  int64_t mTotalVertexCount = 0;
};

// Makes room for `extra` more items, growing geometrically so that many small appends stay
// linear.
template <class T>
void ReserveMore(KArrayTemplate<T>& array, int64_t extra) {
  std::vector<T>& items = array.Std();
  const size_t needed = items.size() + static_cast<size_t>(extra > 0 ? extra : 0);
  if (needed > items.capacity()) items.reserve(needed > 2 * items.capacity() ? needed : 2 * items.capacity());
}

}  // namespace zylsdk
