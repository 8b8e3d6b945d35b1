#include "reader/geometry/primitive_lists.h"

#include <algorithm>

#include "reader/dom/dom.h"

namespace zylsdk {
namespace {

// The list element of a child of a primitive: a `p`, or with `readHoledPolygons` the outer
// `p` of a `ph`; null for other children.
const DaeElement* ListOf(const DaeElement* child, bool readHoledPolygons) {
  if (DAE_IsElement(child, "p")) return child;
  if (readHoledPolygons && DAE_IsElement(child, "ph")) return findChildByType(child, "p");
  return nullptr;
}

}  // namespace

bool PrimitiveKindOf(const DaeElement* element, PrimitiveKind& kind) {
  static const struct {
    const char* name;
    PrimitiveKind kind;
  } kKinds[] = {{"polygons", PrimitiveKind::kPolygons},   {"triangles", PrimitiveKind::kTriangles},
                {"polylist", PrimitiveKind::kPolylist},   {"tristrips", PrimitiveKind::kTristrips},
                {"trifans", PrimitiveKind::kTrifans}};
  for (const auto& row : kKinds) {
    if (!DAE_IsElement(element, row.name)) continue;
    kind = row.kind;
    return true;
  }
  return false;
}

PrimitiveLists::PrimitiveLists(const DaeElement* element, int64_t stride, PrimitiveKind kind, int vertexOffset,
                               bool readHoledPolygons)
    : mStride(std::max<int64_t>(1, stride)) {
  for (const DaeElement* child = firstChildElement(element); child; child = nextSiblingElement(child)) {
    const DaeElement* list = ListOf(child, readHoledPolygons);
    if (!list) continue;
    // A polylist's sizes run over all its lists as one.
    AddList(list, kind == PrimitiveKind::kPolylist && !mLists.empty());
  }
  switch (kind) {
    case PrimitiveKind::kPolygons:
      break;
    case PrimitiveKind::kTriangles:
      mPolygonSize = 3;
      break;
    case PrimitiveKind::kPolylist:
      ReadPolygonSizes(element);
      break;
    case PrimitiveKind::kTristrips:
    case PrimitiveKind::kTrifans:
      UnrollStripsAndFans(kind, vertexOffset);
      mPolygonSize = 3;
      break;
  }
  ForEachPolygon([this](const Polygon& polygon) {
    ++mPolygonCount;
    mTotalVertexCount += polygon.count;
  });
}

void PrimitiveLists::AddList(const DaeElement* list, bool joinLast) {
  std::vector<int> storage;
  const std::vector<int>& values = DAE_GetInts(list, storage);
  if (!joinLast) {
    // The document's own values are used where they are; a list read from text is kept here.
    const std::vector<int>& kept = &values == &storage ? mOwned.emplace_back(std::move(storage)) : values;
    mLists.push_back({kept.data(), static_cast<int64_t>(kept.size())});
    return;
  }
  // Joined to the last list, which becomes one of our own (it is the newest of mOwned when it
  // already is one) and takes these values after its own.
  IntList& last = mLists.back();
  const bool lastIsOwned = last.data && !mOwned.empty() && last.data == mOwned.back().data();
  std::vector<int>& owned = lastIsOwned ? mOwned.back() : mOwned.emplace_back(last.data, last.data + last.size);
  owned.insert(owned.end(), values.begin(), values.end());
  last = {owned.data(), static_cast<int64_t>(owned.size())};
}

int64_t PrimitiveLists::VertexCountOf(int list) const {
  const int64_t length = mLists[static_cast<size_t>(list)].size;
  return (length + mStride - 1) / mStride;
}

void PrimitiveLists::ReadPolygonSizes(const DaeElement* element) {
  mCounted = true;
  std::vector<int> storage;
  const DaeElement* vcount = findChildByType(element, "vcount");
  const std::vector<int>& counts = vcount ? DAE_GetInts(vcount, storage) : storage;
  int64_t remaining = mLists.empty() ? 0 : VertexCountOf(0);
  mPolygonSizes.reserve(counts.size());
  // A size below 1 makes no polygon; the last polygon takes the vertices that are left.
  for (const int count : counts) {
    if (remaining == 0) break;
    if (count <= 0) continue;
    const int64_t size = std::min<int64_t>(count, remaining);
    mPolygonSizes.push_back(static_cast<int>(size));
    remaining -= size;
  }
}

void PrimitiveLists::UnrollStripsAndFans(PrimitiveKind kind, int vertexOffset) {
  std::vector<std::vector<int>> triangles;
  triangles.reserve(mLists.size());
  for (size_t list = 0; list < mLists.size(); ++list) {
    const IntList values = mLists[list];
    auto valueAt = [&](int64_t vertex, int64_t offset) {
      const int64_t at = vertex * mStride + offset;
      return offset >= 0 && at < values.size ? values.data[at] : -1;
    };
    std::vector<int>& out = triangles.emplace_back();
    const int64_t vertices = VertexCountOf(static_cast<int>(list));
    for (int64_t i = 0; i + 2 < vertices; ++i) {
      // Strips alternate their winding so that every triangle faces the same way.
      int64_t corners[3] = {i, i + 1, i + 2};
      if (kind == PrimitiveKind::kTrifans) corners[0] = 0;
      else if (i % 2 == 1) std::swap(corners[0], corners[1]);
      const int a = valueAt(corners[0], vertexOffset), b = valueAt(corners[1], vertexOffset),
                c = valueAt(corners[2], vertexOffset);
      if (a == b || b == c || a == c) continue;
      for (const int64_t corner : corners)
        for (int64_t k = 0; k < mStride; ++k) out.push_back(valueAt(corner, k));
    }
  }
  for (size_t list = 0; list < mLists.size(); ++list)
    mLists[list] = {triangles[list].data(), static_cast<int64_t>(triangles[list].size())};
  mOwned.swap(triangles);
}

}  // namespace zylsdk
