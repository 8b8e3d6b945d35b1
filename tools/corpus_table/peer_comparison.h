#pragma once
// What our complete reading must hold against the peer's reading of the same document: where the
// peer reads it, at least as many triangles, nodes and materials, and the same world-space box.

#include <string>
#include <vector>

#include "tools/corpus_table/peer_reading.h"

namespace zyldae {

// How far two world boxes may differ, as a fraction of the larger box diagonal. The peer keeps
// vertices and matrices in 32-bit floats (about 6e-8 relative per value, a few roundings per
// level of a node hierarchy), we keep doubles; 1e-5 leaves room for that rounding while a missing
// part or a wrong transform moves a box side by far more.
constexpr double kBoxTolerance = 1e-5;

// The largest difference between the two boxes' corners over the larger diagonal; 0 when both
// are empty, 1 when only one is.
double BoxDifference(const Box& ours, const Box& peer);

// Each way in which our reading falls short of the peer's, in words; empty when it holds or the
// peer did not read the document.
std::vector<std::string> ShortfallsAgainstPeer(bool ourRead, const SceneStats& ours, const PeerStats& peer);

}  // namespace zyldae
