#pragma once
// The world-space bounding box of a scene's meshes, in their default pose.

#include "kit/zylsdk.h"

namespace zyldae {

struct Bounds {
  bool empty = true;  // no mesh holds a finite control point
  double min[3] = {0, 0, 0};
  double max[3] = {0, 0, 0};
};

// Every finite control point of every mesh of a node, through the node's global matrix of the
// default take. Non-finite points are left out.
Bounds ComputeBounds(const zylsdk::KZylScene& scene);

}  // namespace zyldae
