#include "reader/geometry/primitive_lists.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "reader/dom/dom.h"
#include "reader/dom/numbers.h"

namespace zylsdk {

PrimitiveLists::PrimitiveLists(const DaeElement* element, int64_t stride) : mStride(std::max<int64_t>(1, stride)) {
  for (DaeElement* p = firstChildElement(element); p; p = nextSiblingElement(p)) {
    if (!DAE_IsElement(p, "p")) continue;
    const ElementText text(p);
    mLists.emplace_back();
    // An integer takes at least two characters with its separator: room for all of them at
    // once, so that a long list is never moved while it grows (untouched room costs nothing).
    mLists.back().Reserve(static_cast<int>(std::min<size_t>(std::strlen(text.c_str()) / 2 + 1, INT_MAX)));
    strtoints(text.c_str(), mLists.back());
    mTotalVertexCount += GetVertexCount(GetListCount() - 1);
  }
}

int64_t PrimitiveLists::GetVertexCount(int list) const {
  const int64_t length = mLists[static_cast<size_t>(list)].GetCount();
  return (length + mStride - 1) / mStride;
}

}  // namespace zylsdk
