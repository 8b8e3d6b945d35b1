#pragma once
// Triangulation of one polygon, convex or not, by ear clipping in the polygon's own plane.

#include <array>
#include <vector>

#include "kit/kmath.h"

namespace zylgltf {

// Polygons with more corners than this are cut as a fan: ear clipping a degenerate polygon
// takes time that grows with the cube of its corner count, and a document may hold many.
constexpr int kEarClippingLimit = 64;

// Triangles, as positions in `corners`, that cover the polygon with the same winding. A
// polygon of fewer than three corners gives none.
std::vector<std::array<int, 3>> Triangulate(const std::vector<zylsdk::KZylVector4>& corners);

}  // namespace zylgltf
