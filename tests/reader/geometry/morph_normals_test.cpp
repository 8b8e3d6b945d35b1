// The normal conversion that connecting shapes ends with: whatever their mapping and reference,
// the normals of a mesh and of its shapes end as one direct normal per polygon vertex.

#include <gtest/gtest.h>

#include "kit/zylsdk.h"

namespace zyltest {
namespace {

using namespace zylsdk;

const KZylVector4 kUp(0, 0, 1);
const KZylVector4 kDown(0, 0, -1);

class MorphNormalsTest : public ::testing::Test {
 protected:
  // Four control points, two triangles: 0 1 2 and 0 2 3.
  MorphNormalsTest() : mesh(KZylMesh::Create(&manager, "")) {
    mesh->InitControlPointArray(4);
    mesh->InitNormals(4);
    const int triangles[2][3] = {{0, 1, 2}, {0, 2, 3}};
    for (const auto& triangle : triangles) {
      mesh->BeginPolygon();
      for (int k = 0; k < 3; ++k) mesh->AddPolygon(triangle[k]);
      mesh->EndPolygon();
    }
  }

  void SetNormals(KZylLayerElement::EMappingMode mapping, KZylLayerElement::EReferenceMode reference,
                  const std::vector<KZylVector4>& direct, const std::vector<int>& index = {}) {
    KZylLayerElementNormal* normals = mesh->GetNormals();
    normals->SetMappingMode(mapping);
    normals->SetReferenceMode(reference);
    normals->GetDirectArray().Std() = direct;
    normals->GetIndexArray().Std() = index;
  }

  std::vector<KZylVector4> Converted() {
    KZylGeometryConverter* converter = KZylGeometryConverter::Create(&manager, "");
    EXPECT_TRUE(converter->EmulateNormalsByPolygonVertex(mesh));
    const KZylLayerElementNormal* normals = mesh->GetNormals();
    EXPECT_EQ(normals->GetMappingMode(), KZylLayerElement::eByPolygonVertex);
    EXPECT_EQ(normals->GetReferenceMode(), KZylLayerElement::eDirect);
    EXPECT_EQ(normals->GetIndexArray().GetCount(), 0);
    return normals->GetDirectArray().Std();
  }

  KZylSdkManager manager;
  KZylMesh* mesh;
};

TEST_F(MorphNormalsTest, NormalsPerControlPointFollowThePolygons) {
  SetNormals(KZylLayerElement::eByControlPoint, KZylLayerElement::eDirect, {kUp, kDown, kUp, kDown});
  EXPECT_EQ(Converted(), (std::vector<KZylVector4>{kUp, kDown, kUp, kUp, kUp, kDown}));
}

TEST_F(MorphNormalsTest, IndexedNormalsAreResolvedThroughTheirIndex) {
  SetNormals(KZylLayerElement::eByPolygonVertex, KZylLayerElement::eIndexToDirect, {kUp, kDown}, {1, 1, 0, 0, 1, 5});
  // Index 5 names no normal: a zero normal.
  EXPECT_EQ(Converted(), (std::vector<KZylVector4>{kDown, kDown, kUp, kUp, kDown, KZylVector4()}));

  SetNormals(KZylLayerElement::eByControlPoint, KZylLayerElement::eIndexToDirect, {kUp, kDown}, {1, 0, 0, 1});
  EXPECT_EQ(Converted(), (std::vector<KZylVector4>{kDown, kUp, kUp, kDown, kUp, kDown}));
}

TEST_F(MorphNormalsTest, NormalsPerPolygonOrForAllAreRepeated) {
  SetNormals(KZylLayerElement::eByPolygon, KZylLayerElement::eDirect, {kUp, kDown});
  EXPECT_EQ(Converted(), (std::vector<KZylVector4>{kUp, kUp, kUp, kDown, kDown, kDown}));

  SetNormals(KZylLayerElement::eAllSame, KZylLayerElement::eDirect, {kDown});
  EXPECT_EQ(Converted(), std::vector<KZylVector4>(6, kDown));
}

TEST_F(MorphNormalsTest, DirectNormalsPerPolygonVertexAreKept) {
  SetNormals(KZylLayerElement::eByPolygonVertex, KZylLayerElement::eDirect, {kUp, kDown, kUp});
  EXPECT_EQ(Converted(), (std::vector<KZylVector4>{kUp, kDown, kUp}));
}

}  // namespace
}  // namespace zyltest
