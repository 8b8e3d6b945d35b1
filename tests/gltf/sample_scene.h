#pragma once
// A kit scene made in code that uses every feature the glTF conversion handles: a Z-up
// centimetre scene, nodes with pivots, offsets, pre- and post-rotation and a rotation order,
// a mesh with a concave polygon, a polygon with a corner outside its control points, two
// materials, normals, two UV sets in other mapping and reference modes, vertex colours, a morph
// shape, a skin with a vertex of six joints, a camera, a light and animation curves of every
// interpolation. With a texture file, the first polygon also gets that diffuse texture.

#include <string>

#include "kit/zylsdk.h"

namespace zyltest {

struct SampleScene {
  zylsdk::KZylScene* scene = nullptr;
  zylsdk::KZylNode* pivoted = nullptr;   // pivots, offsets, pre/post-rotation, order ZXY, animated
  zylsdk::KZylNode* meshNode = nullptr;  // the skinned mesh
  zylsdk::KZylMesh* mesh = nullptr;
  zylsdk::KZylNode* firstJoint = nullptr;  // a chain of six joints; translation keyed cubic
};

// Made with `manager`, which owns everything.
SampleScene MakeSampleScene(zylsdk::KZylSdkManager& manager, const std::string& textureFile = "");

// Writes a PNG image of one pixel.
void WriteSamplePng(const std::string& path);

}  // namespace zyltest
