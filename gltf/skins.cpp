// Skins: the link nodes of a mesh's clusters become the joints, each with the inverse bind
// matrix of its cluster (the mesh's bind matrix times the inverse of the link's bind-time
// global matrix). Every vertex keeps its four strongest weights in JOINTS_0/WEIGHTS_0 and the
// next four in JOINTS_1/WEIGHTS_1, all of them normalised to a sum of one.

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "gltf/conversion_context.h"

namespace zylgltf {

using namespace zylsdk;

namespace {

constexpr size_t kWeightsPerSet = 4;
constexpr size_t kWeightSets = 2;

struct Influence {
  int joint;
  double weight;
};

struct SkinData {
  std::vector<int> joints;  // glTF nodes
  std::vector<float> inverseBindMatrices;
  std::vector<std::vector<Influence>> influences;  // per control point
};

void AppendMatrix(std::vector<float>& out, const KZylMatrix& matrix) {
  // Row-vector matrices stored by rows are column-vector matrices stored by columns.
  for (int row = 0; row < 4; ++row)
    for (int column = 0; column < 4; ++column) out.push_back(static_cast<float>(matrix.Get(row, column)));
}

bool CollectSkin(ConversionContext& context, const KZylMesh& mesh, SkinData& data) {
  data.influences.resize(static_cast<size_t>(mesh.GetControlPointsCount()));
  std::unordered_map<const KZylNode*, int> jointOfNode;
  for (int skinIndex = 0; skinIndex < mesh.GetDeformerCount(KZylDeformer::eSkin); ++skinIndex) {
    const auto* skin = static_cast<const KZylSkin*>(mesh.GetDeformer(skinIndex, KZylDeformer::eSkin));
    for (int clusterIndex = 0; clusterIndex < skin->GetClusterCount(); ++clusterIndex) {
      const KZylCluster* cluster = skin->GetCluster(clusterIndex);
      const KZylNode* link = cluster ? cluster->GetLink() : nullptr;
      auto node = link ? context.nodes.find(link) : context.nodes.end();
      if (node == context.nodes.end()) {
        context.LeaveOut("skin clusters without a link node in the scene");
        continue;
      }
      auto joint = jointOfNode.emplace(link, static_cast<int>(data.joints.size()));
      if (joint.second) {
        if (data.joints.size() >= 65535) {
          context.LeaveOut("skin joints beyond 65535");
          continue;
        }
        data.joints.push_back(node->second);
        AppendMatrix(data.inverseBindMatrices, cluster->GetTransformMatrix() * cluster->GetTransformLinkMatrix().Inverse());
      }
      const KArrayTemplate<int>& points = cluster->GetControlPointIndices();
      const KArrayTemplate<double>& weights = cluster->GetControlPointWeights();
      const int count = std::min(points.GetCount(), weights.GetCount());
      for (int i = 0; i < count; ++i) {
        const int point = points[i];
        const double weight = weights[i];
        if (point < 0 || point >= mesh.GetControlPointsCount() || !(weight > 0.0) || !std::isfinite(weight)) continue;
        data.influences[static_cast<size_t>(point)].push_back({joint.first->second, weight});
      }
    }
  }
  return !data.joints.empty();
}

// The strongest influences of a control point, at most eight, summing to one. A point that no
// joint moves follows the first joint.
std::vector<Influence> Strongest(std::vector<Influence> influences, ConversionContext& context) {
  // Equal weights keep their joints in a stable order.
  std::stable_sort(influences.begin(), influences.end(), [](const Influence& a, const Influence& b) { return a.weight > b.weight; });
  if (influences.size() > kWeightsPerSet * kWeightSets) {
    influences.resize(kWeightsPerSet * kWeightSets);
    context.LeaveOut("skin weights beyond the eight strongest of a vertex");
  }
  double sum = 0.0;
  for (const Influence& influence : influences) sum += influence.weight;
  if (!(sum > 0.0)) {
    context.LeaveOut("vertices without skin weights (bound to the first joint)");
    return {{0, 1.0}};
  }
  for (Influence& influence : influences) influence.weight /= sum;
  return influences;
}

void AddWeights(ConversionContext& context, const ConversionContext::MeshRecord& record, const SkinData& data) {
  std::vector<std::vector<Influence>> strongest;
  size_t sets = 1;
  for (const std::vector<Influence>& influences : data.influences) {
    strongest.push_back(Strongest(influences, context));
    sets = std::max(sets, (strongest.back().size() + kWeightsPerSet - 1) / kWeightsPerSet);
  }
  tinygltf::Mesh& mesh = context.model.meshes[static_cast<size_t>(record.mesh)];
  for (size_t primitive = 0; primitive < mesh.primitives.size(); ++primitive) {
    const std::vector<int>& points = record.vertexControlPoints[primitive];
    for (size_t set = 0; set < sets; ++set) {
      std::vector<uint16_t> joints;
      std::vector<float> weights;
      for (int point : points) {
        const std::vector<Influence>& kept = strongest[static_cast<size_t>(point)];
        for (size_t slot = set * kWeightsPerSet; slot < (set + 1) * kWeightsPerSet; ++slot) {
          const bool used = slot < kept.size();
          joints.push_back(static_cast<uint16_t>(used ? kept[slot].joint : 0));
          weights.push_back(used ? static_cast<float>(kept[slot].weight) : 0.0f);
        }
      }
      auto& attributes = mesh.primitives[primitive].attributes;
      attributes["JOINTS_" + std::to_string(set)] = context.buffer.AddJoints(joints);
      attributes["WEIGHTS_" + std::to_string(set)] = context.buffer.AddFloats(weights, 4, false, TINYGLTF_TARGET_ARRAY_BUFFER);
    }
  }
}

}  // namespace

void ConvertSkins(ConversionContext& context, const KZylScene& scene) {
  std::unordered_map<const KZylMesh*, int> skinOfMesh;
  for (const KZylNode* node : scene.GetNodes()) {
    const KZylNodeAttribute* attribute = node->GetNodeAttribute();
    if (!attribute || attribute->GetAttributeType() != KZylNodeAttribute::eMesh) continue;
    const auto* mesh = static_cast<const KZylMesh*>(attribute);
    auto record = context.meshes.find(mesh);
    if (record == context.meshes.end() || record->second.mesh < 0 || mesh->GetDeformerCount(KZylDeformer::eSkin) == 0) continue;
    auto known = skinOfMesh.find(mesh);
    if (known == skinOfMesh.end()) {
      SkinData data;
      int skinIndex = -1;
      if (CollectSkin(context, *mesh, data)) {
        AddWeights(context, record->second, data);
        tinygltf::Skin skin;
        skin.name = mesh->GetName().Std();
        skin.joints = data.joints;
        skin.inverseBindMatrices = context.buffer.AddFloats(data.inverseBindMatrices, 16, false, 0);
        context.model.skins.push_back(skin);
        skinIndex = static_cast<int>(context.model.skins.size() - 1);
      }
      known = skinOfMesh.emplace(mesh, skinIndex).first;
    }
    if (known->second >= 0) context.model.nodes[static_cast<size_t>(context.nodes.at(node))].skin = known->second;
  }
}

}  // namespace zylgltf
