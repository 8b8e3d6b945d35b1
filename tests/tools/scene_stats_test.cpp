// Triangle counts and world boxes of SceneStats, on a small document of our own.

#include <gtest/gtest.h>

#include <array>

#include "tests/support/documents.h"
#include "tools/zyldae/scene_stats.h"

namespace {

// A quad and a triangle over six points, the last used by no polygon; instanced by a translated
// node and by a scaled child of a translated node.
const char* const kTwoInstances = R"(
  <library_geometries>
    <geometry id="shape">
      <mesh>
        <source id="points">
          <float_array id="points-array" count="18">0 0 0  1 0 0  1 1 0  0 1 0  0 0 1  100 100 100</float_array>
          <technique_common>
            <accessor source="#points-array" count="6" stride="3">
              <param name="X" type="float"/><param name="Y" type="float"/><param name="Z" type="float"/>
            </accessor>
          </technique_common>
        </source>
        <vertices id="vertices"><input semantic="POSITION" source="#points"/></vertices>
        <polygons count="2">
          <input semantic="VERTEX" source="#vertices" offset="0"/>
          <p>0 1 2 3</p>
          <p>0 1 4</p>
        </polygons>
      </mesh>
    </geometry>
  </library_geometries>
  <library_visual_scenes>
    <visual_scene id="scene">
      <node id="moved" name="moved">
        <translate>10 0 0</translate>
        <instance_geometry url="#shape"/>
      </node>
      <node id="raised" name="raised">
        <translate>0 0 5</translate>
        <node id="doubled" name="doubled">
          <scale>2 2 2</scale>
          <instance_geometry url="#shape"/>
        </node>
      </node>
    </visual_scene>
  </library_visual_scenes>
  <scene><instance_visual_scene url="#scene"/></scene>
)";

TEST(SceneStats, CountsPolygonsAsTrianglesPerInstance) {
  zyldae::ReadResult read = zyltest::ReadText(zyltest::Collada(kTwoInstances));
  ASSERT_TRUE(read.ok);
  const zyldae::SceneStats stats = zyldae::ComputeStats(*read.scene);
  EXPECT_EQ(stats.polygons, 4);
  EXPECT_EQ(stats.triangles, 6);  // (4 - 2) + (3 - 2), twice
}

TEST(SceneStats, BoxesTheUsedPointsThroughGlobalMatrices) {
  zyldae::ReadResult read = zyltest::ReadText(zyltest::Collada(kTwoInstances));
  ASSERT_TRUE(read.ok);
  const zyldae::Box box = zyldae::ComputeStats(*read.scene).worldBox;
  ASSERT_FALSE(box.empty);
  // "moved" spans x 10..11; "doubled" spans 0..2 in x and y and z 5..7; point 5 is never used.
  const std::array<double, 3> min{0, 0, 0};
  const std::array<double, 3> max{11, 2, 7};
  for (int axis = 0; axis < 3; ++axis) {
    EXPECT_DOUBLE_EQ(box.min[axis], min[axis]) << "axis " << axis;
    EXPECT_DOUBLE_EQ(box.max[axis], max[axis]) << "axis " << axis;
  }
}

TEST(SceneStats, SceneWithoutPolygonsHasAnEmptyBox) {
  zyldae::ReadResult read = zyltest::ReadText(zyltest::Collada(R"(
    <library_visual_scenes><visual_scene id="scene"><node id="alone"/></visual_scene></library_visual_scenes>
    <scene><instance_visual_scene url="#scene"/></scene>)"));
  ASSERT_TRUE(read.ok);
  const zyldae::SceneStats stats = zyldae::ComputeStats(*read.scene);
  EXPECT_EQ(stats.triangles, 0);
  EXPECT_TRUE(stats.worldBox.empty);
}

TEST(Box, GrowsToHoldEveryPointAndBox) {
  zyldae::Box box;
  box.Add(1, -2, 3);
  EXPECT_FALSE(box.empty);
  EXPECT_EQ(box.min, (std::array<double, 3>{1, -2, 3}));
  EXPECT_EQ(box.max, (std::array<double, 3>{1, -2, 3}));
  zyldae::Box other;
  other.Add(-1, 5, 3);
  box.Add(other);
  box.Add(zyldae::Box{});
  EXPECT_EQ(box.min, (std::array<double, 3>{-1, -2, 3}));
  EXPECT_EQ(box.max, (std::array<double, 3>{1, 5, 3}));
}

}  // namespace
