#pragma once
// Indices that point outside their arrays: a document's `p` may name points its sources do not
// have. The traditional reading keeps such indices as the document gives them (consumers check
// them); the complete reading hands over none of them.

#include "kit/geometry.h"

namespace zylsdk {

// Sets every polygon vertex outside the control points, and every layer-element index outside
// its element's direct array, to -1; returns how many it set.
int ClearIndicesOutsideArrays(KZylMesh& mesh);

}  // namespace zylsdk
