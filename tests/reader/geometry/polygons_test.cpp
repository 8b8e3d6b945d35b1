// Polygons and triangles of a mesh: polygons, material slots, normals, colours and UVs.

#include <gtest/gtest.h>

#include "tests/reader/geometry/mesh_xml.h"
#include "tests/support/documents.h"
#include "tests/support/reader_fixture.h"

namespace zyltest {
namespace {

using namespace zylsdk;

class PolygonsTest : public ReaderTest {
 protected:
  // Reads the polygons of `meshBody` (positions and vertices come first) into a mesh with
  // four control points, as the mesh import would.
  KZylMesh* ReadPolygons(const std::string& meshBody, bool* ok = nullptr) {
    KZylMesh* mesh = KZylMesh::Create(&manager, "");
    bool result = reader->ImportMesh(Parse(Mesh(SquarePositions() + PositionVertices() + meshBody)), mesh);
    if (ok) *ok = result;
    return mesh;
  }
  static std::vector<int> Vertices(const KZylMesh& mesh, int polygon) {
    std::vector<int> vertices;
    for (int k = 0; k < mesh.GetPolygonSize(polygon); ++k) vertices.push_back(mesh.GetPolygonVertex(polygon, k));
    return vertices;
  }
  static std::string Polygons(const std::string& material, const std::string& inputs, const std::string& ps) {
    return "<polygons" + (material.empty() ? std::string() : " material=\"" + material + "\"") + ">" + inputs + ps +
           "</polygons>";
  }
  static std::string Triangles(const std::string& material, const std::string& inputs, const std::string& p) {
    return "<triangles" + (material.empty() ? std::string() : " material=\"" + material + "\"") + ">" + inputs +
           "<p>" + p + "</p></triangles>";
  }
};

TEST_F(PolygonsTest, OneTrianglesElementGivesOneMaterialForTheWholeMesh) {
  bool ok = false;
  KZylMesh* mesh = ReadPolygons(Triangles("m1", VertexInput(), "0 1 2  0 2 3"), &ok);
  ASSERT_TRUE(ok);
  const KZylLayerElementMaterial* materials = mesh->GetLayer(0)->GetMaterials();
  ASSERT_NE(materials, nullptr);
  EXPECT_EQ(materials->GetMappingMode(), KZylLayerElement::eAllSame);
  EXPECT_EQ(materials->GetReferenceMode(), KZylLayerElement::eIndexToDirect);
  ASSERT_EQ(materials->GetDirectArray().GetCount(), 1);
  EXPECT_EQ(materials->GetDirectArray()[0]->GetName(), "m1");
  EXPECT_EQ(materials->GetIndexArray(), KArrayTemplate<int>({0}));
  ASSERT_EQ(mesh->GetPolygonCount(), 2);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(mesh->GetPolygonMaterial(i), 0);
    EXPECT_EQ(mesh->GetPolygonTexture(i), -1);
    EXPECT_EQ(mesh->GetPolygonGroup(i), -1);
  }
  EXPECT_EQ(Vertices(*mesh, 1), std::vector<int>({0, 2, 3}));
}

TEST_F(PolygonsTest, EveryElementNamingAMaterialGetsItsOwnMaterial) {
  KZylMesh* mesh = ReadPolygons(Polygons("m1", VertexInput(), "<p>0 1 2</p>") + Polygons("m1", VertexInput(), "<p>0 2 3</p>"));
  const KZylLayerElementMaterial* materials = mesh->GetLayer(0)->GetMaterials();
  ASSERT_NE(materials, nullptr);
  EXPECT_EQ(materials->GetMappingMode(), KZylLayerElement::eByPolygon);
  ASSERT_EQ(materials->GetDirectArray().GetCount(), 2);
  EXPECT_NE(materials->GetDirectArray()[0], materials->GetDirectArray()[1]);
  EXPECT_EQ(materials->GetDirectArray()[1]->GetName(), "m1");
  EXPECT_EQ(materials->GetIndexArray(), KArrayTemplate<int>({0, 1}));
  EXPECT_EQ(mesh->GetPolygonMaterial(0), 0);
  EXPECT_EQ(mesh->GetPolygonMaterial(1), 1);
  EXPECT_EQ(manager.GetSrcObjectCount<KZylSurfaceMaterial>(), 2);
}

TEST_F(PolygonsTest, ElementWithoutMaterialHasNoSlot) {
  KZylMesh* mesh = ReadPolygons(Polygons("", VertexInput(), "<p>0 1 2</p>") + Polygons("m", VertexInput(), "<p>0 2 3</p>"));
  EXPECT_EQ(mesh->GetPolygonMaterial(0), -1);
  EXPECT_EQ(mesh->GetPolygonMaterial(1), 0);
  ASSERT_NE(mesh->GetLayer(0)->GetMaterials(), nullptr);
  EXPECT_EQ(mesh->GetLayer(0)->GetMaterials()->GetIndexArray(), KArrayTemplate<int>({0}));
}

TEST_F(PolygonsTest, PolygonsElementsComeBeforeTrianglesElements) {
  KZylMesh* mesh = ReadPolygons(Triangles("", VertexInput(), "3 2 1") + Polygons("", VertexInput(), "<p>0 1 2 3</p>"));
  ASSERT_EQ(mesh->GetPolygonCount(), 2);
  EXPECT_EQ(Vertices(*mesh, 0), std::vector<int>({0, 1, 2, 3}));
  EXPECT_EQ(Vertices(*mesh, 1), std::vector<int>({3, 2, 1}));
}

TEST_F(PolygonsTest, OnePolygonPerPEvenAnEmptyOne) {
  KZylMesh* mesh = ReadPolygons(Polygons("", VertexInput(), "<p>0 1 2</p><p></p><p>1 2 3</p>"));
  ASSERT_EQ(mesh->GetPolygonCount(), 3);
  EXPECT_EQ(mesh->GetPolygonSize(1), 0);
  EXPECT_EQ(Vertices(*mesh, 2), std::vector<int>({1, 2, 3}));
}

const std::string kNormals = FloatSource("nrm", "0 0 1  0 0 -1", 3, "normals");
const std::string kUvs = FloatSource("uv", "0 0  1 0  1 1", 2, "map1");

TEST_F(PolygonsTest, StrideFollowsTheLargestOffset) {
  const std::string inputs = VertexInput(0) + "<input semantic=\"NORMAL\" source=\"#nrm\" offset=\"1\"/>" +
                             "<input semantic=\"TEXCOORD\" source=\"#uv\" offset=\"2\" set=\"0\"/>";
  KZylMesh* mesh = ReadPolygons(kNormals + kUvs + Triangles("", inputs, "3 0 2  1 1 1  2 0 0"));
  ASSERT_EQ(mesh->GetPolygonCount(), 1);
  EXPECT_EQ(Vertices(*mesh, 0), std::vector<int>({3, 1, 2}));

  const KZylLayerElementNormal* normals = mesh->GetLayer(0)->GetNormals();
  ASSERT_NE(normals, nullptr);
  EXPECT_EQ(normals->GetMappingMode(), KZylLayerElement::eByPolygonVertex);
  EXPECT_EQ(normals->GetReferenceMode(), KZylLayerElement::eDirect);
  EXPECT_EQ(normals->GetName(), "normals");
  ASSERT_EQ(normals->GetDirectArray().GetCount(), 3);
  EXPECT_EQ(normals->GetDirectArray()[0], KZylVector4(0, 0, 1, 0));
  EXPECT_EQ(normals->GetDirectArray()[1], KZylVector4(0, 0, -1, 0));

  const KZylLayerElementUV* uvs = mesh->GetLayer(0)->GetUVs(KZylLayerElement::eDiffuseTextures);
  ASSERT_NE(uvs, nullptr);
  EXPECT_EQ(uvs->GetMappingMode(), KZylLayerElement::eByPolygonVertex);
  EXPECT_EQ(uvs->GetReferenceMode(), KZylLayerElement::eIndexToDirect);
  EXPECT_EQ(uvs->GetName(), "map1");
  EXPECT_EQ(uvs->GetIndexArray(), KArrayTemplate<int>({2, 1, 0}));
  ASSERT_EQ(uvs->GetDirectArray().GetCount(), 3);
  EXPECT_EQ(uvs->GetDirectArray()[2], KZylVector2(1, 1));
}

TEST_F(PolygonsTest, TrianglesWithSevenVerticesLeaveOneOpenPolygon) {
  KZylMesh* mesh = ReadPolygons(Triangles("", VertexInput(), "0 1 2  0 2 3  1"));
  ASSERT_EQ(mesh->GetPolygonCount(), 3);
  EXPECT_EQ(mesh->GetPolygonSize(0), 3);
  EXPECT_EQ(mesh->GetPolygonSize(1), 3);
  EXPECT_EQ(Vertices(*mesh, 2), std::vector<int>({1}));
  EXPECT_EQ(mesh->GetPolygonVertexCount(), 7);
}

TEST_F(PolygonsTest, OpenTriangleIsFollowedByTheNextElementsPolygons) {
  KZylMesh* mesh = ReadPolygons(Triangles("", VertexInput(), "0 1") + Triangles("", VertexInput(), "1 2 3"));
  ASSERT_EQ(mesh->GetPolygonCount(), 2);
  EXPECT_EQ(Vertices(*mesh, 0), std::vector<int>({0, 1}));
  EXPECT_EQ(Vertices(*mesh, 1), std::vector<int>({1, 2, 3}));
}

TEST_F(PolygonsTest, TexcoordOfSetOneGoesToANewSecondLayer) {
  const std::string inputs = VertexInput() + "<input semantic=\"TEXCOORD\" source=\"#uv\" offset=\"0\" set=\"1\"/>";
  KZylMesh* mesh = ReadPolygons(kUvs + Triangles("", inputs, "0 1 2"));
  ASSERT_EQ(mesh->GetLayerCount(), 2);
  EXPECT_EQ(mesh->GetLayer(0)->GetUVs(KZylLayerElement::eDiffuseTextures), nullptr);
  const KZylLayerElementUV* uvs = mesh->GetLayer(1)->GetUVs(KZylLayerElement::eDiffuseTextures);
  ASSERT_NE(uvs, nullptr);
  EXPECT_EQ(uvs->GetIndexArray(), KArrayTemplate<int>({0, 1, 2}));
}

TEST_F(PolygonsTest, SetTwoCreatesEveryLayerUpToIt) {
  const std::string inputs = VertexInput() + "<input semantic=\"COLOR\" source=\"#uv\" offset=\"0\" set=\"2\"/>";
  KZylMesh* mesh = ReadPolygons(kUvs + Triangles("", inputs, "0 1 2"));
  ASSERT_EQ(mesh->GetLayerCount(), 3);
  EXPECT_NE(mesh->GetLayer(2)->GetVertexColors(), nullptr);
}

TEST_F(PolygonsTest, SetOutOfRangeIsSkippedWithAWarning) {
  const std::string inputs = VertexInput() + "<input semantic=\"TEXCOORD\" source=\"#uv\" offset=\"1\" set=\"256\"/>" +
                             "<input semantic=\"TEXCOORD\" source=\"#uv\" offset=\"1\" set=\"-1\"/>";
  bool ok = false;
  KZylMesh* mesh = ReadPolygons(kUvs + Triangles("", inputs, "0 0 1 1 2 2"), &ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(CountMessage("Warning: input set out of range: 256"), 1);
  EXPECT_EQ(CountMessage("Warning: input set out of range: -1"), 1);
  EXPECT_EQ(mesh->GetLayerCount(), 1);
  EXPECT_EQ(mesh->GetLayer(0)->GetUVs(KZylLayerElement::eDiffuseTextures), nullptr);
  // The skipped input still takes its place in each vertex.
  EXPECT_EQ(Vertices(*mesh, 0), std::vector<int>({0, 1, 2}));
}

TEST_F(PolygonsTest, WithoutNormalInputTheNormalsAreComputed) {
  KZylMesh* mesh = ReadPolygons(Polygons("", VertexInput(), "<p>0 1 2 3</p>"));
  const KZylLayerElementNormal* normals = mesh->GetLayer(0)->GetNormals();
  ASSERT_NE(normals, nullptr);
  EXPECT_EQ(normals->GetMappingMode(), KZylLayerElement::eByPolygonVertex);
  ASSERT_EQ(normals->GetDirectArray().GetCount(), 4);
  for (const KZylVector4& normal : normals->GetDirectArray()) EXPECT_EQ(normal, KZylVector4(0, 0, 1, 0));
}

TEST_F(PolygonsTest, MeshWithoutPolygonElementsHasComputedNormalsOnly) {
  bool ok = false;
  KZylMesh* mesh = ReadPolygons("", &ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(mesh->GetPolygonCount(), 0);
  ASSERT_NE(mesh->GetLayer(0)->GetNormals(), nullptr);
  EXPECT_EQ(mesh->GetLayer(0)->GetNormals()->GetMappingMode(), KZylLayerElement::eByPolygonVertex);
  EXPECT_EQ(mesh->GetLayer(0)->GetNormals()->GetDirectArray().GetCount(), 0);
}

TEST_F(PolygonsTest, PolylistAddsNothingAndSaysNothing) {
  bool ok = false;
  KZylMesh* mesh = ReadPolygons("<polylist count=\"1\">" + VertexInput() + "<vcount>3</vcount><p>0 1 2</p></polylist>", &ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(mesh->GetPolygonCount(), 0);
  EXPECT_TRUE(Messages().empty());
}

TEST_F(PolygonsTest, UnknownSemanticIsAWarningAndTheReadGoesOn) {
  const std::string inputs = VertexInput() + "<input semantic=\"TEXTANGENT\" source=\"#uv\" offset=\"0\"/>" +
                             "<input semantic=\"TEXCOORD\" source=\"#uv\" offset=\"0\"/>";
  bool ok = false;
  KZylMesh* mesh = ReadPolygons(kUvs + Triangles("", inputs, "0 1 2"), &ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(CountMessage("Warning: Unknown property for polygons: TEXTANGENT"), 1);
  // The skipped input's source counts as seen: the UVs add indices but no values.
  const KZylLayerElementUV* uvs = mesh->GetLayer(0)->GetUVs(KZylLayerElement::eDiffuseTextures);
  ASSERT_NE(uvs, nullptr);
  EXPECT_EQ(uvs->GetIndexArray().GetCount(), 3);
  EXPECT_EQ(uvs->GetDirectArray().GetCount(), 0);
}

TEST_F(PolygonsTest, ElementWithoutVertexInputFails) {
  bool ok = true;
  KZylMesh* mesh = ReadPolygons(Triangles("", "", "0 1 2") + Triangles("", VertexInput(), "0 1 2"), &ok);
  EXPECT_FALSE(ok);
  EXPECT_FALSE(reader->GetStatus());
  EXPECT_EQ(CountMessage("ERROR: No vertices defined in mesh "), 1);
  EXPECT_EQ(mesh->GetPolygonCount(), 0);
}

TEST_F(PolygonsTest, MissingInputSourceFails) {
  const std::string inputs = VertexInput() + "<input semantic=\"NORMAL\" source=\"#gone\" offset=\"0\"/>";
  bool ok = true;
  KZylMesh* mesh = ReadPolygons(Triangles("", inputs, "0 1 2"), &ok);
  EXPECT_FALSE(ok);
  EXPECT_EQ(CountMessage("ERROR: source \"#gone\" not found as <source> for <input>"), 1);
  // What was made before the failure stays.
  EXPECT_EQ(mesh->GetPolygonCount(), 1);
}

TEST_F(PolygonsTest, UnreadableInputSourceFails) {
  const std::string noAccessor = "<source id=\"bad\"><float_array>1 2 3</float_array></source>";
  const std::string inputs = VertexInput() + "<input semantic=\"TEXCOORD\" source=\"#bad\" offset=\"0\"/>";
  bool ok = true;
  ReadPolygons(noAccessor + Triangles("", inputs, "0 1 2"), &ok);
  EXPECT_FALSE(ok);
  EXPECT_EQ(CountMessage("ERROR: reading array in <source>: #bad"), 1);
}

TEST_F(PolygonsTest, ColourSourceUsedTwiceAddsItsValuesOnce) {
  const std::string colors = FloatSource("c", "1 0 0  0 1 0", 3, "tint");
  const std::string inputs = VertexInput() + "<input semantic=\"COLOR\" source=\"#c\" offset=\"0\"/>";
  KZylMesh* mesh = ReadPolygons(colors + Triangles("", inputs, "0 1 1") + Triangles("", inputs, "1 0 0"));
  const KZylLayerElementVertexColor* element = mesh->GetLayer(0)->GetVertexColors();
  ASSERT_NE(element, nullptr);
  EXPECT_EQ(element->GetMappingMode(), KZylLayerElement::eByPolygonVertex);
  EXPECT_EQ(element->GetReferenceMode(), KZylLayerElement::eIndexToDirect);
  EXPECT_EQ(element->GetName(), "tint");
  EXPECT_EQ(element->GetDirectArray().GetCount(), 2);
  EXPECT_EQ(element->GetIndexArray(), KArrayTemplate<int>({0, 1, 1, 1, 0, 0}));
}

TEST_F(PolygonsTest, TwoUvSourcesAreAppendedWithoutRebasing) {
  const std::string second = FloatSource("uv2", "5 5", 2, "map2");
  const std::string first = VertexInput() + "<input semantic=\"TEXCOORD\" source=\"#uv\" offset=\"0\"/>";
  const std::string other = VertexInput() + "<input semantic=\"TEXCOORD\" source=\"#uv2\" offset=\"1\"/>";
  KZylMesh* mesh = ReadPolygons(kUvs + second + Triangles("", first, "0 1 2") + Triangles("", other, "0 0 1 0 2 0"));
  const KZylLayerElementUV* uvs = mesh->GetLayer(0)->GetUVs(KZylLayerElement::eDiffuseTextures);
  ASSERT_NE(uvs, nullptr);
  EXPECT_EQ(uvs->GetName(), "map2");
  ASSERT_EQ(uvs->GetDirectArray().GetCount(), 4);
  EXPECT_EQ(uvs->GetDirectArray()[3], KZylVector2(5, 5));
  EXPECT_EQ(uvs->GetIndexArray(), KArrayTemplate<int>({0, 1, 2, 0, 0, 0}));
}

// ---------------------------------------------------------------- damaged index lists

TEST_F(PolygonsTest, ShortLastVertexReadsMinusOne) {
  // Stride 2: the fifth integer starts a third vertex whose normal index is missing.
  const std::string inputs = VertexInput(0) + "<input semantic=\"NORMAL\" source=\"#nrm\" offset=\"1\"/>" +
                             "<input semantic=\"TEXCOORD\" source=\"#uv\" offset=\"1\"/>";
  bool ok = false;
  KZylMesh* mesh = ReadPolygons(kNormals + kUvs + Polygons("", inputs, "<p>0 1 1 0 2</p>"), &ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(Vertices(*mesh, 0), std::vector<int>({0, 1, 2}));
  const KArrayTemplate<KZylVector4>& normals = mesh->GetLayer(0)->GetNormals()->GetDirectArray();
  ASSERT_EQ(normals.GetCount(), 3);
  EXPECT_EQ(normals[0], KZylVector4(0, 0, -1, 0));
  EXPECT_EQ(normals[2], KZylVector4());
  EXPECT_EQ(mesh->GetLayer(0)->GetUVs(KZylLayerElement::eDiffuseTextures)->GetIndexArray(),
            KArrayTemplate<int>({1, 0, -1}));
}

TEST_F(PolygonsTest, OffsetPastTheListReadsMinusOne) {
  const std::string inputs = VertexInput(5);
  KZylMesh* mesh = ReadPolygons(Triangles("", inputs, "0 1 2"));
  ASSERT_EQ(mesh->GetPolygonCount(), 1);
  EXPECT_EQ(Vertices(*mesh, 0), std::vector<int>({-1}));
}

TEST_F(PolygonsTest, NegativeOffsetReadsMinusOne) {
  const std::string inputs = "<input semantic=\"VERTEX\" source=\"#verts\" offset=\"-3\"/>" +
                             std::string("<input semantic=\"TEXCOORD\" source=\"#uv\" offset=\"1\"/>");
  KZylMesh* mesh = ReadPolygons(kUvs + Triangles("", inputs, "0 1 2 0 1 2"));
  ASSERT_EQ(mesh->GetPolygonCount(), 1);
  EXPECT_EQ(Vertices(*mesh, 0), std::vector<int>({-1, -1, -1}));
  EXPECT_EQ(mesh->GetLayer(0)->GetUVs(KZylLayerElement::eDiffuseTextures)->GetIndexArray(),
            KArrayTemplate<int>({1, 0, 2}));
}

TEST_F(PolygonsTest, HugeOffsetDoesNotOverflow) {
  const std::string inputs = VertexInput(0) + "<input semantic=\"NORMAL\" source=\"#nrm\" offset=\"2147483647\"/>";
  bool ok = false;
  KZylMesh* mesh = ReadPolygons(kNormals + Triangles("", inputs, "0 1 2"), &ok);
  EXPECT_TRUE(ok);
  ASSERT_EQ(mesh->GetPolygonCount(), 1);
  EXPECT_EQ(Vertices(*mesh, 0), std::vector<int>({0}));
  ASSERT_EQ(mesh->GetLayer(0)->GetNormals()->GetDirectArray().GetCount(), 1);
  EXPECT_EQ(mesh->GetLayer(0)->GetNormals()->GetDirectArray()[0], KZylVector4());
}

TEST_F(PolygonsTest, IndicesOutsideTheSourcesAreKeptAndGiveDefaultValues) {
  const std::string inputs = VertexInput(0) + "<input semantic=\"NORMAL\" source=\"#nrm\" offset=\"1\"/>";
  bool ok = false;
  KZylMesh* mesh = ReadPolygons(kNormals + Triangles("", inputs, "0 99  7 -4  2 2147483647"), &ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(Vertices(*mesh, 0), std::vector<int>({0, 7, 2}));
  const KArrayTemplate<KZylVector4>& normals = mesh->GetLayer(0)->GetNormals()->GetDirectArray();
  ASSERT_EQ(normals.GetCount(), 3);
  for (const KZylVector4& normal : normals) EXPECT_EQ(normal, KZylVector4());
}

TEST_F(PolygonsTest, ComputedNormalsSkipIndicesOutsideTheControlPoints) {
  KZylMesh* mesh = ReadPolygons(Polygons("", VertexInput(), "<p>0 1 2 40 -1</p>"));
  const KArrayTemplate<KZylVector4>& normals = mesh->GetLayer(0)->GetNormals()->GetDirectArray();
  ASSERT_EQ(normals.GetCount(), 5);
  EXPECT_EQ(normals[0], KZylVector4(0, 0, 1, 0));
  EXPECT_EQ(normals[3], KZylVector4());
}

TEST_F(PolygonsTest, GarbageInAListIsPassedOver) {
  KZylMesh* mesh = ReadPolygons(Triangles("", VertexInput(), "0 x 1 ,2 ; 3.5 99999999999999999999"));
  ASSERT_EQ(mesh->GetPolygonCount(), 2);
  EXPECT_EQ(Vertices(*mesh, 0), std::vector<int>({0, 1, 2}));
  EXPECT_EQ(Vertices(*mesh, 1), std::vector<int>({3, 5, 2147483647}));
}

}  // namespace
}  // namespace zyltest
