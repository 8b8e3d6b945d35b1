#pragma once
// Kit transforms as glTF sees them: a node's local matrix, whatever its pivots, offsets and
// pre- and post-rotation, is always scaling, then one rotation, then one translation, so it
// is written as glTF's translation, rotation (a quaternion) and scale.

#include <array>

#include "kit/node.h"

namespace zylgltf {

struct NodeTrs {
  std::array<double, 3> translation{};
  std::array<double, 4> rotation{0.0, 0.0, 0.0, 1.0};  // x, y, z, w
  std::array<double, 3> scale{1.0, 1.0, 1.0};
};

// The unit quaternion (x, y, z, w) of a rotation matrix in the kit's row-vector convention.
std::array<double, 4> QuaternionOf(const zylsdk::KZylMatrix& rotation);

// The local transform of `node` with the given translation, rotation and scaling in place of
// its defaults (for sampling animation).
NodeTrs LocalTrs(const zylsdk::KZylNode& node, const zylsdk::KZylVector4& translation,
                 const zylsdk::KZylVector4& rotation, const zylsdk::KZylVector4& scaling);
// The local transform of the node's default state.
NodeTrs LocalTrs(const zylsdk::KZylNode& node);
// True when the node's translation in glTF is its default translation whatever its rotation
// and scaling: no pivots and no offsets.
bool HasPlainTranslation(const zylsdk::KZylNode& node);

}  // namespace zylgltf
