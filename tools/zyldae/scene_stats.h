#pragma once
// Counts of what a scene holds, for summaries and the corpus table.

#include "kit/zylsdk.h"

namespace zyldae {

struct SceneStats {
  int nodes = 0;      // below the root
  int meshes = 0;
  int polygons = 0;
  int triangles = 0;  // of the polygons cut into triangles
  int materials = 0;  // connected to the scene
  int textures = 0;   // connected to the scene
  int skins = 0;
  int clusters = 0;
  int shapes = 0;
  int curves = 0;     // curves holding at least one key
  int keys = 0;
};

SceneStats ComputeStats(const zylsdk::KZylScene& scene);

}  // namespace zyldae
