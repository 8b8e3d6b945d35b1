// Indices of a document that point outside their arrays: the traditional reading keeps them as
// they are, the complete reading reads them as -1 with a warning.

#include <gtest/gtest.h>

#include <vector>

#include "tests/reader/geometry/complete_scene_xml.h"

namespace zyltest {
namespace {

// A triangle whose third vertex names point 9 of the square's 4, UV 5 of 2 and colour 3 of 1
// (the kinds of index fuzzing found outside their arrays).
const std::string kDocument = InstancedGeometryScene(Geometry(
    "g", Mesh(SquarePositions() + FloatSource("uv", "0 0  1 1", 2) + FloatSource("rgb", "1 0 0", 3) +
              PositionVertices() + "<triangles count=\"1\">" + VertexInput(0) +
              "<input semantic=\"TEXCOORD\" source=\"#uv\" offset=\"1\" set=\"0\"/>"
              "<input semantic=\"COLOR\" source=\"#rgb\" offset=\"2\"/><p>0 0 0 1 1 0 9 5 3</p></triangles>")));

const zylsdk::KZylMesh& MeshOf(const zyldae::ReadResult& read) {
  return *static_cast<const zylsdk::KZylMesh*>(read.scene->GetRootNode()->GetChild(0)->GetNodeAttribute());
}

std::vector<int> UvIndices(const zylsdk::KZylMesh& mesh) { return mesh.GetLayer(0)->GetUVs()->GetIndexArray().Std(); }

std::vector<int> ColourIndices(const zylsdk::KZylMesh& mesh) {
  return mesh.GetLayer(0)->GetVertexColors()->GetIndexArray().Std();
}

TEST(IndexRanges, TheTraditionalReadingKeepsTheDocumentsIndices) {
  const zyldae::ReadResult read = ReadText(kDocument);
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(MeshOf(read).GetPolygonVertices().Std(), (std::vector<int>{0, 1, 9}));
  EXPECT_EQ(UvIndices(MeshOf(read)), (std::vector<int>{0, 1, 5}));
  EXPECT_EQ(ColourIndices(MeshOf(read)), (std::vector<int>{0, 0, 3}));
}

TEST(IndexRanges, TheCompleteReadingReadsThemAsMinusOneWithAWarning) {
  const zyldae::ReadResult read = ReadText(kDocument, Complete());
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(MeshOf(read).GetPolygonVertices().Std(), (std::vector<int>{0, 1, -1}));
  EXPECT_EQ(UvIndices(MeshOf(read)), (std::vector<int>{0, 1, -1}));
  EXPECT_EQ(ColourIndices(MeshOf(read)), (std::vector<int>{0, 0, -1}));
  EXPECT_EQ(CountMessage(read, "Warning: 3 indices of the mesh point outside their arrays: read as -1"), 1);
}

TEST(IndexRanges, IndicesInsideTheirArraysBringNoWarning) {
  const zyldae::ReadResult read = ReadText(SquareMeshScene("<triangles>" + VertexInput() + "<p>0 1 2</p></triangles>"),
                                           Complete());
  ASSERT_TRUE(read.ok);
  for (const std::string& message : Messages(read)) EXPECT_EQ(message.find("outside their arrays"), std::string::npos);
}

}  // namespace
}  // namespace zyltest
