// The comparison of our complete reading with the peer's, on figures made up here.

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "tools/corpus_table/peer_comparison.h"
#include "tools/corpus_table/peer_exceptions.h"

namespace {

using zyldae::Box;
using zyldae::PeerStats;
using zyldae::SceneStats;

Box UnitCube(double scale = 1) {
  Box box;
  box.Add(0, 0, 0);
  box.Add(scale, scale, scale);
  return box;
}

struct Readings {
  SceneStats ours;
  PeerStats peer;
  Readings() {
    ours.triangles = 12;
    ours.nodes = 3;
    ours.materials = 2;
    ours.worldBox = UnitCube();
    peer.available = peer.read = true;
    peer.triangles = 12;
    peer.nodes = 3;
    peer.materials = 2;
    peer.worldBox = UnitCube();
  }
};

TEST(PeerComparison, EqualReadingsHold) {
  Readings r;
  EXPECT_TRUE(zyldae::ShortfallsAgainstPeer(true, r.ours, r.peer).empty());
}

TEST(PeerComparison, MoreThanThePeerHolds) {
  Readings r;
  r.ours.triangles = 20;
  r.ours.nodes = 4;
  r.ours.materials = 3;
  EXPECT_TRUE(zyldae::ShortfallsAgainstPeer(true, r.ours, r.peer).empty());
}

TEST(PeerComparison, NamesEachShortfall) {
  Readings r;
  r.ours.triangles = 10;
  r.ours.nodes = 2;
  r.ours.materials = 1;
  r.ours.worldBox = UnitCube(2);
  const std::vector<std::string> shortfalls = zyldae::ShortfallsAgainstPeer(false, r.ours, r.peer);
  ASSERT_EQ(shortfalls.size(), 5u);
  EXPECT_EQ(shortfalls[0], "not read");
  EXPECT_EQ(shortfalls[1], "triangles 10 < 12");
  EXPECT_EQ(shortfalls[2], "nodes 2 < 3");
  EXPECT_EQ(shortfalls[3], "materials 1 < 2");
  EXPECT_EQ(shortfalls[4].rfind("world box differs by ", 0), 0u) << shortfalls[4];
}

TEST(PeerComparison, NothingToHoldWhenThePeerDidNotRead) {
  Readings r;
  r.peer.read = false;
  r.ours.triangles = 0;
  EXPECT_TRUE(zyldae::ShortfallsAgainstPeer(false, r.ours, r.peer).empty());
}

TEST(PeerComparison, BoxesAgreeWithinTheTolerance) {
  Box nearly = UnitCube();
  nearly.max[0] += 0.5 * zyldae::kBoxTolerance;
  EXPECT_LE(zyldae::BoxDifference(nearly, UnitCube()), zyldae::kBoxTolerance);
  Box off = UnitCube();
  off.min[2] -= 10 * zyldae::kBoxTolerance;
  EXPECT_GT(zyldae::BoxDifference(off, UnitCube()), zyldae::kBoxTolerance);
}

TEST(PeerComparison, AnEmptyBoxAgreesOnlyWithAnEmptyBox) {
  EXPECT_EQ(zyldae::BoxDifference(Box{}, Box{}), 0);
  EXPECT_EQ(zyldae::BoxDifference(Box{}, UnitCube()), 1);
  EXPECT_EQ(zyldae::BoxDifference(UnitCube(), Box{}), 1);
}

TEST(PeerExceptions, EachDocumentOnceWithAReason) {
  std::set<std::string> seen;
  for (const zyldae::PeerException& exception : zyldae::PeerExceptions()) {
    EXPECT_TRUE(seen.insert(exception.document).second) << exception.document << " listed twice";
    EXPECT_GT(std::string(exception.reason).size(), 10u) << exception.document;
    EXPECT_EQ(zyldae::FindPeerException(exception.document), &exception);
  }
  EXPECT_EQ(zyldae::FindPeerException("no/such.dae"), nullptr);
}

}  // namespace
