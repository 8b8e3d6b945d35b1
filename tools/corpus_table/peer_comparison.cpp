#include "tools/corpus_table/peer_comparison.h"

#include <algorithm>
#include <cmath>

namespace zyldae {

namespace {

double Diagonal(const Box& box) {
  if (box.empty) return 0;
  double sum = 0;
  for (int axis = 0; axis < 3; ++axis) sum += (box.max[axis] - box.min[axis]) * (box.max[axis] - box.min[axis]);
  return std::sqrt(sum);
}

template <class Count>
void CheckAtLeast(const char* what, Count ours, Count peer, std::vector<std::string>& shortfalls) {
  if (ours < peer)
    shortfalls.push_back(std::string(what) + " " + std::to_string(ours) + " < " + std::to_string(peer));
}

}  // namespace

double BoxDifference(const Box& ours, const Box& peer) {
  if (ours.empty || peer.empty) return ours.empty == peer.empty ? 0 : 1;
  double largest = 0;
  for (int axis = 0; axis < 3; ++axis)
    largest = std::max({largest, std::abs(ours.min[axis] - peer.min[axis]), std::abs(ours.max[axis] - peer.max[axis])});
  const double scale = std::max(Diagonal(ours), Diagonal(peer));
  if (scale == 0) return largest == 0 ? 0 : 1;
  return largest / scale;
}

std::vector<std::string> ShortfallsAgainstPeer(bool ourRead, const SceneStats& ours, const PeerStats& peer) {
  std::vector<std::string> shortfalls;
  if (!peer.read) return shortfalls;
  if (!ourRead) shortfalls.push_back("not read");
  CheckAtLeast("triangles", ours.triangles, peer.triangles, shortfalls);
  CheckAtLeast("nodes", ours.nodes, peer.nodes, shortfalls);
  CheckAtLeast("materials", ours.materials, peer.materials, shortfalls);
  // The box of a document whose triangles fall short differs for that reason alone.
  const double difference = BoxDifference(ours.worldBox, peer.worldBox);
  if (!(difference <= kBoxTolerance)) shortfalls.push_back("world box differs by " + std::to_string(difference));
  return shortfalls;
}

}  // namespace zyldae
