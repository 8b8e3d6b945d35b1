#include "tests/support/scene_invariants.h"

#include <cctype>
#include <cmath>
#include <sstream>
#include <unordered_set>

namespace zyltest {

using namespace zylsdk;

namespace {

constexpr size_t kMaxViolations = 40;

class InvariantWalk {
 public:
  InvariantWalk(const KZylScene& scene, const InvariantChecks& checks) : mScene(scene), mChecks(checks) {}

  std::vector<std::string> Run() {
    const KZylNode* root = mScene.GetRootNode();
    if (!root) return {"the scene has no root node"};
    mNodes.insert(root);
    const std::vector<KZylNode*> below = mScene.GetNodes();
    mNodes.insert(below.begin(), below.end());
    for (const KZylNode* node : below) CollectMaterials(*node);
    CollectMaterials(*root);
    for (const KZylNode* node : below) Node(*node);
    SceneMaterials();
    return std::move(mViolations);
  }

 private:
  std::ostringstream& Fail() {
    mLine.str("");
    return mLine;
  }
  void Report() {
    if (mViolations.size() < kMaxViolations) mViolations.push_back(mLine.str());
  }
  void Expect(bool holds, const std::string& what) {
    if (holds) return;
    Fail() << what;
    Report();
  }

  static std::string Where(const KZylNode& node) { return "node \"" + node.GetName().Std() + "\""; }

  void CollectMaterials(const KZylNode& node) {
    for (int i = 0; i < node.GetSrcObjectCount(KZylSurfaceMaterial::ClassId); ++i)
      mMaterials.insert(node.GetSrcObject(KZylSurfaceMaterial::ClassId, i));
    if (const KZylGeometry* geometry = node.GetGeometry()) {
      CollectLayerMaterials(*geometry);
      for (int i = 0; i < geometry->GetShapeCount(); ++i)
        if (const KZylShape* shape = geometry->GetShape(i)) CollectLayerMaterials(*shape);
    }
  }

  void CollectLayerMaterials(const KZylLayerContainer& container) {
    for (int i = 0; i < container.GetLayerCount(); ++i) {
      const KZylLayer* layer = container.GetLayer(i);
      if (const KZylLayerElementMaterial* materials = layer->GetMaterials())
        for (const KZylSurfaceMaterial* material : materials->GetDirectArray()) mMaterials.insert(material);
    }
  }

  void Node(const KZylNode& node) {
    const std::string where = Where(node);
    const KZylNode* parent = node.GetParent();
    Expect(parent && mNodes.count(parent), where + " has no parent in the scene");
    Expect(node.GetScene() == &mScene, where + " does not belong to the scene");
    Expect(node.GetNodeAttribute() != nullptr, where + " has no attribute");
    Finite(node.GetDefaultT(), where + " translation");
    Finite(node.GetDefaultR(), where + " rotation");
    Finite(node.GetDefaultS(), where + " scaling");
    if (const KZylGeometry* geometry = node.GetGeometry()) Geometry(*geometry, where);
    Animation(node, where);
  }

  void Geometry(const KZylGeometry& geometry, const std::string& where) {
    const int points = geometry.GetControlPointsCount();
    for (const KZylVector4& point : geometry.GetControlPoints()) Finite(point, where + " control point");
    Layers(geometry, where);
    if (geometry.GetAttributeType() == KZylNodeAttribute::eMesh) Polygons(static_cast<const KZylMesh&>(geometry), where);
    for (int i = 0; i < geometry.GetShapeCount(); ++i) {
      const KZylShape* shape = geometry.GetShape(i);
      Expect(shape && shape->GetControlPointsCount() == points, where + " shape " + std::to_string(i) +
                                                                    " does not have the geometry's control points");
      if (shape) Layers(*shape, where + " shape " + std::to_string(i));
    }
    for (int d = 0; d < geometry.GetDeformerCount(KZylDeformer::eSkin); ++d) {
      const auto* skin = static_cast<const KZylSkin*>(geometry.GetDeformer(d, KZylDeformer::eSkin));
      for (int c = 0; c < skin->GetClusterCount(); ++c) Cluster(*skin->GetCluster(c), points, where);
    }
  }

  void Polygons(const KZylMesh& mesh, const std::string& where) {
    const int points = mesh.GetControlPointsCount();
    const int vertices = mesh.GetPolygonVertexCount();
    for (int p = 0; p < mesh.GetPolygonCount(); ++p) {
      const int start = mesh.GetPolygonVertexIndex(p);
      const int size = mesh.GetPolygonSize(p);
      if (start < 0 || size < 0 || static_cast<int64_t>(start) + size > vertices) {
        Fail() << where << " polygon " << p << " (" << start << ", " << size << ") is outside the " << vertices
               << " polygon vertices";
        Report();
      }
    }
    if (!mChecks.indicesInRange) return;
    for (int vertex : mesh.GetPolygonVertices()) Index(vertex, points, where + " polygon vertex");
  }

  void Layers(const KZylLayerContainer& container, const std::string& where) {
    for (int i = 0; i < container.GetLayerCount(); ++i) {
      const KZylLayer* layer = container.GetLayer(i);
      const std::string at = where + " layer " + std::to_string(i);
      if (const auto* normals = layer->GetNormals()) {
        Indices(*normals, at + " normals");
        for (const KZylVector4& normal : normals->GetDirectArray()) Finite(normal, at + " normal");
      }
      if (const auto* colors = layer->GetVertexColors()) {
        Indices(*colors, at + " colours");
        for (const KZylColor& color : colors->GetDirectArray())
          Finite(KZylVector4(color.mRed, color.mGreen, color.mBlue, color.mAlpha), at + " colour");
      }
      for (auto channel : layer->GetUVChannels()) {
        const KZylLayerElementUV* uvs = layer->GetUVs(channel);
        Indices(*uvs, at + " uvs");
        for (const KZylVector2& uv : uvs->GetDirectArray()) Finite(KZylVector4(uv[0], uv[1], 0.0, 0.0), at + " uv");
      }
      if (const auto* materials = layer->GetMaterials()) {
        Indices(*materials, at + " materials");
        for (const KZylSurfaceMaterial* material : materials->GetDirectArray())
          Expect(!material || mMaterials.count(material), at + " holds a material no node reaches");
      }
      for (auto channel : layer->GetTextureChannels()) Indices(*layer->GetTextures(channel), at + " textures");
    }
  }

  template <class Element>
  void Indices(const Element& element, const std::string& where) {
    if (element.GetReferenceMode() == KZylLayerElement::eDirect || !mChecks.indicesInRange) return;
    const int direct = element.GetDirectArray().GetCount();
    for (int index : element.GetIndexArray()) Index(index, direct, where + " index");
  }

  void Cluster(const KZylCluster& cluster, int points, const std::string& where) {
    const std::string at = where + " cluster \"" + cluster.GetName().Std() + "\"";
    Expect(cluster.GetControlPointIndices().GetCount() == cluster.GetControlPointWeights().GetCount(),
           at + " has as many weights as indices");
    if (mChecks.indicesInRange)
      for (int index : cluster.GetControlPointIndices()) Index(index, points, at + " index");
    if (mChecks.finite)
      for (double weight : cluster.GetControlPointWeights()) Expect(std::isfinite(weight), at + " weight is not finite");
  }

  void Animation(const KZylNode& node, const std::string& where) {
    const KZylGeometry* geometry = node.GetGeometry();
    for (int t = 0; t < node.GetTakeNodeCount(); ++t) {
      const KZylTakeNode* take = node.GetTakeNode(t);
      for (int c = 0; c < KZylTakeNode::eChannelCount; ++c)
        if (const KFCurve* curve = take->FindCurve(static_cast<KZylTakeNode::EChannel>(c)))
          Curve(*curve, where + " curve " + std::to_string(c));
      if (geometry)
        for (int s = 0; s < geometry->GetShapeCount(); ++s)
          if (const KFCurve* curve = take->FindShapeChannel(geometry, s)) Curve(*curve, where + " shape curve");
    }
  }

  void Curve(const KFCurve& curve, const std::string& where) {
    for (int k = 0; k < curve.KeyGetCount(); ++k) {
      if (k > 0 && !(curve.KeyGetTime(k - 1) < curve.KeyGetTime(k))) {
        Fail() << where << " key " << k << " does not follow key " << k - 1 << " in time";
        Report();
      }
      if (mChecks.finite) Expect(std::isfinite(curve.KeyGetValue(k)), where + " key value is not finite");
    }
  }

  void SceneMaterials() {
    for (int i = 0; i < mScene.GetMaterialCount(); ++i)
      Expect(mMaterials.count(mScene.GetMaterial(i)) > 0,
             "material \"" + mScene.GetMaterial(i)->GetName().Std() + "\" is connected to the scene but no node uses it");
  }

  void Index(int index, int size, const std::string& where) {
    if (index == -1 || (index >= 0 && index < size)) return;
    Fail() << where << " " << index << " is outside 0.." << size;
    Report();
  }

  void Finite(const KZylVector4& v, const std::string& where) {
    if (!mChecks.finite) return;
    Expect(std::isfinite(v[0]) && std::isfinite(v[1]) && std::isfinite(v[2]) && std::isfinite(v[3]),
           where + " is not finite");
  }

  const KZylScene& mScene;
  const InvariantChecks mChecks;
  std::unordered_set<const KZylObject*> mNodes;
  std::unordered_set<const KZylObject*> mMaterials;
  std::vector<std::string> mViolations;
  std::ostringstream mLine;
};

bool ContainsNoCase(const std::string& text, const char* word) {
  const size_t length = std::char_traits<char>::length(word);
  for (size_t i = 0; i + length <= text.size(); ++i) {
    size_t j = 0;
    while (j < length && std::tolower(static_cast<unsigned char>(text[i + j])) == word[j]) ++j;
    if (j == length) return true;
  }
  return false;
}

}  // namespace

std::vector<std::string> SceneViolations(const KZylScene& scene, const InvariantChecks& checks) {
  return InvariantWalk(scene, checks).Run();
}

bool ModestNumbers(const std::string& text) {
  if (ContainsNoCase(text, "nan") || ContainsNoCase(text, "inf")) return false;
  size_t digits = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    const unsigned char c = static_cast<unsigned char>(text[i]);
    digits = std::isdigit(c) ? digits + 1 : 0;
    if (digits > 30) return false;
    if ((c == 'e' || c == 'E') && i > 0 && std::isdigit(static_cast<unsigned char>(text[i - 1]))) {
      size_t j = i + 1;
      if (j < text.size() && (text[j] == '+' || text[j] == '-')) ++j;
      size_t exponent = 0;
      while (j < text.size() && std::isdigit(static_cast<unsigned char>(text[j]))) ++j, ++exponent;
      if (exponent > 2) return false;
    }
  }
  return true;
}

InvariantChecks ChecksFor(const std::string& document, bool complete) {
  InvariantChecks checks;
  checks.finite = ModestNumbers(document);
  checks.indicesInRange = complete;
  return checks;
}

}  // namespace zyltest
