// The node hierarchy: one glTF node per kit node, the root included (it carries the change of
// axes), with its transform as translation, rotation and scale.

#include <cmath>

#include "gltf/conversion_context.h"
#include "gltf/transforms.h"

namespace zylgltf {

using namespace zylsdk;

namespace {

bool IsFinite(const NodeTrs& trs) {
  for (double c : trs.translation) if (!std::isfinite(c)) return false;
  for (double c : trs.rotation) if (!std::isfinite(c)) return false;
  for (double c : trs.scale) if (!std::isfinite(c)) return false;
  return true;
}

void SetTransform(ConversionContext& context, tinygltf::Node& target, const NodeTrs& trs) {
  if (!IsFinite(trs)) {
    context.LeaveOut("transforms with infinite or undefined values (identity written)");
    return;
  }
  if (trs.translation != std::array<double, 3>{0.0, 0.0, 0.0})
    target.translation.assign(trs.translation.begin(), trs.translation.end());
  if (trs.rotation != std::array<double, 4>{0.0, 0.0, 0.0, 1.0}) target.rotation.assign(trs.rotation.begin(), trs.rotation.end());
  if (trs.scale != std::array<double, 3>{1.0, 1.0, 1.0}) target.scale.assign(trs.scale.begin(), trs.scale.end());
}

void ConvertAttribute(ConversionContext& context, const KZylNode& node, tinygltf::Node& target) {
  const KZylNodeAttribute* attribute = node.GetNodeAttribute();
  if (!attribute) return;
  switch (attribute->GetAttributeType()) {
    case KZylNodeAttribute::eMesh: {
      const int mesh = ConvertMesh(context, *static_cast<const KZylMesh*>(attribute));
      if (mesh >= 0) target.mesh = mesh;
      break;
    }
    case KZylNodeAttribute::eCamera:
      ConvertCamera(context, *static_cast<const KZylCamera*>(attribute), target);
      break;
    case KZylNodeAttribute::eLight:
      ConvertLight(context, *static_cast<const KZylLight*>(attribute), target);
      break;
    case KZylNodeAttribute::eNull:
    case KZylNodeAttribute::eSkeleton:
    case KZylNodeAttribute::eMarker:
      break;
    default:
      context.LeaveOut("node attributes other than meshes, cameras, lights, joints and nulls");
  }
}

}  // namespace

void ConvertNodes(ConversionContext& context, const KZylScene& scene) {
  // Depth first with an explicit stack: a deep hierarchy costs memory, never the call stack.
  struct Pending {
    const KZylNode* node;
    int parent;
  };
  std::vector<Pending> pending{{scene.GetRootNode(), -1}};
  tinygltf::Scene gltfScene;
  while (!pending.empty()) {
    const Pending item = pending.back();
    pending.pop_back();
    const int index = static_cast<int>(context.model.nodes.size());
    context.nodes[item.node] = index;
    {
      tinygltf::Node target;
      target.name = item.node->GetName().Std();
      // A node without any property would be written as null, which is not a node.
      if (target.name.empty()) target.name = "node" + std::to_string(index);
      SetTransform(context, target, LocalTrs(*item.node));
      context.model.nodes.push_back(std::move(target));
    }
    // Attributes may add helper nodes, so the node is filled through its index.
    tinygltf::Node filled = context.model.nodes[static_cast<size_t>(index)];
    ConvertAttribute(context, *item.node, filled);
    context.model.nodes[static_cast<size_t>(index)] = std::move(filled);
    if (item.parent < 0)
      gltfScene.nodes.push_back(index);
    else
      context.model.nodes[static_cast<size_t>(item.parent)].children.push_back(index);
    for (int child = item.node->GetChildCount() - 1; child >= 0; --child)
      pending.push_back({item.node->GetChild(child), index});
  }
  context.model.scenes.push_back(gltfScene);
  context.model.defaultScene = 0;
}

}  // namespace zylgltf
