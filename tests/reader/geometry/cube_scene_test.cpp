// A textured cube read end to end: geometry, material binding on its node, the scene's
// materials and textures, checked through the kit and through the dump.

#include <gtest/gtest.h>

#include "tests/support/documents.h"

namespace zyltest {
namespace {

using namespace zylsdk;

const char* const kCubeLibraries = R"(
<library_images>
  <image id="wood-image"><init_from>file:///C|/maps/wood.tga</init_from></image>
</library_images>
<library_effects>
  <effect id="wood-fx"><profile_COMMON>
    <newparam sid="wood-surface"><surface type="2D"><init_from>wood-image</init_from></surface></newparam>
    <newparam sid="wood-sampler"><sampler2D><source>wood-surface</source></sampler2D></newparam>
    <technique sid="common"><phong>
      <diffuse><texture texture="wood-sampler" texcoord="UVSET0"><extra><technique profile="KORU"><wrapU>FALSE</wrapU></technique></extra></texture></diffuse>
      <shininess><float>12</float></shininess>
    </phong></technique>
  </profile_COMMON></effect>
</library_effects>
<library_materials>
  <material id="wood"><instance_effect url="#wood-fx"/></material>
</library_materials>
<library_geometries>
  <geometry id="cube-geom"><mesh>
    <source id="cube-pos"><float_array id="cube-pos-array" count="24">
      -1 -1 1  1 -1 1  -1 1 1  1 1 1  -1 1 -1  1 1 -1  -1 -1 -1  1 -1 -1</float_array>
      <technique_common><accessor source="#cube-pos-array" count="8" stride="3">
        <param name="X" type="float"/><param name="Y" type="float"/><param name="Z" type="float"/>
      </accessor></technique_common></source>
    <source id="cube-nrm" name="cube-normals"><float_array id="cube-nrm-array" count="18">
      0 0 1  0 1 0  0 0 -1  0 -1 0  1 0 0  -1 0 0</float_array>
      <technique_common><accessor source="#cube-nrm-array" count="6" stride="3">
        <param name="X" type="float"/><param name="Y" type="float"/><param name="Z" type="float"/>
      </accessor></technique_common></source>
    <source id="cube-uv" name="map1"><float_array id="cube-uv-array" count="8">0 0  1 0  1 1  0 1</float_array>
      <technique_common><accessor source="#cube-uv-array" count="4" stride="2">
        <param name="S" type="float"/><param name="T" type="float"/>
      </accessor></technique_common></source>
    <vertices id="cube-vtx"><input semantic="POSITION" source="#cube-pos"/></vertices>
    <polygons count="6" material="wood">
      <input semantic="VERTEX" source="#cube-vtx" offset="0"/>
      <input semantic="NORMAL" source="#cube-nrm" offset="1"/>
      <input semantic="TEXCOORD" source="#cube-uv" offset="2" set="0"/>
      <p>0 0 0  1 0 1  3 0 2  2 0 3</p>
      <p>2 1 0  3 1 1  5 1 2  4 1 3</p>
      <p>4 2 0  5 2 1  7 2 2  6 2 3</p>
      <p>6 3 0  7 3 1  1 3 2  0 3 3</p>
      <p>1 4 0  7 4 1  5 4 2  3 4 3</p>
      <p>6 5 0  0 5 1  2 5 2  4 5 3</p>
    </polygons>
  </mesh></geometry>
</library_geometries>
)";

// The polygons name their material by the material's id, so that its textures are found when
// the mesh is read; the node binds that symbol to the same material.
std::string CubeNode(const std::string& id) {
  return "<node id=\"" + id + "\" name=\"" + id +
         "\"><instance_geometry url=\"#cube-geom\"><bind_material><technique_common>"
         "<instance_material symbol=\"wood\" target=\"#wood\"/>"
         "</technique_common></bind_material></instance_geometry></node>";
}

std::string CubeDocument(const std::string& nodes) {
  return Collada(std::string(kCubeLibraries) + "<library_visual_scenes><visual_scene id=\"scene\">" + nodes +
                 "</visual_scene></library_visual_scenes><scene><instance_visual_scene url=\"#scene\"/></scene>");
}

KZylMesh* MeshOf(KZylNode* node) {
  KZylNodeAttribute* attribute = node ? node->GetNodeAttribute() : nullptr;
  return attribute && attribute->Is(KZylMesh::ClassId) ? static_cast<KZylMesh*>(attribute) : nullptr;
}

TEST(CubeScene, ReadsThroughTheKit) {
  zyldae::ReadResult read = ReadText(CubeDocument(CubeNode("box")));
  ASSERT_TRUE(read.ok);
  KZylNode* node = read.scene->FindNodeByName("box");
  ASSERT_NE(node, nullptr);
  KZylMesh* mesh = MeshOf(node);
  ASSERT_NE(mesh, nullptr);
  EXPECT_EQ(mesh->GetControlPointsCount(), 8);
  EXPECT_EQ(mesh->GetControlPointAt(7), KZylVector4(1, -1, -1, 0));
  ASSERT_EQ(mesh->GetPolygonCount(), 6);
  EXPECT_EQ(mesh->GetPolygonVertexCount(), 24);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(mesh->GetPolygonSize(i), 4);
  EXPECT_EQ(mesh->GetPolygonVertex(4, 1), 7);

  const KZylLayer* layer = mesh->GetLayer(0);
  ASSERT_NE(layer, nullptr);
  const KZylLayerElementNormal* normals = layer->GetNormals();
  ASSERT_NE(normals, nullptr);
  EXPECT_EQ(normals->GetMappingMode(), KZylLayerElement::eByPolygonVertex);
  EXPECT_EQ(normals->GetReferenceMode(), KZylLayerElement::eDirect);
  ASSERT_EQ(normals->GetDirectArray().GetCount(), 24);
  EXPECT_EQ(normals->GetDirectArray()[5], KZylVector4(0, 1, 0, 0));
  EXPECT_EQ(normals->GetDirectArray()[23], KZylVector4(-1, 0, 0, 0));

  const KZylLayerElementUV* uvs = layer->GetUVs(KZylLayerElement::eDiffuseTextures);
  ASSERT_NE(uvs, nullptr);
  EXPECT_EQ(uvs->GetDirectArray().GetCount(), 4);
  EXPECT_EQ(uvs->GetIndexArray().GetCount(), 24);
  EXPECT_EQ(uvs->GetIndexArray()[6], 2);

  // The slot holds the bound document material, which is connected to the node and the scene.
  const KZylLayerElementMaterial* materials = layer->GetMaterials();
  ASSERT_NE(materials, nullptr);
  EXPECT_EQ(materials->GetMappingMode(), KZylLayerElement::eAllSame);
  ASSERT_EQ(materials->GetDirectArray().GetCount(), 1);
  KZylSurfaceMaterial* material = materials->GetDirectArray()[0];
  ASSERT_NE(material, nullptr);
  EXPECT_EQ(material->GetName(), "wood");
  ASSERT_TRUE(material->Is(KZylSurfacePhong::ClassId));
  EXPECT_EQ(material->FindProperty("Shininess").GetDouble(), 12.0);
  EXPECT_TRUE(node->IsConnectedZylSrc(material));
  EXPECT_EQ(material->GetScene(), read.scene);

  const KZylLayerElementTexture* textures = layer->GetTextures(KZylLayerElement::eDiffuseTextures);
  ASSERT_NE(textures, nullptr);
  ASSERT_EQ(textures->GetDirectArray().GetCount(), 1);
  KZylTexture* texture = textures->GetDirectArray()[0];
  ASSERT_NE(texture, nullptr);
  EXPECT_EQ(texture->GetName(), "wood-image");
  EXPECT_EQ(texture->GetFileName(), "C:/maps/wood.tga");
  EXPECT_EQ(texture->GetWrapModeU(), KZylTexture::eClamp);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(mesh->GetPolygonTexture(i), 0);
  EXPECT_TRUE(Messages(read).empty());
}

TEST(CubeScene, ReadsThroughTheDump) {
  zyldae::Json dump = DumpText(CubeDocument(CubeNode("box")));
  ASSERT_EQ(dump["ok"], true);
  zyldae::Json& scene = dump["scene"];
  ASSERT_EQ(scene["root"]["children"].size(), 1u);
  zyldae::Json& node = scene["root"]["children"][0];
  EXPECT_EQ(node["name"], "box");
  zyldae::Json& mesh = node["attribute"];
  EXPECT_EQ(mesh["type"], "mesh");
  EXPECT_EQ(mesh["controlPointCount"], 8);
  EXPECT_EQ(mesh["polygonCount"], 6);
  EXPECT_EQ(mesh["polygonVertexCount"], 24);
  EXPECT_EQ(mesh["polygons"][1]["vertices"], zyldae::Json::parse("[2, 3, 5, 4]"));
  EXPECT_EQ(mesh["polygons"][1]["material"], 0);
  zyldae::Json& layer = mesh["layers"][0];
  EXPECT_EQ(layer["normals"]["mapping"], 2);
  EXPECT_EQ(layer["normals"]["directCount"], 24);
  EXPECT_EQ(layer["normals"]["direct"][0], zyldae::Json::parse("[0, 0, 1, 0]"));
  EXPECT_EQ(layer["uvs"]["3"]["name"], "map1");
  EXPECT_EQ(layer["uvs"]["3"]["reference"], 2);
  EXPECT_EQ(layer["uvs"]["3"]["indexCount"], 24);
  EXPECT_EQ(layer["uvs"]["3"]["direct"][2], zyldae::Json::parse("[1, 1]"));

  // Layer elements name materials and textures by their uid in the scene's lists.
  zyldae::Json& materialUid = layer["materials"]["direct"][0];
  ASSERT_TRUE(materialUid.is_number());
  zyldae::Json& material = scene["materials"][materialUid.get<int>() - 1];
  EXPECT_EQ(material["name"], "wood");
  EXPECT_EQ(material["class"], "phong");
  EXPECT_EQ(node["materials"], zyldae::Json::array({materialUid}));
  zyldae::Json& textureUid = layer["textures"]["3"]["direct"][0];
  ASSERT_TRUE(textureUid.is_number());
  zyldae::Json& texture = scene["textures"][textureUid.get<int>() - 1];
  EXPECT_EQ(texture["fileName"], "C:/maps/wood.tga");
  EXPECT_EQ(texture["wrapU"], 1);
  EXPECT_EQ(layer["textures"]["3"]["mapping"], 3);
  EXPECT_EQ(layer["textures"]["3"]["blendMode"], 0);
}

TEST(CubeScene, TwoInstancesGetEqualButIndependentMeshes) {
  zyldae::ReadResult read = ReadText(CubeDocument(CubeNode("cubeA") + CubeNode("cubeB")));
  ASSERT_TRUE(read.ok);
  KZylMesh* left = MeshOf(read.scene->FindNodeByName("cubeA"));
  KZylMesh* right = MeshOf(read.scene->FindNodeByName("cubeB"));
  ASSERT_NE(left, nullptr);
  ASSERT_NE(right, nullptr);
  ASSERT_NE(left, right);
  EXPECT_EQ(left->GetControlPoints(), right->GetControlPoints());
  EXPECT_EQ(left->GetPolygonVertices(), right->GetPolygonVertices());
  EXPECT_EQ(left->GetLayer(0)->GetNormals()->GetDirectArray(), right->GetLayer(0)->GetNormals()->GetDirectArray());
  EXPECT_EQ(left->GetLayer(0)->GetUVs()->GetIndexArray(), right->GetLayer(0)->GetUVs()->GetIndexArray());
  EXPECT_EQ(left->GetLayer(0)->GetMaterials()->GetDirectArray(), right->GetLayer(0)->GetMaterials()->GetDirectArray());

  left->SetControlPointAt(KZylVector4(9, 9, 9, 0), 0);
  left->GetLayer(0)->GetNormals()->GetDirectArray()[0] = KZylVector4(1, 0, 0, 0);
  left->GetLayer(0)->GetUVs()->GetIndexArray()[0] = 3;
  EXPECT_EQ(right->GetControlPointAt(0), KZylVector4(-1, -1, 1, 0));
  EXPECT_EQ(right->GetLayer(0)->GetNormals()->GetDirectArray()[0], KZylVector4(0, 0, 1, 0));
  EXPECT_EQ(right->GetLayer(0)->GetUVs()->GetIndexArray()[0], 0);
}

}  // namespace
}  // namespace zyltest
