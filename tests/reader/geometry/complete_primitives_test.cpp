// The complete reading of a mesh's primitives: polylist, strips and fans become polygons; lines
// and the holes of polygons, which the kit cannot hold, are skipped with a warning.

#include <gtest/gtest.h>

#include "tests/reader/geometry/complete_scene_xml.h"

namespace zyltest {
namespace {

using Polygons = std::vector<std::vector<int>>;

std::string Primitive(const std::string& name, const std::string& inputs, const std::string& body) {
  return "<" + name + " count=\"1\">" + inputs + body + "</" + name + ">";
}

TEST(CompletePrimitives, PolylistBecomesPolygonsOfItsCounts) {
  const std::string document =
      SquareMeshScene(Primitive("polylist", VertexInput(), "<vcount>3 4</vcount><p>0 1 2  0 1 2 3</p>"));
  const zyldae::Json complete = DumpText(document, false, Complete());
  ASSERT_TRUE(complete["ok"]);
  EXPECT_EQ(PolygonVertices(FirstNodeAttribute(complete)), Polygons({{0, 1, 2}, {0, 1, 2, 3}}));
  // The traditional reading passes the polylist over.
  EXPECT_EQ(FirstNodeAttribute(DumpText(document))["polygonCount"], 0);
}

TEST(CompletePrimitives, PolylistListsRunAsOne) {
  // The sizes run over every list of the polylist: the second polygon starts in the first list.
  const zyldae::Json dump = DumpText(
      SquareMeshScene(Primitive("polylist", VertexInput(), "<vcount>3 4 3</vcount><p>0 1 2 3</p><p>2 1 0</p><p>3 1 2</p>")),
      false, Complete());
  EXPECT_EQ(PolygonVertices(FirstNodeAttribute(dump)), Polygons({{0, 1, 2}, {3, 2, 1, 0}, {3, 1, 2}}));
}

TEST(CompletePrimitives, PolylistInputsGiveLayersPerPolygonVertex) {
  const std::string inputs = VertexInput(0) + "<input semantic=\"NORMAL\" source=\"#nrm\" offset=\"1\"/>" +
                             "<input semantic=\"TEXCOORD\" source=\"#uv\" offset=\"1\" set=\"0\"/>";
  const std::string sources = FloatSource("nrm", "0 0 1  0 0 -1", 3) + FloatSource("uv", "0 0  1 1", 2);
  const zyldae::Json dump = DumpText(
      SquareMeshScene(sources + Primitive("polylist", inputs, "<vcount>3</vcount><p>0 0 1 1 2 0</p>")), false,
      Complete());
  const zyldae::Json& layer = FirstNodeAttribute(dump)["layers"][0];
  EXPECT_EQ(layer["normals"]["mapping"], 2);
  EXPECT_EQ(layer["normals"]["direct"], zyldae::Json::parse("[[0,0,1,0],[0,0,-1,0],[0,0,1,0]]"));
  EXPECT_EQ(layer["uvs"]["3"]["index"], zyldae::Json::parse("[0,1,0]"));
}

TEST(CompletePrimitives, PolylistSizesStopAtTheEndOfItsList) {
  // Five vertices for sizes 3, 0, -2 and 5: the last polygon takes the two that are left.
  const zyldae::Json dump = DumpText(
      SquareMeshScene(Primitive("polylist", VertexInput(), "<vcount>3 0 -2 5 3</vcount><p>0 1 2 3 0</p>")), false,
      Complete());
  EXPECT_EQ(PolygonVertices(FirstNodeAttribute(dump)), Polygons({{0, 1, 2}, {3, 0}}));
}

TEST(CompletePrimitives, TristripsAlternateTheirWinding) {
  const zyldae::Json dump =
      DumpText(SquareMeshScene(Primitive("tristrips", VertexInput(), "<p>0 1 2 3</p>")), false, Complete());
  EXPECT_EQ(PolygonVertices(FirstNodeAttribute(dump)), Polygons({{0, 1, 2}, {2, 1, 3}}));
}

TEST(CompletePrimitives, StitchedStripsDropTheirDegenerateTriangles) {
  const zyldae::Json dump = DumpText(
      SquareMeshScene(Primitive("tristrips", VertexInput(), "<p>0 1 2 2 3</p><p>3 2 1</p>")), false, Complete());
  EXPECT_EQ(PolygonVertices(FirstNodeAttribute(dump)), Polygons({{0, 1, 2}, {3, 2, 1}}));
}

TEST(CompletePrimitives, TrifansShareTheirFirstVertex) {
  const zyldae::Json dump =
      DumpText(SquareMeshScene(Primitive("trifans", VertexInput(), "<p>0 1 2 3</p>")), false, Complete());
  EXPECT_EQ(PolygonVertices(FirstNodeAttribute(dump)), Polygons({{0, 1, 2}, {0, 2, 3}}));
}

TEST(CompletePrimitives, StripsReadEveryInputOfTheirVertices) {
  const std::string inputs = VertexInput(0) + "<input semantic=\"TEXCOORD\" source=\"#uv\" offset=\"1\"/>";
  const zyldae::Json dump = DumpText(SquareMeshScene(FloatSource("uv", "0 0  1 1  2 2  3 3", 2) +
                                                     Primitive("tristrips", inputs, "<p>0 3 1 2 2 1 3 0</p>")),
                                     false, Complete());
  EXPECT_EQ(FirstNodeAttribute(dump)["layers"][0]["uvs"]["3"]["index"], zyldae::Json::parse("[3,2,1,1,2,0]"));
}

TEST(CompletePrimitives, PrimitivesFollowTheDocumentOrder) {
  const zyldae::Json dump = DumpText(
      SquareMeshScene(Primitive("triangles", VertexInput(), "<p>0 1 2</p>") +
                      Primitive("polygons", VertexInput(), "<p>0 1 2 3</p>")),
      false, Complete());
  EXPECT_EQ(PolygonVertices(FirstNodeAttribute(dump)), Polygons({{0, 1, 2}, {0, 1, 2, 3}}));
}

TEST(CompletePrimitives, LinesAreSkippedWithOneWarningPerKind) {
  const std::string lines = Primitive("lines", VertexInput(), "<p>0 1</p>");
  const zyldae::ReadResult read = ReadText(
      SquareMeshScene(lines + lines + Primitive("linestrips", VertexInput(), "<p>0 1 2</p>") +
                      Primitive("triangles", VertexInput(), "<p>0 1 2</p>")),
      Complete());
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(CountMessage(read, "Warning: lines not read: the kit has no line geometry"), 1);
  EXPECT_EQ(CountMessage(read, "Warning: linestrips not read: the kit has no line geometry"), 1);
}

TEST(CompletePrimitives, HoledPolygonsKeepTheirOutlineWithAWarning) {
  const zyldae::ReadResult read = ReadText(
      SquareMeshScene(Primitive("polygons", VertexInput(), "<p>0 1 2</p><ph><p>0 1 2 3</p><h>0 1 2</h></ph>")),
      Complete());
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(CountMessage(read, "Warning: holes of <ph> polygons not read: the kit's polygons have none"), 1);
  const zyldae::Json dump = DumpText(
      SquareMeshScene(Primitive("polygons", VertexInput(), "<p>0 1 2</p><ph><p>0 1 2 3</p><h>0 1 2</h></ph>")), false,
      Complete());
  EXPECT_EQ(PolygonVertices(FirstNodeAttribute(dump)), Polygons({{0, 1, 2}, {0, 1, 2, 3}}));
}

TEST(CompletePrimitives, EachLayerHoldsTheValuesOfTheSourcesItUses) {
  // One source for two UV sets, and a second source after it on the first set: every element
  // gets its own values, and indices point at them.
  const std::string texcoord = "<input semantic=\"TEXCOORD\" offset=\"0\" source=";
  const std::string triangles = "<triangles>" + VertexInput() + texcoord + "\"#uv\" set=\"0\"/>" + texcoord +
                                "\"#uv\" set=\"1\"/><p>0 1 2</p></triangles>" + "<triangles>" + VertexInput() +
                                texcoord + "\"#other\" set=\"0\"/><p>0 2 3</p></triangles>";
  const zyldae::Json dump = DumpText(
      SquareMeshScene(FloatSource("uv", "0 0  1 0  1 1  0 1", 2) + FloatSource("other", "5 5  6 6  7 7  8 8", 2) +
                      triangles),
      false, Complete());
  const zyldae::Json& layers = FirstNodeAttribute(dump)["layers"];
  EXPECT_EQ(layers[0]["uvs"]["3"]["directCount"], 8);
  EXPECT_EQ(layers[0]["uvs"]["3"]["index"], zyldae::Json::parse("[0,1,2,4,6,7]"));
  EXPECT_EQ(layers[1]["uvs"]["3"]["directCount"], 4);
  EXPECT_EQ(layers[1]["uvs"]["3"]["index"], zyldae::Json::parse("[0,1,2]"));
}

TEST(CompletePrimitives, MaterialsAreIndexedPerPolygon) {
  const zyldae::Json dump = DumpText(
      SquareMeshScene("<triangles material=\"a\">" + VertexInput() + "<p>0 1 2  0 2 3</p></triangles>" +
                      "<polylist material=\"b\">" + VertexInput() + "<vcount>4</vcount><p>0 1 2 3</p></polylist>"),
      false, Complete());
  const zyldae::Json& materials = FirstNodeAttribute(dump)["layers"][0]["materials"];
  EXPECT_EQ(materials["mapping"], 3);
  EXPECT_EQ(materials["index"], zyldae::Json::parse("[0,0,1]"));
}

}  // namespace
}  // namespace zyltest
