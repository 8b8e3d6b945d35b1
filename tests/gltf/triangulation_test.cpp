// Triangulation by ear clipping: convex and concave polygons in any plane, winding kept, area
// covered exactly; degenerate input still ends.

#include <gtest/gtest.h>

#include <cmath>

#include "gltf/triangulation.h"

namespace {

using namespace zylsdk;
using zylgltf::Triangulate;

// Sum of the triangles' areas, and whether each one turns like `normal`.
double Area(const std::vector<KZylVector4>& corners, const std::vector<std::array<int, 3>>& triangles, const KZylVector4& normal,
            bool& sameWinding) {
  double area = 0;
  sameWinding = true;
  for (const auto& t : triangles) {
    const KZylVector4 cross = (corners[t[1]] - corners[t[0]]).CrossProduct(corners[t[2]] - corners[t[0]]);
    area += cross.Length() / 2;
    sameWinding = sameWinding && cross.DotProduct(normal) > 0;
  }
  return area;
}

TEST(Triangulate, ConcaveStarInATiltedPlane) {
  // A five-pointed star (area of 5 kites) turned 40 degrees about X.
  std::vector<KZylVector4> corners;
  const double pi = std::acos(-1.0);
  for (int i = 0; i < 10; ++i) {
    const double radius = i % 2 ? 0.4 : 1.0, angle = pi / 2 + i * pi / 5;
    const double x = radius * std::cos(angle), y = radius * std::sin(angle);
    corners.emplace_back(x, y * std::cos(0.7), y * std::sin(0.7));
  }
  const auto triangles = Triangulate(corners);
  ASSERT_EQ(triangles.size(), 8u);
  bool sameWinding = false;
  // Ten triangles from the centre, each with sides 1 and 0.4 at 36 degrees.
  const double expected = 10 * 0.5 * 1.0 * 0.4 * std::sin(pi / 5);
  EXPECT_NEAR(Area(corners, triangles, KZylVector4(0, -std::sin(0.7), std::cos(0.7)), sameWinding), expected, 1e-12);
  EXPECT_TRUE(sameWinding);
}

TEST(Triangulate, ClockwisePolygonKeepsItsWinding) {
  std::vector<KZylVector4> corners{{0, 0, 0}, {0, 2, 0}, {1, 1, 0}, {2, 2, 0}, {2, 0, 0}};  // concave at (1, 1)
  const auto triangles = Triangulate(corners);
  ASSERT_EQ(triangles.size(), 3u);
  bool sameWinding = false;
  EXPECT_NEAR(Area(corners, triangles, KZylVector4(0, 0, -1), sameWinding), 3.0, 1e-12);
  EXPECT_TRUE(sameWinding);
}

TEST(Triangulate, FewCornersAndDegeneratePolygons) {
  EXPECT_TRUE(Triangulate({{0, 0, 0}, {1, 0, 0}}).empty());
  EXPECT_EQ(Triangulate({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}).size(), 1u);
  // All corners on one point, or on one line: triangles still come, one per corner beyond two.
  EXPECT_EQ(Triangulate(std::vector<KZylVector4>(7, KZylVector4(1, 1, 1))).size(), 5u);
  EXPECT_EQ(Triangulate({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {1.5, 0, 0}}).size(), 3u);
}

TEST(Triangulate, LargePolygonsAreFans) {
  std::vector<KZylVector4> corners;
  for (int i = 0; i < zylgltf::kEarClippingLimit + 10; ++i) corners.emplace_back(std::cos(i * 0.01), std::sin(i * 0.01), 0);
  const auto triangles = Triangulate(corners);
  ASSERT_EQ(triangles.size(), corners.size() - 2);
  EXPECT_EQ(triangles[5], (std::array<int, 3>{0, 6, 7}));
}

}  // namespace
