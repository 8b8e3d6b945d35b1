// Round trip: a scene written as .gltf and .glb and read back with tinygltf gives the kit
// scene's node global matrices, vertices (positions, normals, UV sets), skin weights, morph
// targets and animation values, within 1e-6.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "gltf/gltf_writer.h"
#include "tests/gltf/gltf_reading.h"
#include "tests/gltf/sample_scene.h"
#include "tests/support/documents.h"
#include "tests/support/near.h"

namespace {

using namespace zylsdk;

constexpr double kTolerance = 1e-6;

// A vertex as glTF holds it: position, normal (unit), every UV set (V flipped).
using Vertex = std::vector<double>;

bool VerticesNear(std::vector<Vertex> a, std::vector<Vertex> b) {
  std::sort(a.begin(), a.end());
  std::sort(b.begin(), b.end());
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (a[i].size() != b[i].size()) return false;
    for (size_t c = 0; c < a[i].size(); ++c)
      if (std::fabs(a[i][c] - b[i][c]) > kTolerance * std::max(1.0, std::fabs(b[i][c]))) return false;
  }
  return true;
}

template <class Element, class Value>
bool KitValue(const Element* element, int polygon, int polygonVertex, int point, Value& value) {
  if (!element) return false;
  int entry = -1;
  switch (element->GetMappingMode()) {
    case KZylLayerElement::eByControlPoint: entry = point; break;
    case KZylLayerElement::eByPolygonVertex: entry = polygonVertex; break;
    case KZylLayerElement::eByPolygon: entry = polygon; break;
    case KZylLayerElement::eAllSame: entry = 0; break;
    default: return false;
  }
  if (element->GetReferenceMode() != KZylLayerElement::eDirect) entry = element->GetIndexArray().GetAt(entry);
  if (entry < 0 || entry >= element->GetDirectArray().GetCount()) return false;
  value = element->GetDirectArray()[entry];
  return true;
}

// The kit mesh's polygon vertices as glTF should hold them; normals that are zero or missing,
// and UVs whose index falls outside their array, are left as NaN (not compared).
std::vector<Vertex> KitVertices(const KZylMesh& mesh) {
  std::vector<Vertex> vertices;
  for (int polygon = 0; polygon < mesh.GetPolygonCount(); ++polygon) {
    const int size = mesh.GetPolygonSize(polygon);
    bool usable = size >= 3;
    for (int corner = 0; corner < size; ++corner)
      usable = usable && mesh.GetPolygonVertex(polygon, corner) >= 0 && mesh.GetPolygonVertex(polygon, corner) < mesh.GetControlPointsCount();
    if (!usable) continue;
    for (int corner = 0; corner < size; ++corner) {
      const int point = mesh.GetPolygonVertex(polygon, corner);
      const int polygonVertex = mesh.GetPolygonVertexIndex(polygon) + corner;
      const KZylVector4 p = mesh.GetControlPointAt(point);
      Vertex vertex{p[0], p[1], p[2]};
      if (mesh.GetLayer(0) && mesh.GetLayer(0)->GetNormals()) {
        KZylVector4 n;
        const bool found = KitValue(mesh.GetLayer(0)->GetNormals(), polygon, polygonVertex, point, n);
        const double length = n.Length();
        for (int axis = 0; axis < 3; ++axis) vertex.push_back(found && length > 0 ? n[axis] / length : NAN);
      }
      for (int layer = 0; layer < mesh.GetLayerCount(); ++layer)
        for (auto channel : mesh.GetLayer(layer)->GetUVChannels()) {
          KZylVector2 uv;
          const bool found = KitValue(mesh.GetLayer(layer)->GetUVs(channel), polygon, polygonVertex, point, uv);
          vertex.push_back(found ? uv[0] : 0.0);
          vertex.push_back(found ? 1.0 - uv[1] : 1.0);
        }
      vertices.push_back(vertex);
    }
  }
  return vertices;
}

std::vector<Vertex> GltfVertices(const tinygltf::Model& model, const tinygltf::Mesh& mesh, const std::vector<Vertex>& kit) {
  std::vector<Vertex> vertices;
  for (const tinygltf::Primitive& primitive : mesh.primitives) {
    std::vector<std::vector<float>> arrays{zyltest::ReadFloats(model, primitive.attributes.at("POSITION"))};
    if (primitive.attributes.count("NORMAL")) arrays.push_back(zyltest::ReadFloats(model, primitive.attributes.at("NORMAL")));
    for (int set = 0; primitive.attributes.count("TEXCOORD_" + std::to_string(set)); ++set)
      arrays.push_back(zyltest::ReadFloats(model, primitive.attributes.at("TEXCOORD_" + std::to_string(set))));
    const size_t count = arrays[0].size() / 3;
    for (size_t v = 0; v < count; ++v) {
      Vertex vertex;
      for (size_t a = 0; a < arrays.size(); ++a) {
        const size_t width = a == 0 || (a == 1 && primitive.attributes.count("NORMAL")) ? 3 : 2;
        for (size_t c = 0; c < width; ++c) vertex.push_back(arrays[a].at(v * width + c));
      }
      vertices.push_back(vertex);
    }
  }
  // Components the kit leaves undefined (NaN) are not compared: they take glTF's values.
  if (vertices.size() == kit.size()) {
    std::vector<Vertex> sortedKit = kit;
    for (Vertex& vertex : vertices)
      for (const Vertex& candidate : kit)
        if (std::fabs(candidate[0] - vertex[0]) + std::fabs(candidate[1] - vertex[1]) + std::fabs(candidate[2] - vertex[2]) < 1e-5)
          for (size_t c = 0; c < vertex.size() && c < candidate.size(); ++c)
            if (std::isnan(candidate[c])) vertex[c] = NAN;
  }
  return vertices;
}

// NaN on both sides compares equal after this.
std::vector<Vertex> WithoutNaN(std::vector<Vertex> vertices) {
  for (Vertex& vertex : vertices)
    for (double& c : vertex)
      if (std::isnan(c)) c = -1e9;
  return vertices;
}

class RoundTrip : public ::testing::TestWithParam<std::string> {
 protected:
  void WriteAndLoad(KZylScene& scene) {
    path = folder.File("scene" + GetParam());
    const zylgltf::GltfReport report = zylgltf::WriteGltfFile(scene, path);
    ASSERT_TRUE(report.ok) << report.error;
    leftOut = report.leftOut;
    std::string error;
    ASSERT_TRUE(zyltest::LoadGltf(path, model, error)) << error;
  }
  const tinygltf::Node* Node(const std::string& name) const {
    for (const tinygltf::Node& node : model.nodes)
      if (node.name == name) return &node;
    return nullptr;
  }

  zyltest::TempFolder folder;
  std::string path;
  tinygltf::Model model;
  std::vector<std::string> leftOut;
  KZylSdkManager manager;
};

TEST_P(RoundTrip, NodeGlobalMatricesAreTheKitsAfterConversionToYUpMetres) {
  zyltest::SampleScene sample = zyltest::MakeSampleScene(manager);
  const KZylXMatrix pivotedBefore = sample.pivoted->GetGlobalFromDefaultTake();
  WriteAndLoad(*sample.scene);
  const std::map<std::string, KZylMatrix> globals = zyltest::GlobalMatrices(model);
  for (KZylNode* node : sample.scene->GetNodes()) {
    ASSERT_TRUE(globals.count(node->GetName().Std())) << node->GetName().Std();
    EXPECT_TRUE(zyltest::Near(globals.at(node->GetName().Std()), node->GetGlobalFromDefaultTake(), kTolerance)) << node->GetName().Std();
  }
  // Z up becomes Y up and centimetres become metres: a point 1 cm up is 0.01 m along +Y.
  const KZylVector4 up = KZylXMatrix(globals.at("pivoted")).MultT(KZylVector4(0, 0, 0));
  const KZylVector4 before = pivotedBefore.MultT(KZylVector4(0, 0, 0));
  EXPECT_NEAR(up[1], before[2] / 100.0, kTolerance);
  EXPECT_NEAR(up[2], -before[1] / 100.0, kTolerance);
}

TEST_P(RoundTrip, VerticesKeepPositionsNormalsAndEveryUvSet) {
  zyltest::SampleScene sample = zyltest::MakeSampleScene(manager);
  WriteAndLoad(*sample.scene);
  const tinygltf::Node* node = Node("meshNode");
  ASSERT_TRUE(node && node->mesh >= 0);
  const tinygltf::Mesh& mesh = model.meshes[static_cast<size_t>(node->mesh)];
  // One primitive per material; the polygon with a corner outside the control points is gone.
  ASSERT_EQ(mesh.primitives.size(), 2u);
  const std::vector<Vertex> kit = KitVertices(*sample.mesh);
  ASSERT_EQ(kit.size(), 10u);
  EXPECT_TRUE(VerticesNear(WithoutNaN(GltfVertices(model, mesh, kit)), WithoutNaN(kit)));
  EXPECT_TRUE(mesh.primitives[0].attributes.count("TEXCOORD_1"));
  EXPECT_TRUE(mesh.primitives[0].attributes.count("COLOR_0"));
  EXPECT_NE(std::find(leftOut.begin(), leftOut.end(), "polygons with a corner outside the control points"), leftOut.end());
}

TEST_P(RoundTrip, ConcavePolygonIsCoveredByTrianglesOfItsArea) {
  zyltest::SampleScene sample = zyltest::MakeSampleScene(manager);
  WriteAndLoad(*sample.scene);
  const tinygltf::Primitive& primitive = model.meshes[static_cast<size_t>(Node("meshNode")->mesh)].primitives[0];
  const std::vector<float> positions = zyltest::ReadFloats(model, primitive.attributes.at("POSITION"));
  const std::vector<int> indices = zyltest::ReadIntegers(model, primitive.indices);
  ASSERT_EQ(indices.size(), 12u);  // four triangles for six corners
  // The L shape is 300 cm² in its plane (z = 0): 0.03 m² once in metres.
  double area = 0;
  for (size_t t = 0; t < indices.size(); t += 3) {
    auto corner = [&](size_t i) { return KZylVector4(positions[3 * indices[t + i]], positions[3 * indices[t + i] + 1], positions[3 * indices[t + i] + 2]); };
    const KZylVector4 normal = (corner(1) - corner(0)).CrossProduct(corner(2) - corner(0));
    EXPECT_GT(normal[2], 0.0) << "triangle " << t / 3 << " is flipped";
    area += normal.Length() / 2;
  }
  EXPECT_NEAR(area, 0.03, 1e-9);
}

TEST_P(RoundTrip, SkinWeightsAreTheStrongestEightNormalised) {
  zyltest::SampleScene sample = zyltest::MakeSampleScene(manager);
  WriteAndLoad(*sample.scene);
  const tinygltf::Node* node = Node("meshNode");
  ASSERT_TRUE(node && node->skin >= 0);
  const tinygltf::Skin& skin = model.skins[static_cast<size_t>(node->skin)];
  ASSERT_EQ(skin.joints.size(), 6u);
  // Expected weights per control point, by joint name.
  std::vector<std::map<std::string, double>> expected(10);
  const auto* kitSkin = static_cast<KZylSkin*>(sample.mesh->GetDeformer(0, KZylDeformer::eSkin));
  for (int c = 0; c < kitSkin->GetClusterCount(); ++c) {
    const KZylCluster* cluster = kitSkin->GetCluster(c);
    for (int i = 0; i < cluster->GetControlPointIndicesCount(); ++i)
      expected[static_cast<size_t>(cluster->GetControlPointIndices()[i])][cluster->GetLink()->GetName().Std()] += cluster->GetControlPointWeights()[i];
  }
  for (auto& weights : expected) {
    double sum = 0;
    for (auto& entry : weights) sum += entry.second;
    for (auto& entry : weights) entry.second /= sum;
  }
  for (const tinygltf::Primitive& primitive : model.meshes[static_cast<size_t>(node->mesh)].primitives) {
    ASSERT_TRUE(primitive.attributes.count("JOINTS_1"));  // control point 0 has six joints
    const std::vector<float> positions = zyltest::ReadFloats(model, primitive.attributes.at("POSITION"));
    std::vector<std::vector<int>> joints;
    std::vector<std::vector<float>> weights;
    for (int set = 0; set < 2; ++set) {
      joints.push_back(zyltest::ReadIntegers(model, primitive.attributes.at("JOINTS_" + std::to_string(set))));
      weights.push_back(zyltest::ReadFloats(model, primitive.attributes.at("WEIGHTS_" + std::to_string(set))));
    }
    for (size_t v = 0; v < positions.size() / 3; ++v) {
      // The control point of the vertex, found by its position.
      int point = -1;
      for (int p = 0; p < sample.mesh->GetControlPointsCount(); ++p) {
        const KZylVector4 cp = sample.mesh->GetControlPointAt(p);
        if (std::fabs(cp[0] - positions[3 * v]) + std::fabs(cp[1] - positions[3 * v + 1]) + std::fabs(cp[2] - positions[3 * v + 2]) < 1e-6) point = p;
      }
      ASSERT_GE(point, 0);
      std::map<std::string, double> actual;
      for (int set = 0; set < 2; ++set)
        for (size_t slot = 0; slot < 4; ++slot)
          if (weights[static_cast<size_t>(set)][4 * v + slot] > 0)
            actual[model.nodes[static_cast<size_t>(skin.joints[static_cast<size_t>(joints[static_cast<size_t>(set)][4 * v + slot])])].name] +=
                weights[static_cast<size_t>(set)][4 * v + slot];
      ASSERT_EQ(actual.size(), expected[static_cast<size_t>(point)].size()) << "point " << point;
      for (const auto& entry : expected[static_cast<size_t>(point)]) EXPECT_NEAR(actual[entry.first], entry.second, kTolerance);
    }
  }
  // Inverse bind matrices: the kit's bind matrix times the inverse of the link's.
  const std::vector<float> matrices = zyltest::ReadFloats(model, skin.inverseBindMatrices);
  ASSERT_EQ(matrices.size(), 16u * 6);
  const KZylCluster* first = kitSkin->GetCluster(0);
  const KZylMatrix expectedMatrix = first->GetTransformMatrix() * first->GetTransformLinkMatrix().Inverse();
  for (int i = 0; i < 16; ++i) EXPECT_NEAR(matrices[static_cast<size_t>(i)], expectedMatrix.Get(i / 4, i % 4), kTolerance);
}

TEST_P(RoundTrip, MorphTargetsAndTheirDefaultWeights) {
  zyltest::SampleScene sample = zyltest::MakeSampleScene(manager);
  WriteAndLoad(*sample.scene);
  const tinygltf::Mesh& mesh = model.meshes[static_cast<size_t>(Node("meshNode")->mesh)];
  ASSERT_EQ(mesh.weights.size(), 1u);
  EXPECT_DOUBLE_EQ(mesh.weights[0], 0.25);
  const tinygltf::Primitive& primitive = mesh.primitives[0];
  ASSERT_EQ(primitive.targets.size(), 1u);
  const std::vector<float> positions = zyltest::ReadFloats(model, primitive.attributes.at("POSITION"));
  const std::vector<float> offsets = zyltest::ReadFloats(model, primitive.targets[0].at("POSITION"));
  ASSERT_EQ(offsets.size(), positions.size());
  const KZylShape* shape = sample.mesh->GetShape(0);
  for (size_t v = 0; v < positions.size() / 3; ++v)
    for (int p = 0; p < 10; ++p) {
      const KZylVector4 cp = sample.mesh->GetControlPointAt(p);
      if (std::fabs(cp[0] - positions[3 * v]) + std::fabs(cp[1] - positions[3 * v + 1]) + std::fabs(cp[2] - positions[3 * v + 2]) > 1e-6) continue;
      const KZylVector4 moved = shape->GetControlPointAt(p) - cp;
      for (int axis = 0; axis < 3; ++axis) EXPECT_NEAR(offsets[3 * v + static_cast<size_t>(axis)], moved[axis], kTolerance);
    }
}

// The kit's value of a curve at `time`, evaluated here on its own terms.
double CurveValue(const KFCurve& curve, double time) {
  const int count = curve.KeyGetCount();
  auto seconds = [&](int key) { return curve.KeyGetTime(key).GetSecondDouble(); };
  if (time <= seconds(0)) return curve.KeyGetValue(0);
  if (time >= seconds(count - 1)) return curve.KeyGetValue(count - 1);
  int k = 0;
  while (seconds(k + 1) <= time) ++k;
  const double span = seconds(k + 1) - seconds(k), s = (time - seconds(k)) / span;
  const double v0 = curve.KeyGetValue(k), v1 = curve.KeyGetValue(k + 1);
  if (curve.KeyGetInterpolation(k) == KFCurve::eInterpolationConstant) return v0;
  if (curve.KeyGetInterpolation(k) == KFCurve::eInterpolationLinear) return v0 + (v1 - v0) * s;
  const double m0 = curve.KeyGetRightDerivative(k) * span, m1 = curve.KeyGetLeftDerivative(k + 1) * span;
  return (2 * s * s * s - 3 * s * s + 1) * v0 + (s * s * s - 2 * s * s + s) * m0 + (-2 * s * s * s + 3 * s * s) * v1 + (s * s * s - s * s) * m1;
}

// The node's local matrix at `time` from the kit: its curves' values as default transform.
KZylMatrix KitLocalAt(KZylNode& node, double time) {
  const KZylVector4 t = node.GetDefaultT(), r = node.GetDefaultR(), s = node.GetDefaultS();
  KZylTakeNode* take = node.GetCurrentTakeNode();
  auto animated = [&](KZylVector4 value, KZylTakeNode::EChannel first) {
    for (int axis = 0; axis < 3; ++axis)
      if (const KFCurve* curve = take->FindCurve(static_cast<KZylTakeNode::EChannel>(first + axis))) value[axis] = CurveValue(*curve, time);
    return value;
  };
  node.SetDefaultT(animated(t, KZylTakeNode::eTranslationX));
  node.SetDefaultR(animated(r, KZylTakeNode::eRotationX));
  node.SetDefaultS(animated(s, KZylTakeNode::eScaleX));
  const KZylMatrix local = node.GetLocalFromDefaultTake();
  node.SetDefaultT(t);
  node.SetDefaultR(r);
  node.SetDefaultS(s);
  return local;
}

KZylMatrix GltfLocalAt(const tinygltf::Model& model, int nodeIndex, double time) {
  const tinygltf::Node& node = model.nodes[static_cast<size_t>(nodeIndex)];
  std::vector<double> t = node.translation.empty() ? std::vector<double>{0, 0, 0} : node.translation;
  std::vector<double> r = node.rotation.empty() ? std::vector<double>{0, 0, 0, 1} : node.rotation;
  std::vector<double> s = node.scale.empty() ? std::vector<double>{1, 1, 1} : node.scale;
  for (const tinygltf::Animation& animation : model.animations)
    for (const tinygltf::AnimationChannel& channel : animation.channels) {
      if (channel.target_node != nodeIndex) continue;
      const tinygltf::AnimationSampler& sampler = animation.samplers[static_cast<size_t>(channel.sampler)];
      if (channel.target_path == "translation") t = zyltest::SampleAt(model, sampler, time, 3);
      if (channel.target_path == "rotation") r = zyltest::SampleAt(model, sampler, time, 4);
      if (channel.target_path == "scale") s = zyltest::SampleAt(model, sampler, time, 3);
    }
  return zyltest::TrsMatrix(t, r, s);
}

TEST_P(RoundTrip, AnimationValuesAtKeysAndBetweenThem) {
  zyltest::SampleScene sample = zyltest::MakeSampleScene(manager);
  WriteAndLoad(*sample.scene);
  ASSERT_EQ(model.animations.size(), 1u);
  std::map<std::string, int> interpolations;
  for (const tinygltf::AnimationChannel& channel : model.animations[0].channels)
    interpolations[model.animations[0].samplers[static_cast<size_t>(channel.sampler)].interpolation]++;
  EXPECT_GT(interpolations["CUBICSPLINE"], 0);  // the first joint's translation
  EXPECT_GT(interpolations["LINEAR"], 0);
  for (KZylNode* node : {sample.pivoted, sample.firstJoint}) {
    const int index = [&] {
      for (size_t i = 0; i < model.nodes.size(); ++i)
        if (model.nodes[i].name == node->GetName().Std()) return static_cast<int>(i);
      return -1;
    }();
    ASSERT_GE(index, 0);
    // Keys, and halfway between keys: 0, 0.5, 1, 1.25 (cubic, between 1 and 1.5 s), 1.5, 2, 2.5.
    for (double time : {0.0, 0.5, 1.0, 1.25, 1.5, 1.75, 2.0, 2.5}) {
      if (node == sample.pivoted && (time == 1.25 || time == 1.75)) continue;  // rotation only sampled at quarters of [0, 2]
      EXPECT_TRUE(zyltest::Near(GltfLocalAt(model, index, time), KitLocalAt(*node, time), kTolerance))
          << node->GetName().Std() << " at " << time << " s";
    }
  }
  // The morph weight goes from 0 to 1 (the kit keys it in percent).
  bool weights = false;
  for (const tinygltf::AnimationChannel& channel : model.animations[0].channels)
    if (channel.target_path == "weights") {
      weights = true;
      EXPECT_NEAR(zyltest::SampleAt(model, model.animations[0].samplers[static_cast<size_t>(channel.sampler)], 0.5, 1)[0], 0.5, kTolerance);
    }
  EXPECT_TRUE(weights);
}

TEST_P(RoundTrip, MaterialsCameraAndLight) {
  zyltest::SampleScene sample = zyltest::MakeSampleScene(manager);
  WriteAndLoad(*sample.scene);
  std::map<std::string, const tinygltf::Material*> materials;
  for (const tinygltf::Material& material : model.materials) materials[material.name] = &material;
  ASSERT_TRUE(materials.count("shiny") && materials.count("matte"));
  EXPECT_EQ(materials["shiny"]->alphaMode, "BLEND");
  EXPECT_NEAR(materials["shiny"]->pbrMetallicRoughness.baseColorFactor[0], 0.9, kTolerance);
  EXPECT_NEAR(materials["shiny"]->pbrMetallicRoughness.baseColorFactor[3], 0.5, kTolerance);
  EXPECT_NEAR(materials["matte"]->pbrMetallicRoughness.baseColorFactor[1], 0.8, kTolerance);
  EXPECT_EQ(materials["matte"]->alphaMode, "OPAQUE");

  // The camera looks along the kit camera node's +X axis, the light along its node's -Y.
  const std::map<std::string, KZylMatrix> globals = zyltest::GlobalMatrices(model);
  ASSERT_TRUE(globals.count("camera_camera") && globals.count("light_light"));
  auto direction = [](const KZylMatrix& m, const KZylVector4& local) {
    KZylVector4 d;
    for (int c = 0; c < 3; ++c) d[c] = local[0] * m.Get(0, c) + local[1] * m.Get(1, c) + local[2] * m.Get(2, c);
    d.Normalize();
    return d;
  };
  const KZylMatrix cameraNode = globals.at("camera");
  EXPECT_TRUE(zyltest::Near(direction(globals.at("camera_camera"), KZylVector4(0, 0, -1)), direction(cameraNode, KZylVector4(1, 0, 0)), kTolerance, 3));
  EXPECT_TRUE(zyltest::Near(direction(globals.at("light_light"), KZylVector4(0, 0, -1)), direction(globals.at("light"), KZylVector4(0, -1, 0)), kTolerance, 3));
  ASSERT_EQ(model.lights.size(), 1u);
  EXPECT_EQ(model.lights[0].type, "spot");
  EXPECT_NEAR(model.lights[0].spot.outerConeAngle, 30.0 * M_PI / 180.0, kTolerance);
}

TEST_P(RoundTrip, TexturesAreReferencedBesideTheFileOrEmbedded) {
  const std::string image = folder.File("pixel.png");
  zyltest::WriteSamplePng(image);
  zyltest::SampleScene sample = zyltest::MakeSampleScene(manager, image);
  WriteAndLoad(*sample.scene);
  ASSERT_EQ(model.images.size(), 1u);
  if (GetParam() == ".glb") {
    EXPECT_TRUE(model.images[0].uri.empty());
    EXPECT_EQ(model.images[0].mimeType, "image/png");
    ASSERT_GE(model.images[0].bufferView, 0);
    EXPECT_EQ(model.bufferViews[static_cast<size_t>(model.images[0].bufferView)].byteLength, 69u);
  } else {
    EXPECT_EQ(model.images[0].uri, "pixel.png");
  }
  // The textured polygon has a material of its own; its texture reads the diffuse UV set.
  const tinygltf::Mesh& mesh = model.meshes[static_cast<size_t>(Node("meshNode")->mesh)];
  ASSERT_EQ(mesh.primitives.size(), 2u);
  const tinygltf::Material& material = model.materials[static_cast<size_t>(mesh.primitives[0].material)];
  ASSERT_EQ(material.pbrMetallicRoughness.baseColorTexture.index, 0);
  EXPECT_EQ(material.pbrMetallicRoughness.baseColorTexture.texCoord, 0);
  EXPECT_EQ(model.samplers.at(0).wrapS, TINYGLTF_TEXTURE_WRAP_CLAMP_TO_EDGE);
  EXPECT_EQ(model.samplers.at(0).wrapT, TINYGLTF_TEXTURE_WRAP_REPEAT);
}

TEST_P(RoundTrip, MissingImageFilesAreLeftOut) {
  zyltest::SampleScene sample = zyltest::MakeSampleScene(manager, folder.File("absent.png"));
  WriteAndLoad(*sample.scene);
  EXPECT_TRUE(model.images.empty());
  EXPECT_NE(std::find(leftOut.begin(), leftOut.end(), "textures whose image file was not found"), leftOut.end());
}

TEST_P(RoundTrip, ExampleSceneKeepsGlobalMatricesAndVertices) {
  zyldae::ReadResult read = zyldae::ReadDocument(ZYL_SOURCE_DIR "/examples/scene.dae");
  ASSERT_TRUE(read.ok);
  WriteAndLoad(*read.scene);
  const std::map<std::string, KZylMatrix> globals = zyltest::GlobalMatrices(model);
  for (KZylNode* node : read.scene->GetNodes())
    EXPECT_TRUE(zyltest::Near(globals.at(node->GetName().Std()), node->GetGlobalFromDefaultTake(), kTolerance)) << node->GetName().Std();
  int meshes = 0;
  for (KZylNode* node : read.scene->GetNodes()) {
    if (!node->GetNodeAttribute() || node->GetNodeAttribute()->GetAttributeType() != KZylNodeAttribute::eMesh) continue;
    const tinygltf::Node* target = Node(node->GetName().Std());
    ASSERT_TRUE(target && target->mesh >= 0);
    const std::vector<Vertex> kit = KitVertices(*static_cast<KZylMesh*>(node->GetNodeAttribute()));
    EXPECT_TRUE(VerticesNear(WithoutNaN(GltfVertices(model, model.meshes[static_cast<size_t>(target->mesh)], kit)), WithoutNaN(kit)));
    ++meshes;
  }
  EXPECT_GT(meshes, 0);
}

INSTANTIATE_TEST_SUITE_P(Formats, RoundTrip, ::testing::Values(".gltf", ".glb"),
                         [](const ::testing::TestParamInfo<std::string>& info) { return info.param.substr(1); });

}  // namespace
