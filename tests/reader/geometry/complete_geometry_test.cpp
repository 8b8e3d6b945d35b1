// The complete reading of geometries: every child the kit cannot use is skipped, convex meshes
// are read, and `vertices` give texture coordinates and keep their normals.

#include <gtest/gtest.h>

#include "tests/reader/geometry/complete_scene_xml.h"

namespace zyltest {
namespace {

const std::string kTriangle = "<triangles>" + VertexInput() + "<p>0 1 2</p></triangles>";

TEST(CompleteGeometry, ExtraAndAssetOfAGeometryAreSkipped) {
  const std::string document =
      InstancedGeometryScene("<geometry id=\"g\"><asset/>" + Mesh(SquarePositions() + PositionVertices() + kTriangle) +
                             "<extra><technique profile=\"x\"/></extra></geometry>");
  const zyldae::Json dump = DumpText(document, false, Complete());
  ASSERT_TRUE(dump["ok"]);
  EXPECT_EQ(FirstNodeAttribute(dump)["polygonCount"], 1);
  EXPECT_FALSE(ReadText(document).ok);
}

TEST(CompleteGeometry, ConvexMeshIsReadAsAMesh) {
  const zyldae::Json dump = DumpText(
      InstancedGeometryScene("<geometry id=\"g\"><convex_mesh>" + SquarePositions() + PositionVertices() + kTriangle +
                             "</convex_mesh></geometry>"),
      false, Complete());
  EXPECT_EQ(FirstNodeAttribute(dump)["polygonCount"], 1);
}

TEST(CompleteGeometry, ConvexHullReadsTheMeshOfTheGeometryItNames) {
  // The hull comes first and names a geometry defined after it.
  const zyldae::Json dump = DumpText(
      InstancedGeometryScene("<geometry id=\"g\"><convex_mesh convex_hull_of=\"#source\"/></geometry>" +
                             Geometry("source", Mesh(SquarePositions() + PositionVertices() + kTriangle))),
      false, Complete());
  ASSERT_TRUE(dump["ok"]);
  EXPECT_EQ(FirstNodeAttribute(dump)["controlPointCount"], 4);
  EXPECT_EQ(FirstNodeAttribute(dump)["polygonCount"], 1);
}

TEST(CompleteGeometry, ConvexHullReadsTheMeshOfAGeometryReadBeforeIt) {
  // The named geometry is read first; its mesh is read again for the hull.
  const zyldae::Json dump = DumpText(
      InstancedGeometryScene(Geometry("source", Mesh(SquarePositions() + PositionVertices() + kTriangle)) +
                             "<geometry id=\"g\"><convex_mesh convex_hull_of=\"#source\"/></geometry>"),
      false, Complete());
  ASSERT_TRUE(dump["ok"]);
  EXPECT_EQ(FirstNodeAttribute(dump)["controlPointCount"], 4);
  EXPECT_EQ(FirstNodeAttribute(dump)["polygonCount"], 1);
}

TEST(CompleteGeometry, HullsNamingEachOtherEndWithoutAMesh) {
  const zyldae::ReadResult read = ReadText(
      InstancedGeometryScene("<geometry id=\"g\"><convex_mesh convex_hull_of=\"#h\"/></geometry>"
                             "<geometry id=\"h\"><convex_mesh convex_hull_of=\"#g\"/></geometry>"),
      Complete());
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(CountMessage(read, "Warning: no mesh found for library g"), 1);
}

TEST(CompleteGeometry, OtherGeometryKindsAreSkippedWithOneWarning) {
  const std::string spline = "<spline><source id=\"cv\"/><control_vertices/></spline>";
  const zyldae::ReadResult read =
      ReadText(InstancedGeometryScene("<geometry id=\"g\">" + spline + "</geometry><geometry id=\"k\">" + spline +
                                      "</geometry>"),
               Complete());
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(CountMessage(read, "Warning: geometry kind not read: spline"), 1);
  EXPECT_EQ(read.scene->GetRootNode()->GetChild(0)->GetNodeAttribute()->GetAttributeType(),
            zylsdk::KZylNodeAttribute::eNull);
}

TEST(CompleteGeometry, VerticesTexcoordsBecomeUVsByControlPoint) {
  const std::string vertices = "<vertices id=\"verts\"><input semantic=\"POSITION\" source=\"#pos\"/>"
                               "<input semantic=\"TEXCOORD\" source=\"#uv\"/></vertices>";
  const zyldae::Json dump = DumpText(
      InstancedGeometryScene(Geometry(
          "g", Mesh(SquarePositions() + FloatSource("uv", "0 0  1 0  1 1  0 1", 2) + vertices + kTriangle))),
      false, Complete());
  const zyldae::Json& uvs = FirstNodeAttribute(dump)["layers"][0]["uvs"]["3"];
  EXPECT_EQ(uvs["mapping"], 1);
  EXPECT_EQ(uvs["reference"], 0);
  EXPECT_EQ(uvs["direct"], zyldae::Json::parse("[[0,0],[1,0],[1,1],[0,1]]"));
}

TEST(CompleteGeometry, PolygonTexcoordsReplaceThoseOfTheVertices) {
  const std::string vertices = "<vertices id=\"verts\"><input semantic=\"POSITION\" source=\"#pos\"/>"
                               "<input semantic=\"TEXCOORD\" source=\"#uv\"/></vertices>";
  const std::string triangle = "<triangles>" + VertexInput() +
                               "<input semantic=\"TEXCOORD\" source=\"#uv\" offset=\"0\"/><p>0 1 2</p></triangles>";
  const zyldae::Json dump = DumpText(
      InstancedGeometryScene(Geometry(
          "g", Mesh(SquarePositions() + FloatSource("uv", "0 0  1 0  1 1  0 1", 2) + vertices + triangle))),
      false, Complete());
  const zyldae::Json& uvs = FirstNodeAttribute(dump)["layers"][0]["uvs"]["3"];
  EXPECT_EQ(uvs["mapping"], 2);
  EXPECT_EQ(uvs["index"], zyldae::Json::parse("[0,1,2]"));
  EXPECT_EQ(uvs["directCount"], 4);
}

TEST(CompleteGeometry, OtherVerticesInputsAreSkippedWithOneWarning) {
  const std::string vertices = "<vertices id=\"verts\"><input semantic=\"POSITION\" source=\"#pos\"/>"
                               "<input semantic=\"TANGENT\" source=\"#pos\"/></vertices>";
  const std::string geometry = Geometry("g", Mesh(SquarePositions() + vertices + kTriangle));
  const zyldae::ReadResult read = ReadText(InstancedGeometryScene(geometry + "<geometry id=\"k\">" +
                                                                  Mesh(SquarePositions() + vertices) + "</geometry>"),
                                           Complete());
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(CountMessage(read, "Warning: TANGENT in <vertices> not read: the kit has no layer element for it"), 1);
}

TEST(CompleteGeometry, NormalsOfTheVerticesAreKeptByControlPoint) {
  const std::string vertices = "<vertices id=\"verts\"><input semantic=\"POSITION\" source=\"#pos\"/>"
                               "<input semantic=\"NORMAL\" source=\"#nrm\"/></vertices>";
  const std::string document = InstancedGeometryScene(
      Geometry("g", Mesh(SquarePositions() + FloatSource("nrm", "0 0 1  0 0 1  0 1 0  0 0 1", 3) + vertices + kTriangle)));
  const zyldae::Json complete = DumpText(document, false, Complete());
  const zyldae::Json& normals = FirstNodeAttribute(complete)["layers"][0]["normals"];
  EXPECT_EQ(normals["mapping"], 1);
  EXPECT_EQ(normals["direct"][2], zyldae::Json::parse("[0,1,0,0]"));
  // The traditional reading computes normals per polygon vertex instead.
  const zyldae::Json traditional = DumpText(document);
  EXPECT_EQ(FirstNodeAttribute(traditional)["layers"][0]["normals"]["mapping"], 2);
}

}  // namespace
}  // namespace zyltest
