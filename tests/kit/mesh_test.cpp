// Meshes: polygons, smooth vertex normals, shapes, the normals conversion and the material
// index lookup.

#include <gtest/gtest.h>

#include <cmath>

#include "kit/zylsdk.h"
#include "tests/support/near.h"

namespace {

using namespace zylsdk;

class MeshTest : public ::testing::Test {
 protected:
  // A mesh with the given control points (z = 0 unless given) and polygons.
  KZylMesh* MakeMesh(std::initializer_list<KZylVector4> points, std::initializer_list<std::vector<int>> polygons) {
    KZylMesh* mesh = KZylMesh::Create(&manager, "mesh");
    mesh->InitControlPointArray(static_cast<int>(points.size()));
    int i = 0;
    for (const KZylVector4& point : points) mesh->SetControlPointAt(point, i++);
    for (const std::vector<int>& polygon : polygons) {
      mesh->BeginPolygon();
      for (int index : polygon) mesh->AddPolygon(index);
      mesh->EndPolygon();
    }
    return mesh;
  }
  static ::testing::AssertionResult Near(const KZylVector4& actual, const KZylVector4& expected) {
    return zyltest::Near(actual, expected, 1e-12);
  }
  KZylSdkManager manager;
};

TEST_F(MeshTest, PolygonsKeepTheirVerticesMaterialTextureAndGroup) {
  KZylMesh* mesh = KZylMesh::Create(&manager, "m");
  mesh->BeginPolygon(2, 3, 4);
  mesh->AddPolygon(0);
  mesh->AddPolygon(1);
  mesh->AddPolygon(7);
  // A polygon begun while another is open closes the open one; begun, it counts at once.
  mesh->BeginPolygon();
  EXPECT_EQ(mesh->GetPolygonCount(), 2);
  mesh->AddPolygon(-1);
  mesh->EndPolygon();
  ASSERT_EQ(mesh->GetPolygonCount(), 2);
  EXPECT_EQ(mesh->GetPolygonSize(0), 3);
  EXPECT_EQ(mesh->GetPolygonVertex(0, 2), 7);
  EXPECT_EQ(mesh->GetPolygonVertex(0, 3), -1);
  EXPECT_EQ(mesh->GetPolygonVertex(5, 0), -1);
  EXPECT_EQ(mesh->GetPolygonVertex(1, 0), -1);
  EXPECT_EQ(mesh->GetPolygonMaterial(0), 2);
  EXPECT_EQ(mesh->GetPolygonTexture(0), 3);
  EXPECT_EQ(mesh->GetPolygonGroup(0), 4);
  EXPECT_EQ(mesh->GetPolygonMaterial(1), -1);
  EXPECT_EQ(mesh->GetPolygonSize(2), -1);
  EXPECT_EQ(mesh->GetPolygonVertexIndex(1), 3);
  EXPECT_EQ(mesh->GetPolygonVertexCount(), 4);
  // A vertex added without an open polygon starts one.
  mesh->AddPolygon(5);
  EXPECT_EQ(mesh->GetPolygonCount(), 3);
  EXPECT_EQ(mesh->GetPolygonVertex(2, 0), 5);
}

TEST_F(MeshTest, ComputeVertexNormalsOfACounterClockwiseQuad) {
  KZylMesh* mesh = MakeMesh({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {{0, 1, 2, 3}});
  EXPECT_TRUE(mesh->ComputeVertexNormals(false));
  KZylLayerElementNormal* normals = mesh->GetNormals();
  ASSERT_NE(normals, nullptr);
  EXPECT_EQ(normals->GetMappingMode(), KZylLayerElement::eByPolygonVertex);
  EXPECT_EQ(normals->GetReferenceMode(), KZylLayerElement::eDirect);
  ASSERT_EQ(normals->GetDirectArray().GetCount(), 4);
  for (const KZylVector4& normal : normals->GetDirectArray()) EXPECT_TRUE(Near(normal, KZylVector4(0, 0, 1, 0)));
}

TEST_F(MeshTest, ComputeVertexNormalsAveragesThePolygonsOfAPoint) {
  // Two triangles folded along the edge 0-1: one faces +Z, the other +Y (counter-clockwise).
  KZylMesh* mesh = MakeMesh({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, -1}}, {{0, 1, 2}, {0, 1, 3}});
  ASSERT_TRUE(mesh->ComputeVertexNormals());
  const KArrayTemplate<KZylVector4>& normals = mesh->GetNormals()->GetDirectArray();
  ASSERT_EQ(normals.GetCount(), 6);
  double h = std::sqrt(0.5);
  EXPECT_TRUE(Near(normals[0], KZylVector4(0, h, h, 0)));  // point 0, shared
  EXPECT_TRUE(Near(normals[1], KZylVector4(0, h, h, 0)));  // point 1, shared
  EXPECT_TRUE(Near(normals[2], KZylVector4(0, 0, 1, 0)));  // point 2, first triangle only
  EXPECT_TRUE(Near(normals[3], KZylVector4(0, h, h, 0)));
  EXPECT_TRUE(Near(normals[4], KZylVector4(0, h, h, 0)));
  EXPECT_TRUE(Near(normals[5], KZylVector4(0, 1, 0, 0)));  // point 3, second triangle only
}

TEST_F(MeshTest, ComputeVertexNormalsSkipsIndicesOutsideTheControlPoints) {
  KZylMesh* mesh = MakeMesh({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {{0, -1, 1, 2, 99, 3}});
  ASSERT_TRUE(mesh->ComputeVertexNormals());
  const KArrayTemplate<KZylVector4>& normals = mesh->GetNormals()->GetDirectArray();
  ASSERT_EQ(normals.GetCount(), 6);
  EXPECT_TRUE(Near(normals[0], KZylVector4(0, 0, 1, 0)));
  EXPECT_TRUE(Near(normals[1], KZylVector4(0, 0, 0, 0)));  // -1: no point, no normal
  EXPECT_TRUE(Near(normals[4], KZylVector4(0, 0, 0, 0)));  // 99: likewise
  EXPECT_TRUE(Near(normals[5], KZylVector4(0, 0, 1, 0)));
}

TEST_F(MeshTest, ComputeVertexNormalsLeavesZeroWhereTheSumIsZero) {
  // A degenerate polygon (all on a line) and a point no polygon uses.
  KZylMesh* mesh = MakeMesh({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {5, 5, 5}}, {{0, 1, 2}});
  ASSERT_TRUE(mesh->ComputeVertexNormals());
  for (const KZylVector4& normal : mesh->GetNormals()->GetDirectArray()) {
    for (int k = 0; k < 4; ++k) EXPECT_TRUE(std::isfinite(normal[k]));
    EXPECT_TRUE(Near(normal, KZylVector4(0, 0, 0, 0)));
  }
  // Two opposite faces on the same points cancel out.
  KZylMesh* flat = MakeMesh({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}, {0, 2, 1}});
  ASSERT_TRUE(flat->ComputeVertexNormals());
  for (const KZylVector4& normal : flat->GetNormals()->GetDirectArray()) EXPECT_TRUE(Near(normal, KZylVector4()));
}

TEST_F(MeshTest, AddShapeRefusesBadShapesAndNames) {
  KZylMesh* mesh = MakeMesh({{0, 0, 0}, {1, 0, 0}}, {});
  KZylShape* shape = KZylShape::Create(&manager, "smile");
  shape->InitControlPointArray(2);
  EXPECT_EQ(mesh->AddShape(nullptr, "x"), -1);
  EXPECT_FALSE(mesh->GetLastErrorString().IsEmpty());
  mesh->GetError().Clear();
  EXPECT_EQ(mesh->AddShape(shape, ""), -1);
  EXPECT_FALSE(mesh->GetLastErrorString().IsEmpty());
  mesh->GetError().Clear();
  KZylShape* wrongSize = KZylShape::Create(&manager, "wrong");
  wrongSize->InitControlPointArray(3);
  EXPECT_EQ(mesh->AddShape(wrongSize, "wrong"), -1);
  EXPECT_FALSE(mesh->GetLastErrorString().IsEmpty());
  EXPECT_FALSE(mesh->FindProperty("wrong").IsValid());

  EXPECT_EQ(mesh->AddShape(shape, "smile"), 0);
  mesh->GetError().Clear();
  EXPECT_EQ(mesh->AddShape(shape, "smile"), -1);  // the name is used
  EXPECT_FALSE(mesh->GetLastErrorString().IsEmpty());
  KZylShape* frown = KZylShape::Create(&manager, "frown");
  frown->InitControlPointArray(2);
  EXPECT_EQ(mesh->AddShape(frown, "frown"), 1);
  ASSERT_EQ(mesh->GetShapeCount(), 2);
  EXPECT_EQ(mesh->GetShape(1), frown);
  EXPECT_EQ(mesh->GetShapeName(0), "smile");
  EXPECT_EQ(mesh->GetShape(2), nullptr);
  EXPECT_EQ(mesh->GetShapeName(-1), "");
}

TEST_F(MeshTest, AddShapeMakesAWeightPropertyNamedAfterTheShape) {
  KZylMesh* mesh = MakeMesh({{0, 0, 0}}, {});
  KZylShape* shape = KZylShape::Create(&manager, "s");
  shape->InitControlPointArray(1);
  ASSERT_EQ(mesh->AddShape(shape, "blink"), 0);
  KZylProperty weight = mesh->FindProperty("blink");
  ASSERT_TRUE(weight.IsValid());
  EXPECT_EQ(weight.GetPropertyDataType(), eZylDouble);
  EXPECT_EQ(weight.GetDouble(), 0.0);
  EXPECT_TRUE(weight.Set(0.75));
  EXPECT_EQ(mesh->FindProperty("blink").GetDouble(), 0.75);
}

TEST_F(MeshTest, EmulateNormalsExpandsControlPointNormalsOfTheMeshAndItsShapes) {
  KZylMesh* mesh = MakeMesh({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}, {2, 1, 0}});
  mesh->InitNormals(3);
  for (int i = 0; i < 3; ++i) mesh->SetControlPointAndNormal(mesh->GetControlPointAt(i), KZylVector4(i, 0, 0), i);
  KZylShape* shape = KZylShape::Create(&manager, "s");
  shape->InitControlPointArray(3);
  shape->InitNormals(3);
  for (int i = 0; i < 3; ++i) shape->SetControlPointAndNormal(KZylVector4(), KZylVector4(0, i, 0), i);
  ASSERT_EQ(mesh->AddShape(shape, "s"), 0);

  KZylGeometryConverter* converter = KZylGeometryConverter::Create(&manager, "");
  ASSERT_TRUE(converter->EmulateNormalsByPolygonVertex(mesh));
  const int expected[6] = {0, 1, 2, 2, 1, 0};
  for (KZylGeometryBase* geometry : {static_cast<KZylGeometryBase*>(mesh), static_cast<KZylGeometryBase*>(shape)}) {
    KZylLayerElementNormal* normals = geometry->GetNormals();
    EXPECT_EQ(normals->GetMappingMode(), KZylLayerElement::eByPolygonVertex);
    EXPECT_EQ(normals->GetReferenceMode(), KZylLayerElement::eDirect);
    ASSERT_EQ(normals->GetDirectArray().GetCount(), 6);
    for (int k = 0; k < 6; ++k) {
      double value = geometry == mesh ? normals->GetDirectArray()[k][0] : normals->GetDirectArray()[k][1];
      EXPECT_EQ(value, expected[k]) << "vertex " << k;
    }
  }
  // Already by polygon vertex: a second conversion keeps them.
  ASSERT_TRUE(converter->EmulateNormalsByPolygonVertex(mesh));
  EXPECT_EQ(mesh->GetNormals()->GetDirectArray().GetCount(), 6);
  EXPECT_EQ(mesh->GetNormals()->GetDirectArray()[2][0], 2.0);
}

TEST_F(MeshTest, EmulateNormalsRefusesVerticesWithoutControlPointsAndChangesNothing) {
  KZylMesh* mesh = MakeMesh({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 5}});
  mesh->InitNormals(3);
  KZylGeometryConverter* converter = KZylGeometryConverter::Create(&manager, "");
  EXPECT_FALSE(converter->EmulateNormalsByPolygonVertex(mesh));
  EXPECT_EQ(mesh->GetNormals()->GetMappingMode(), KZylLayerElement::eByControlPoint);
  EXPECT_EQ(mesh->GetNormals()->GetDirectArray().GetCount(), 3);
  EXPECT_FALSE(converter->EmulateNormalsByPolygonVertex(nullptr));

  // A shape with fewer points than a polygon names fails the conversion of the mesh too.
  KZylMesh* other = MakeMesh({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}});
  other->InitNormals(3);
  KZylShape* shape = KZylShape::Create(&manager, "s");
  shape->InitControlPointArray(3);
  ASSERT_EQ(other->AddShape(shape, "s"), 0);
  shape->InitControlPointArray(2);  // shrunk after being added
  EXPECT_FALSE(converter->EmulateNormalsByPolygonVertex(other));
  EXPECT_EQ(other->GetNormals()->GetMappingMode(), KZylLayerElement::eByControlPoint);
}

TEST_F(MeshTest, GmiFindsTheFirstMaterialOfANameInALayer) {
  KZylMesh* mesh = KZylMesh::Create(&manager, "m");
  EXPECT_EQ(mesh->GMI("wood"), -1);  // no layer
  mesh->CreateLayer();
  EXPECT_EQ(mesh->GMI("wood"), -1);  // no material element
  KZylLayerElementMaterial* element = manager.CreateKZylLayerElementMaterial("");
  element->GetDirectArray().Add(nullptr);
  element->GetDirectArray().Add(KZylSurfaceLambert::Create(&manager, "stone"));
  element->GetDirectArray().Add(KZylSurfaceLambert::Create(&manager, "wood"));
  element->GetDirectArray().Add(KZylSurfaceLambert::Create(&manager, "wood"));
  mesh->GetLayer(0)->SetMaterials(element);
  EXPECT_EQ(mesh->GMI("wood"), 2);
  EXPECT_EQ(mesh->GMI("stone", 0), 1);
  EXPECT_EQ(mesh->GMI("Wood"), -1);
  EXPECT_EQ(mesh->GMI("wood", 1), -1);
  EXPECT_EQ(mesh->GMI("wood", -1), -1);
}

TEST_F(MeshTest, LayerCountsByElementType) {
  KZylMesh* mesh = KZylMesh::Create(&manager, "m");
  mesh->CreateLayer();
  mesh->CreateLayer();
  mesh->GetLayer(1)->SetMaterials(manager.CreateKZylLayerElementMaterial(""));
  mesh->GetLayer(1)->SetUVs(manager.CreateKZylLayerElementUV(""), KZylLayerElement::eDiffuseTextures);
  EXPECT_EQ(mesh->GetLayerCount(), 2);
  EXPECT_EQ(mesh->GetLayerCount(KZylLayerElement::eMaterial), 1);
  EXPECT_EQ(mesh->GetLayer(0, KZylLayerElement::eMaterial), mesh->GetLayer(1));
  EXPECT_EQ(mesh->GetLayer(1, KZylLayerElement::eMaterial), nullptr);
  EXPECT_EQ(mesh->GetLayerCount(KZylLayerElement::eUV), 1);
  EXPECT_NE(mesh->GetLayer(1)->GetUVs(KZylLayerElement::eDiffuseTextures), nullptr);
  EXPECT_EQ(mesh->GetLayerCount(KZylLayerElement::eNormal), 0);
}

TEST_F(MeshTest, ControlPointAccessIsBounded) {
  KZylMesh* mesh = MakeMesh({{1, 2, 3}}, {});
  EXPECT_EQ(mesh->GetControlPointAt(0), KZylVector4(1, 2, 3, 0));
  EXPECT_EQ(mesh->GetControlPointAt(1), KZylVector4());
  EXPECT_EQ(mesh->GetControlPointAt(-1), KZylVector4());
  mesh->SetControlPointAt(KZylVector4(9, 9, 9), 4);
  EXPECT_EQ(mesh->GetControlPointsCount(), 1);
  mesh->InitControlPointArray(3);
  EXPECT_EQ(mesh->GetControlPointAt(2), KZylVector4(0, 0, 0, 1));
  EXPECT_EQ(mesh->GetControlPointAt(0), KZylVector4(1, 2, 3, 0));
}

TEST_F(MeshTest, ClonedLayersCopyValuesAndShareMaterials) {
  KZylMesh* mesh = MakeMesh({{0, 0, 0}}, {});
  mesh->InitNormals(1);
  KZylSurfaceLambert* material = KZylSurfaceLambert::Create(&manager, "m");
  KZylLayerElementMaterial* element = manager.CreateKZylLayerElementMaterial("");
  element->GetDirectArray().Add(material);
  mesh->GetLayer(0)->SetMaterials(element);
  auto* copy = static_cast<KZylMesh*>(mesh->Clone());
  ASSERT_NE(copy, nullptr);
  ASSERT_EQ(copy->GetLayerCount(), 1);
  EXPECT_NE(copy->GetLayer(0), mesh->GetLayer(0));
  EXPECT_EQ(copy->GetLayer(0)->GetMaterials()->GetDirectArray()[0], material);  // the same material
  copy->GetNormals()->GetDirectArray()[0] = KZylVector4(1, 0, 0);
  copy->SetControlPointAt(KZylVector4(5, 5, 5), 0);
  EXPECT_EQ(mesh->GetNormals()->GetDirectArray()[0], KZylVector4());
  EXPECT_EQ(mesh->GetControlPointAt(0), KZylVector4(0, 0, 0, 0));
  // An element another layer owns is copied, not shared.
  KZylLayer other(manager);
  other.SetMaterials(mesh->GetLayer(0)->GetMaterials());
  ASSERT_NE(other.GetMaterials(), nullptr);
  EXPECT_NE(other.GetMaterials(), mesh->GetLayer(0)->GetMaterials());
  EXPECT_EQ(other.GetMaterials()->GetDirectArray()[0], material);
}

}  // namespace
