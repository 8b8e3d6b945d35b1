#include "tests/gltf/sample_scene.h"

#include <fstream>
#include <string>

namespace zyltest {

using namespace zylsdk;

namespace {

KTime Seconds(double seconds) {
  KTime time;
  time.SetSecondDouble(seconds);
  return time;
}

void Key(KFCurve* curve, double seconds, float value, int interpolation, float leftDerivative = 0.0f, float rightDerivative = 0.0f) {
  const int key = curve->KeyAdd(Seconds(seconds));
  curve->KeySet(key, Seconds(seconds), value, interpolation, KFCurve::eTangentUser, rightDerivative, leftDerivative);
}

KZylNode* AddNode(KZylSdkManager& manager, KZylNode* parent, const char* name) {
  KZylNode* node = KZylNode::Create(&manager, name);
  parent->AddChild(node);
  node->CreateTakeNode("Take 001");
  node->SetCurrentTakeNode("Take 001");
  return node;
}

// Control points: an L-shaped hexagon (concave at point 3), a quad beside it, and an apex.
void AddGeometry(KZylSdkManager& manager, KZylMesh& mesh) {
  const double points[][3] = {{0, 0, 0}, {20, 0, 0}, {20, 10, 0}, {10, 10, 0}, {10, 20, 0}, {0, 20, 0},
                              {30, 0, 0}, {40, 0, 1}, {40, 10, 2}, {30, 10, 1}};
  mesh.InitControlPointArray(10);
  for (int i = 0; i < 10; ++i) mesh.SetControlPointAt(KZylVector4(points[i][0], points[i][1], points[i][2], 1.0), i);
  // The hexagon starts at a corner that does not see the whole polygon: a fan from there would
  // cover ground outside it.
  mesh.BeginPolygon();
  for (int i = 0; i < 6; ++i) mesh.AddPolygon((i + 1) % 6);
  mesh.EndPolygon();
  mesh.BeginPolygon();
  for (int i = 6; i < 10; ++i) mesh.AddPolygon(i);
  mesh.EndPolygon();
  // A corner outside the control points: the polygon cannot be written.
  mesh.BeginPolygon();
  for (int i : {0, 1, 57}) mesh.AddPolygon(i);
  mesh.EndPolygon();

  mesh.CreateLayer();
  mesh.CreateLayer();
  KZylLayer* layer = mesh.GetLayer(0);
  // Normals per polygon vertex, direct; one of them zero.
  KZylLayerElementNormal* normals = manager.CreateKZylLayerElementNormal("");
  normals->SetMappingMode(KZylLayerElement::eByPolygonVertex);
  for (int i = 0; i < mesh.GetPolygonVertexCount(); ++i)
    normals->GetDirectArray().Add(i == 1 ? KZylVector4() : KZylVector4(0.0, 0.6, 0.8 + 0.01 * i));
  layer->SetNormals(normals);
  // Diffuse UVs per polygon vertex through an index; one index outside the direct array.
  KZylLayerElementUV* uvs = manager.CreateKZylLayerElementUV("map1");
  uvs->SetMappingMode(KZylLayerElement::eByPolygonVertex);
  uvs->SetReferenceMode(KZylLayerElement::eIndexToDirect);
  for (int i = 0; i < 10; ++i) uvs->GetDirectArray().Add(KZylVector2(0.1 * i, 1.0 - 0.05 * i));
  for (int i = 0; i < mesh.GetPolygonVertexCount(); ++i) uvs->GetIndexArray().Add(i == 4 ? 99 : mesh.GetPolygonVertices()[i] % 10);
  layer->SetUVs(uvs, KZylLayerElement::eDiffuseTextures);
  // Vertex colours per control point, direct.
  KZylLayerElementVertexColor* colors = manager.CreateKZylLayerElementVertexColor("");
  colors->SetMappingMode(KZylLayerElement::eByControlPoint);
  for (int i = 0; i < 10; ++i) colors->GetDirectArray().Add(KZylColor(0.1 * i, 0.5, 1.0 - 0.1 * i, 1.0));
  layer->SetVertexColors(colors);
  // Materials per polygon, through an index.
  KZylLayerElementMaterial* materials = manager.CreateKZylLayerElementMaterial("");
  materials->SetMappingMode(KZylLayerElement::eByPolygon);
  materials->SetReferenceMode(KZylLayerElement::eIndexToDirect);
  KZylSurfacePhong* phong = KZylSurfacePhong::Create(&manager, "shiny");
  phong->GetDiffuseColor().Set(KZylColor(0.9, 0.1, 0.1));
  phong->GetTransparencyFactor().Set(0.5);
  phong->GetTransparentColor().Set(KZylColor(1.0, 1.0, 1.0));
  materials->GetDirectArray().Add(phong);
  materials->GetDirectArray().Add(KZylSurfaceLambert::Create(&manager, "matte"));
  for (int slot : {0, 1, 0}) materials->GetIndexArray().Add(slot);
  layer->SetMaterials(materials);
  // A second UV set, in layer 1, per control point, direct.
  KZylLayerElementUV* second = manager.CreateKZylLayerElementUV("map2");
  second->SetMappingMode(KZylLayerElement::eByControlPoint);
  for (int i = 0; i < 10; ++i) second->GetDirectArray().Add(KZylVector2(0.5, 0.02 * i));
  mesh.GetLayer(1)->SetUVs(second, KZylLayerElement::eDiffuseTextures);

  KZylShape* shape = KZylShape::Create(&manager, "smile");
  shape->InitControlPointArray(10);
  for (int i = 0; i < 10; ++i) shape->SetControlPointAt(mesh.GetControlPointAt(i) + KZylVector4(0, 0, 3.0 * i), i);
  mesh.AddShape(shape, "smile");
  mesh.FindProperty("smile").Set(0.25);
}

void AddSkin(KZylSdkManager& manager, KZylNode& meshNode, KZylMesh& mesh, KZylNode* firstJoint) {
  KZylSkin* skin = KZylSkin::Create(&manager, "skin");
  mesh.AddDeformer(skin);
  KZylNode* joint = firstJoint;
  for (int j = 0; j < 6 && joint; ++j, joint = joint->GetChildCount() ? joint->GetChild(0) : nullptr) {
    KZylCluster* cluster = KZylCluster::Create(&manager, ("cluster" + std::to_string(j)).c_str());
    cluster->SetLink(joint);
    cluster->SetTransformMatrix(meshNode.GetGlobalFromDefaultTake());
    cluster->SetTransformLinkMatrix(joint->GetGlobalFromDefaultTake());
    // Point 0 has six joints; the others one or two.
    cluster->AddControlPointIndex(0, 1.0 + j);
    for (int point = 1; point < 10; ++point)
      if (point % 6 == j || (point + 1) % 6 == j) cluster->AddControlPointIndex(point, 0.25 + 0.1 * point);
    skin->AddCluster(cluster);
  }
}

// The diffuse texture of the first polygon, by polygon through an index.
void AddTexture(KZylSdkManager& manager, KZylMesh& mesh, const std::string& file) {
  KZylTexture* texture = KZylTexture::Create(&manager, "pixel");
  texture->SetFileName(file.c_str());
  texture->SetWrapMode(KZylTexture::eClamp, KZylTexture::eRepeat);
  KZylLayerElementTexture* element = manager.CreateKZylLayerElementTexture("");
  element->SetMappingMode(KZylLayerElement::eByPolygon);
  element->SetReferenceMode(KZylLayerElement::eIndexToDirect);
  element->GetDirectArray().Add(texture);
  for (int slot : {0, -1, -1}) element->GetIndexArray().Add(slot);
  mesh.GetLayer(0)->SetTextures(KZylLayerElement::eDiffuseTextures, element);
}

}  // namespace

void WriteSamplePng(const std::string& path) {
  static const unsigned char png[] = {
      0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49, 0x48, 0x44, 0x52, 0x00, 0x00,
      0x00, 0x01, 0x00, 0x00, 0x00, 0x01, 0x08, 0x02, 0x00, 0x00, 0x00, 0x90, 0x77, 0x53, 0xde, 0x00, 0x00, 0x00,
      0x0c, 0x49, 0x44, 0x41, 0x54, 0x78, 0x9c, 0x63, 0xf8, 0xdf, 0xc0, 0x00, 0x00, 0x04, 0x01, 0x01, 0x80, 0xc5,
      0x2a, 0x18, 0x5d, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae, 0x42, 0x60, 0x82};
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(png), sizeof png);
}

SampleScene MakeSampleScene(KZylSdkManager& manager, const std::string& textureFile) {
  SampleScene sample;
  sample.scene = KZylScene::Create(&manager, "");
  KZylScene& scene = *sample.scene;
  scene.GetGlobalSettings().SetAxisSystem(KZylAxisSystem(KZylAxisSystem::eZAxis, -KZylAxisSystem::eParityOdd, KZylAxisSystem::eRightHanded));
  KZylTakeInfo take;
  take.mName = "Take 001";
  scene.SetTakeInfo(take);
  scene.SetCurrentTake("Take 001");
  KZylNode* root = scene.GetRootNode();

  sample.pivoted = AddNode(manager, root, "pivoted");
  KZylNode& pivoted = *sample.pivoted;
  pivoted.SetDefaultT(KZylVector4(5, -3, 12, 1));
  pivoted.SetDefaultR(KZylVector4(30, -20, 65));
  pivoted.SetDefaultS(KZylVector4(1.5, 0.5, 2.0, 1));
  pivoted.SetRotationOrder(eSourcePivot, eEulerZXY);
  pivoted.SetRotationPivot(eSourcePivot, KZylVector4(1, 2, 3));
  pivoted.SetScalingPivot(eSourcePivot, KZylVector4(-2, 0, 1));
  pivoted.SetRotationOffset(eSourcePivot, KZylVector4(0.5, 0, 0));
  pivoted.SetScalingOffset(eSourcePivot, KZylVector4(0, 0.25, 0));
  pivoted.SetPreRotation(eSourcePivot, KZylVector4(10, 0, 5));
  pivoted.SetPostRotation(eSourcePivot, KZylVector4(0, 15, 0));
  KZylTakeNode* curves = pivoted.GetCurrentTakeNode();
  Key(curves->GetTranslationX(), 0.0, 5.0f, KFCurve::eInterpolationLinear);
  Key(curves->GetTranslationX(), 1.0, 15.0f, KFCurve::eInterpolationLinear);
  Key(curves->GetEulerRotationY(), 0.0, -20.0f, KFCurve::eInterpolationCubic, 0.0f, 40.0f);
  Key(curves->GetEulerRotationY(), 2.0, 70.0f, KFCurve::eInterpolationCubic, 10.0f, 0.0f);
  Key(curves->GetScaleZ(), 0.5, 2.0f, KFCurve::eInterpolationConstant);
  Key(curves->GetScaleZ(), 1.5, 3.0f, KFCurve::eInterpolationConstant);

  // A chain of six joints under the pivoted node, the first one keyed cubic in translation.
  KZylNode* parent = &pivoted;
  for (int j = 0; j < 6; ++j) {
    KZylNode* joint = AddNode(manager, parent, ("joint" + std::to_string(j)).c_str());
    joint->SetNodeAttribute(KZylSkeleton::Create(&manager, ""));
    joint->SetDefaultT(KZylVector4(0, 4, 0.5 * j, 1));
    joint->SetDefaultR(KZylVector4(0, 0, 10.0 * j));
    if (j == 0) sample.firstJoint = joint;
    parent = joint;
  }
  KZylTakeNode* jointCurves = sample.firstJoint->GetCurrentTakeNode();
  for (KFCurve* curve : {jointCurves->GetTranslationX(), jointCurves->GetTranslationZ()}) {
    Key(curve, 0.0, 0.0f, KFCurve::eInterpolationCubic, 0.0f, 3.0f);
    Key(curve, 1.0, 2.0f, KFCurve::eInterpolationCubic, -1.0f, 2.5f);
    Key(curve, 2.5, 1.0f, KFCurve::eInterpolationCubic, 0.5f, 0.0f);
  }

  sample.meshNode = AddNode(manager, &pivoted, "meshNode");
  sample.meshNode->SetDefaultT(KZylVector4(0, 0, 7, 1));
  sample.mesh = KZylMesh::Create(&manager, "mesh");
  AddGeometry(manager, *sample.mesh);
  if (!textureFile.empty()) AddTexture(manager, *sample.mesh, textureFile);
  sample.meshNode->SetNodeAttribute(sample.mesh);
  AddSkin(manager, *sample.meshNode, *sample.mesh, sample.firstJoint);
  KFCurve* smile = sample.meshNode->GetCurrentTakeNode()->GetShapeChannel(sample.mesh, 0);
  Key(smile, 0.0, 0.0f, KFCurve::eInterpolationLinear);
  Key(smile, 1.0, 100.0f, KFCurve::eInterpolationLinear);

  KZylNode* cameraNode = AddNode(manager, root, "camera");
  cameraNode->SetDefaultT(KZylVector4(0, -100, 20, 1));
  cameraNode->SetNodeAttribute(KZylCamera::Create(&manager, "camera"));
  KZylNode* lightNode = AddNode(manager, root, "light");
  KZylLight* light = KZylLight::Create(&manager, "light");
  light->SetLightType(KZylLight::eSpot);
  light->SetDefaultConeAngle(60.0);
  lightNode->SetNodeAttribute(light);
  return sample;
}

}  // namespace zyltest
