#pragma once
// The same document read by a second, independent COLLADA reader (Assimp), measured the way
// SceneStats measures our own reading, so that the two can be set side by side. The program is
// built with or without Assimp (CMake option ZYL_WITH_ASSIMP); without it, nothing is read and
// `available` says so.

#include <string>

#include "tools/zyldae/scene_stats.h"

namespace zyldae {

struct PeerStats {
  bool available = false;  // built with the peer
  bool read = false;       // the peer returned a scene
  std::string error;       // the peer's message when it did not
  long long triangles = 0; // per node instance; a face of n indices counts n - 2
  int nodes = 0;           // below the root
  int materials = 0;       // those the node meshes use, without the placeholder "DefaultMaterial"
  int textures = 0;        // distinct texture paths those materials name
  int skins = 0;           // meshes with bones (the peer splits a mesh per material)
  int animatedNodes = 0;   // nodes named by an animation channel
  int tracks = 0;          // position, rotation and scaling key lists holding a key
  // Every vertex of every node's meshes through the node transforms, in the document's own
  // frame: the root transform, where the peer puts its unit and up-axis conversion, is left out.
  Box worldBox;
};

// A one-line name of the peer and its version, or why there is none.
std::string PeerName();
PeerStats ReadWithPeer(const std::string& path);

}  // namespace zyldae
