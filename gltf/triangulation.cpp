#include "gltf/triangulation.h"

#include <cmath>

namespace zylgltf {

using namespace zylsdk;

namespace {

struct Point2 {
  double x;
  double y;
};

double Cross(const Point2& a, const Point2& b, const Point2& c) { return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x); }

// The corners projected on the plane that drops the largest component of the polygon's
// (Newell) normal, turned so that the polygon winds counter-clockwise there.
std::vector<Point2> Projected(const std::vector<KZylVector4>& corners) {
  KZylVector4 normal;
  const size_t count = corners.size();
  for (size_t i = 0; i < count; ++i) {
    const KZylVector4& a = corners[i];
    const KZylVector4& b = corners[(i + 1) % count];
    normal[0] += (a[1] - b[1]) * (a[2] + b[2]);
    normal[1] += (a[2] - b[2]) * (a[0] + b[0]);
    normal[2] += (a[0] - b[0]) * (a[1] + b[1]);
  }
  int drop = 2;
  if (std::fabs(normal[0]) >= std::fabs(normal[1]) && std::fabs(normal[0]) >= std::fabs(normal[2])) drop = 0;
  else if (std::fabs(normal[1]) >= std::fabs(normal[2])) drop = 1;
  const int u = (drop + 1) % 3;
  const int v = (drop + 2) % 3;
  const bool flip = normal[drop] < 0.0;
  std::vector<Point2> points;
  points.reserve(count);
  for (const KZylVector4& corner : corners) points.push_back({corner[u], flip ? -corner[v] : corner[v]});
  return points;
}

bool Inside(const Point2& p, const Point2& a, const Point2& b, const Point2& c) {
  return Cross(a, b, p) >= 0.0 && Cross(b, c, p) >= 0.0 && Cross(c, a, p) >= 0.0;
}

bool IsConvex(const std::vector<Point2>& points) {
  const size_t count = points.size();
  for (size_t i = 0; i < count; ++i)
    if (Cross(points[i], points[(i + 1) % count], points[(i + 2) % count]) < 0.0) return false;
  return true;
}

std::vector<std::array<int, 3>> Fan(int count) {
  std::vector<std::array<int, 3>> triangles;
  for (int i = 1; i + 1 < count; ++i) triangles.push_back({0, i, i + 1});
  return triangles;
}

// A corner is an ear when it turns left and no other remaining corner lies in its triangle.
bool IsEar(const std::vector<Point2>& points, const std::vector<int>& ring, size_t at) {
  const size_t count = ring.size();
  const Point2& a = points[static_cast<size_t>(ring[(at + count - 1) % count])];
  const Point2& b = points[static_cast<size_t>(ring[at])];
  const Point2& c = points[static_cast<size_t>(ring[(at + 1) % count])];
  if (Cross(a, b, c) <= 0.0) return false;
  for (size_t i = 0; i < count; ++i) {
    if (i == at || i == (at + 1) % count || i == (at + count - 1) % count) continue;
    if (Inside(points[static_cast<size_t>(ring[i])], a, b, c)) return false;
  }
  return true;
}

std::vector<std::array<int, 3>> ClipEars(const std::vector<Point2>& points) {
  std::vector<int> ring;
  for (size_t i = 0; i < points.size(); ++i) ring.push_back(static_cast<int>(i));
  std::vector<std::array<int, 3>> triangles;
  size_t at = 0;
  size_t misses = 0;
  while (ring.size() > 3) {
    const size_t count = ring.size();
    at %= count;
    // After a whole turn without an ear (a degenerate or self-crossing polygon) the corner is
    // cut anyway, so that the loop always ends.
    if (IsEar(points, ring, at) || misses >= count) {
      triangles.push_back({ring[(at + count - 1) % count], ring[at], ring[(at + 1) % count]});
      ring.erase(ring.begin() + static_cast<std::ptrdiff_t>(at));
      misses = 0;
    } else {
      ++at;
      ++misses;
    }
  }
  triangles.push_back({ring[0], ring[1], ring[2]});
  return triangles;
}

}  // namespace

std::vector<std::array<int, 3>> Triangulate(const std::vector<KZylVector4>& corners) {
  const int count = static_cast<int>(corners.size());
  if (count < 3) return {};
  if (count == 3) return {{0, 1, 2}};
  const std::vector<Point2> points = Projected(corners);
  if (count > kEarClippingLimit || IsConvex(points)) return Fan(count);
  return ClipEars(points);
}

}  // namespace zylgltf
