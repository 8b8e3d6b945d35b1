// Geometries, meshes and their vertices.

#include <gtest/gtest.h>

#include "tests/reader/geometry/mesh_xml.h"
#include "tests/support/documents.h"
#include "tests/support/reader_fixture.h"

namespace zyltest {
namespace {

using namespace zylsdk;

class GeometryTest : public ReaderTest {
 protected:
  KZylMesh* Registered(const char* id) const {
    KZylNodeAttribute* attribute = reader->GetState().nodeAttributes.Lookup(id);
    return attribute && attribute->Is(KZylMesh::ClassId) ? static_cast<KZylMesh*>(attribute) : nullptr;
  }
  // A fresh mesh prepared as the mesh import prepares it, then its vertices read.
  KZylMesh* ReadVertices(const std::string& meshXml, bool* ok = nullptr) {
    KZylMesh* mesh = KZylMesh::Create(&manager, "");
    mesh->CreateLayer();
    mesh->InitNormals(0);
    bool result = reader->ImportVertices(Parse(meshXml), mesh);
    if (ok) *ok = result;
    return mesh;
  }
};

const std::string kTriangle = "<triangles count=\"2\">" + VertexInput() + "<p>0 1 2 0 2 3</p></triangles>";

TEST_F(GeometryTest, MeshIsRegisteredUnderTheGeometryIdWithAnEmptyName) {
  ASSERT_TRUE(reader->ImportGeometry(Parse(Geometry("box", Mesh(SquarePositions() + PositionVertices() + kTriangle)))));
  KZylMesh* mesh = Registered("box");
  ASSERT_NE(mesh, nullptr);
  EXPECT_EQ(mesh->GetName(), "");
  EXPECT_EQ(mesh->GetControlPointsCount(), 4);
  EXPECT_EQ(mesh->GetControlPointAt(2), KZylVector4(1, 1, 0, 0));
  EXPECT_EQ(mesh->GetPolygonCount(), 2);
  EXPECT_TRUE(reader->GetStatus());
}

TEST_F(GeometryTest, ExtraAfterTheMeshFailsButKeepsTheMeshRegistered) {
  DaeElement* geometry = Parse(Geometry("box", Mesh(SquarePositions() + PositionVertices() + kTriangle) + "<extra/>"));
  EXPECT_FALSE(reader->ImportGeometry(geometry));
  EXPECT_NE(Registered("box"), nullptr);
  EXPECT_EQ(CountMessage("ERROR: Unrecognized geometry element: extra"), 1);
}

TEST_F(GeometryTest, AssetBeforeTheMeshFailsWithoutAMesh) {
  EXPECT_FALSE(reader->ImportGeometry(Parse(Geometry("box", "<asset/>" + Mesh(SquarePositions() + PositionVertices())))));
  EXPECT_EQ(Registered("box"), nullptr);
  EXPECT_EQ(CountMessage("ERROR: Unrecognized geometry element: asset"), 1);
}

TEST_F(GeometryTest, SecondMeshFailsAndTheFirstStays) {
  const std::string mesh = Mesh(SquarePositions() + PositionVertices() + kTriangle);
  EXPECT_FALSE(reader->ImportGeometry(Parse(Geometry("twice", mesh + mesh))));
  EXPECT_EQ(CountMessage("ERROR: more than one mesh defined for library twice"), 1);
  ASSERT_NE(Registered("twice"), nullptr);
  EXPECT_EQ(reader->GetState().nodeAttributes.GetCount(), 1);
}

TEST_F(GeometryTest, GeometryWithoutMeshFails) {
  EXPECT_FALSE(reader->ImportGeometry(Parse(Geometry("empty", ""))));
  EXPECT_EQ(CountMessage("ERROR: no mesh found for library empty"), 1);
  EXPECT_EQ(reader->GetState().nodeAttributes.GetCount(), 0);
}

TEST_F(GeometryTest, MeshWithoutVerticesFailsAndIsNotRegistered) {
  EXPECT_FALSE(reader->ImportGeometry(Parse(Geometry("novert", Mesh(SquarePositions() + kTriangle)))));
  EXPECT_EQ(CountMessage("ERROR: <vertex> node not found"), 1);
  EXPECT_EQ(Registered("novert"), nullptr);
  EXPECT_FALSE(reader->GetStatus());
  // Nothing was read into the mesh: no polygons were made.
  ASSERT_EQ(manager.GetSrcObjectCount<KZylMesh>(), 1);
  EXPECT_EQ(manager.GetSrcObject<KZylMesh>(0)->GetPolygonCount(), 0);
}

TEST_F(GeometryTest, FailedPolygonsLeaveTheMeshUnregistered) {
  const std::string noVertex = "<triangles><p>0 1 2</p></triangles>";
  EXPECT_FALSE(reader->ImportGeometry(Parse(Geometry("bad", Mesh(SquarePositions() + PositionVertices() + noVertex)))));
  EXPECT_EQ(Registered("bad"), nullptr);
  ASSERT_EQ(manager.GetSrcObjectCount<KZylMesh>(), 1);
  EXPECT_EQ(manager.GetSrcObject<KZylMesh>(0)->GetControlPointsCount(), 4);
}

TEST_F(GeometryTest, PositionsOnlyGiveDefaultNormalsAndNoColours) {
  bool ok = false;
  KZylMesh* mesh = ReadVertices(Mesh(SquarePositions() + PositionVertices()), &ok);
  ASSERT_TRUE(ok);
  ASSERT_EQ(mesh->GetControlPointsCount(), 4);
  const KZylLayerElementNormal* normals = mesh->GetNormals();
  ASSERT_NE(normals, nullptr);
  ASSERT_EQ(normals->GetDirectArray().GetCount(), 4);
  for (const KZylVector4& normal : normals->GetDirectArray()) EXPECT_EQ(normal, KZylVector4());
  EXPECT_EQ(mesh->GetLayer(0)->GetVertexColors(), nullptr);
}

std::string TenPositionsWithNormals(int normalCount) {
  std::string positions;
  std::string normals;
  for (int i = 0; i < 10; ++i) positions += std::to_string(i) + " 0 0 ";
  for (int i = 0; i < normalCount; ++i) normals += "0 0 " + std::to_string(i + 1) + " ";
  return Mesh(FloatSource("pos", positions, 3) + FloatSource("nrm", normals, 3) +
              "<vertices id=\"verts\"><input semantic=\"POSITION\" source=\"#pos\"/>"
              "<input semantic=\"NORMAL\" source=\"#nrm\"/></vertices>");
}

TEST_F(GeometryTest, FewerNormalsThanPositionsDropsEveryNormal) {
  KZylMesh* mesh = ReadVertices(TenPositionsWithNormals(9));
  ASSERT_EQ(mesh->GetControlPointsCount(), 10);
  const KArrayTemplate<KZylVector4>& normals = mesh->GetNormals()->GetDirectArray();
  ASSERT_EQ(normals.GetCount(), 10);
  for (const KZylVector4& normal : normals) EXPECT_EQ(normal, KZylVector4());
  EXPECT_EQ(mesh->GetControlPointAt(9), KZylVector4(9, 0, 0, 0));
}

TEST_F(GeometryTest, SurplusNormalsAreIgnored) {
  KZylMesh* mesh = ReadVertices(TenPositionsWithNormals(11));
  const KArrayTemplate<KZylVector4>& normals = mesh->GetNormals()->GetDirectArray();
  ASSERT_EQ(normals.GetCount(), 10);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(normals[i], KZylVector4(0, 0, i + 1, 0)) << i;
  EXPECT_EQ(mesh->GetNormals()->GetMappingMode(), KZylLayerElement::eByControlPoint);
}

TEST_F(GeometryTest, UvInVerticesIsReportedOncePerReader) {
  const std::string vertices = "<vertices id=\"verts\"><input semantic=\"POSITION\" source=\"#pos\"/>"
                               "<input semantic=\"UV\" source=\"#pos\"/></vertices>";
  const std::string mesh = Mesh(SquarePositions() + vertices + kTriangle);
  const std::string document = Collada("<library_geometries>" + Geometry("a", mesh) + Geometry("b", mesh) +
                                       "</library_geometries>");
  zyldae::ReadResult read = ReadText(document);
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(zyltest::CountMessage(read, "Warning: UV not supported in vertices input"), 1);
}

TEST_F(GeometryTest, TexcoordInVerticesIsAWarningAndTheVerticesAreRead) {
  const std::string vertices = "<vertices id=\"verts\"><input semantic=\"TEXCOORD\" source=\"#nowhere\"/>"
                               "<input semantic=\"POSITION\" source=\"#pos\"/></vertices>";
  bool ok = false;
  KZylMesh* mesh = ReadVertices(Mesh(SquarePositions() + vertices), &ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(mesh->GetControlPointsCount(), 4);
  EXPECT_EQ(CountMessage("Warning: TEXCOORD not supported in vertices input"), 1);
}

TEST_F(GeometryTest, UnknownSemanticInVerticesIsAnError) {
  const std::string vertices = "<vertices id=\"verts\"><input semantic=\"POSITION\" source=\"#pos\"/>"
                               "<input semantic=\"BINORMAL\" source=\"#pos\"/></vertices>";
  bool ok = true;
  ReadVertices(Mesh(SquarePositions() + vertices), &ok);
  EXPECT_FALSE(ok);
  EXPECT_EQ(CountMessage("ERROR: BINORMAL not supported in vertices input"), 1);
}

TEST_F(GeometryTest, SourceAttributeLosesItsFirstCharacterWhateverItIs) {
  // "box-pos" is looked up as "ox-pos".
  bool ok = false;
  KZylMesh* mesh = ReadVertices(Mesh(SquarePositions("ox-pos") + PositionVertices("box-pos")), &ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(mesh->GetControlPointsCount(), 4);

  ReadVertices(Mesh(SquarePositions("box-pos") + PositionVertices("box-pos")), &ok);
  EXPECT_FALSE(ok);
  EXPECT_EQ(CountMessage("ERROR: source box-pos not source in vertices input"), 1);
}

TEST_F(GeometryTest, MissingVerticesSourceIsAnError) {
  bool ok = true;
  ReadVertices(Mesh(SquarePositions() + PositionVertices("#box-pos")), &ok);
  EXPECT_FALSE(ok);
  EXPECT_EQ(CountMessage("ERROR: source #box-pos not source in vertices input"), 1);
}

TEST_F(GeometryTest, UnreadableVerticesSourceIsAnError) {
  const std::string noArray = "<source id=\"pos\"><technique_common><accessor stride=\"3\"/></technique_common></source>";
  bool ok = true;
  ReadVertices(Mesh(noArray + PositionVertices()), &ok);
  EXPECT_FALSE(ok);
  EXPECT_EQ(CountMessage("ERROR: reading array in <source>: #pos"), 1);
}

const std::string kColoredVertices =
    "<vertices id=\"verts\"><input semantic=\"POSITION\" source=\"#pos\"/>"
    "<input semantic=\"COLOR\" source=\"#col\"/></vertices>";
const std::string kThreeColors = FloatSource("col", "1 0 0  0 1 0  0 0 1", 3);

TEST_F(GeometryTest, ColoursBecomeAVertexColourElementByControlPoint) {
  KZylMesh* mesh = ReadVertices(Mesh(SquarePositions() + kThreeColors + kColoredVertices));
  const KZylLayerElementVertexColor* colors = mesh->GetLayer(0)->GetVertexColors();
  ASSERT_NE(colors, nullptr);
  EXPECT_EQ(colors->GetMappingMode(), KZylLayerElement::eByControlPoint);
  EXPECT_EQ(colors->GetReferenceMode(), KZylLayerElement::eDirect);
  // As many colours as the source has, not as many as control points; alpha defaults to 1.
  ASSERT_EQ(colors->GetDirectArray().GetCount(), 3);
  EXPECT_EQ(colors->GetDirectArray()[1], KZylColor(0, 1, 0, 1));
  EXPECT_EQ(mesh->GetControlPointsCount(), 4);
}

TEST_F(GeometryTest, PolygonColoursGoOnTheElementTheVerticesMade) {
  const std::string polygonColors = FloatSource("pcol", "0.5 0.5 0.5", 3, "shade");
  const std::string triangles = "<triangles>" + VertexInput() +
                                "<input semantic=\"COLOR\" source=\"#pcol\" offset=\"0\"/><p>0 1 2</p></triangles>";
  ASSERT_TRUE(reader->ImportGeometry(
      Parse(Geometry("tinted", Mesh(SquarePositions() + kThreeColors + polygonColors + kColoredVertices + triangles)))));
  const KZylLayerElementVertexColor* colors = Registered("tinted")->GetLayer(0)->GetVertexColors();
  ASSERT_NE(colors, nullptr);
  EXPECT_EQ(colors->GetMappingMode(), KZylLayerElement::eByPolygonVertex);
  EXPECT_EQ(colors->GetReferenceMode(), KZylLayerElement::eIndexToDirect);
  EXPECT_EQ(colors->GetName(), "shade");
  // The vertices' three colours, then the polygons' one; the indices are not rebased.
  ASSERT_EQ(colors->GetDirectArray().GetCount(), 4);
  EXPECT_EQ(colors->GetDirectArray()[3], KZylColor(0.5, 0.5, 0.5, 1));
  EXPECT_EQ(colors->GetIndexArray(), KArrayTemplate<int>({0, 1, 2}));
}

TEST_F(GeometryTest, GeometryLibraryReadsEveryGeometryThroughTheDocument) {
  const std::string mesh = Mesh(SquarePositions() + PositionVertices() + kTriangle);
  zyldae::ReadResult read =
      ReadText(Collada("<library_geometries><extra/>" + Geometry("a", mesh) + Geometry("b", mesh) + "</library_geometries>"));
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(read.manager->GetSrcObjectCount<KZylMesh>(), 2);
}

TEST_F(GeometryTest, FailedGeometryFailsTheRead) {
  zyldae::ReadResult read = ReadText(Collada("<library_geometries>" + Geometry("g", "") + "</library_geometries>"));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(zyltest::CountMessage(read, "ERROR: no mesh found for library g"), 1);
}

}  // namespace
}  // namespace zyltest
