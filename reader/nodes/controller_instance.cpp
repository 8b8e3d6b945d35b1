// A node that instances a controller: its mesh (a copy of the controller's target geometry)
// receives copies of the skin's clusters and bind pose, so that two nodes instancing one
// controller deform independently, and the morph targets as shapes.

#include <string>
#include <utility>

#include "reader/nodes/node_steps.h"

namespace zylsdk {
namespace {

void AttachSkin(const NodeImportContext& context, const ControllerRecord& controller, const DaeElement* instance,
                KZylNode& node, KZylMesh& mesh) {
  KZylReaderCollada& reader = context.reader;
  int64_t weights = 0;
  for (const KZylCluster* source : controller.clusters) weights += source->GetControlPointIndicesCount();
  const int64_t bytes = static_cast<int64_t>(controller.clusters.GetCount()) * OutputBudget::kBytesPerSkinJoint +
                        weights * static_cast<int64_t>(sizeof(int) + sizeof(double));
  if (!reader.SpendOutput(bytes, "skins")) return;
  SkinInstance skin{&node, instance, &controller, {}, context.state.bindPoses.GetCount()};
  int outsideTheMesh = 0;
  for (KZylCluster* source : controller.clusters) {
    KZylCluster* cluster = reader.CreateCluster();
    reader.CopyLink(cluster, source);
    // The traditional reading keeps the weights of points the mesh does not have.
    if (reader.IsComplete()) outsideTheMesh += cluster->RemoveControlPointsOutside(mesh.GetControlPointsCount());
    mesh.AddLink(cluster);
    skin.clusters.push_back(cluster);
  }
  if (outsideTheMesh > 0)
    reader.AddNotificationWarning(KString(std::to_string(outsideTheMesh)) + " weights of skin " + controller.id +
                                  " name points its mesh does not have: left out");
  // The complete reading links the clusters to their joints once the visual scene is built.
  if (reader.IsComplete()) context.state.skinInstances.push_back(std::move(skin));
  KZylPose* pose = KZylPose::Create(reader.GetZylSdkManager(), controller.id.Buffer());
  pose->SetIsBindPose(true);
  reader.CopyPose(pose, controller.bindPose);
  // The skinned node itself, at the bind shape matrix.
  pose->Add(&node, controller.bindShapeMatrix, false);
  context.state.bindPoses.Add(pose);
}

}  // namespace

void AttachController(const NodeImportContext& context, const ControllerRecord& controller, const DaeElement* instance,
                      KZylNode& node, KZylMesh& mesh) {
  if (!controller.clusters.IsEmpty()) AttachSkin(context, controller, instance, node, mesh);
  // Shapes are keyed by the weight source, which the morph-weight animations name, and carry
  // the node's name. A failure is reported there and does not stop the node.
  if (!controller.morphTargets.IsEmpty())
    context.status = context.reader.ConnectShapes(&mesh, node.GetName(), controller.morphTargets,
                                                  controller.morphWeightSource, controller.morphWeights);
}

}  // namespace zylsdk
