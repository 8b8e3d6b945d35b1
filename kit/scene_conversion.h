#pragma once
// Conversions of a whole scene to another axis system or length unit, for applications that
// hand the scene to a format or an engine with conventions of its own.

#include "kit/scene.h"

namespace zylsdk {

// The change of axes from `from` to `to`, as a rotation matrix (row vectors: p_to = p_from * M).
// Each axis system names an up axis, a front axis and a handedness; the matrix carries the
// up, front and side axes of `from` onto those of `to`. False (and the identity) when the two
// differ in handedness, which no rotation can bridge.
bool AxisConversionMatrix(const KZylAxisSystem& from, const KZylAxisSystem& to, KZylXMatrix& matrix);

// Turns the scene into `target`'s axis system: the root node's default rotation and
// translation take the change of axes, so every node's global matrix becomes its former global
// matrix times the conversion matrix, while local transforms, meshes and animation curves stay
// as they are. Exact for a root node without pivots, offsets or non-uniform scaling (the
// reader never gives it any). False, changing nothing, when the handedness differs.
bool ConvertAxisSystem(KZylScene& scene, const KZylAxisSystem& target);

// Turns every length of the scene into `target` units: node translations, pivots and offsets,
// translation curves, control points of meshes and shapes, the translations of cluster and
// pose matrices, and camera positions and clipping planes. Angles, scalings, normals and
// weights stay. The scene's system unit becomes `target`. A unit of zero or non-finite size
// changes nothing (false).
bool ConvertUnit(KZylScene& scene, const KZylSystemUnit& target);

}  // namespace zylsdk
