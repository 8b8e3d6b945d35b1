#pragma once
// Counts of what a scene holds, and where its geometry lies, for summaries and the corpus table.

#include <array>

#include "kit/zylsdk.h"

namespace zyldae {

// An axis-aligned box; empty until a point is added.
struct Box {
  bool empty = true;
  std::array<double, 3> min{};
  std::array<double, 3> max{};

  void Add(double x, double y, double z);
  void Add(const Box& other);
};

struct SceneStats {
  int nodes = 0;      // below the root
  int meshes = 0;
  int polygons = 0;
  long long triangles = 0;  // a polygon of n vertices counts n - 2
  int materials = 0;  // connected to the scene
  int textures = 0;   // those the meshes' layers use: the reader binds textures there, not to the scene
  int skins = 0;
  int clusters = 0;
  int shapes = 0;
  int animatedNodes = 0;  // nodes with at least one curve holding a key
  int curves = 0;     // curves holding at least one key
  int keys = 0;
  // Every control point that a polygon uses, through its node's global matrix.
  Box worldBox;
};

SceneStats ComputeStats(const zylsdk::KZylScene& scene);

}  // namespace zyldae
