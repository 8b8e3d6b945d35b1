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
    std::vector<int> storage;
    mLists.emplace_back();
    mLists.back().Std() = DAE_GetInts(p, storage);
    mTotalVertexCount += GetVertexCount(GetListCount() - 1);
  }
}

int64_t PrimitiveLists::GetVertexCount(int list) const {
  const int64_t length = mLists[static_cast<size_t>(list)].GetCount();
  return (length + mStride - 1) / mStride;
}

}  // namespace zylsdk
