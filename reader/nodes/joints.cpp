// Joints: skins are read before the visual scene, so their clusters link to placeholder nodes
// named after the joints. Each node of type JOINT takes over the clusters whose link has its
// name, and moves the joint's entry in the bind poses of those controllers.
//
// Looking at every cluster, controller and pose for each joint would be quadratic. The index
// below answers the same: it files clusters (in creation order), controller clusters (in list
// order) and bind poses (in array order) under the name without name-space prefix of their link,
// or of the pose, and is extended at each joint with what was made since the last one. A
// cluster's key never changes: a re-link always goes to a node of that same name. Each hit is
// still checked against the live link.

#include <unordered_map>
#include <vector>

#include "reader/nodes/node_steps.h"

namespace zylsdk {

struct JointIndex {
  // A cluster of a controller: its entry in the controllers list and its position in the record.
  struct ControllerCluster {
    int entry;
    int cluster;
  };

  std::unordered_map<KString, std::vector<KZylCluster*>> clustersByLink;
  size_t indexedClusters = 0;
  std::unordered_map<KString, std::vector<ControllerCluster>> controllerClustersByLink;
  int indexedControllers = 0;
  std::unordered_map<KString, std::vector<KZylPose*>> bindPosesByName;
  // How many entries of each node each bind pose holds: most joints are in no pose, and this
  // spares the search of every pose for them. Only the joint step changes these poses.
  std::unordered_map<const KZylPose*, std::unordered_map<const KZylNode*, int>> poseNodes;
  int indexedBindPoses = 0;
};

namespace {

JointIndex& IndexOf(KZylReaderCollada::DocumentState& state) {
  if (!state.jointIndex) state.jointIndex = std::make_shared<JointIndex>();
  return *state.jointIndex;
}

void IndexNewClusters(JointIndex& index, const std::vector<KZylCluster*>& clusters) {
  for (; index.indexedClusters < clusters.size(); ++index.indexedClusters) {
    KZylCluster* cluster = clusters[index.indexedClusters];
    if (KZylNode* link = cluster ? cluster->GetLink() : nullptr)
      index.clustersByLink[link->GetNameWithoutNameSpacePrefix()].push_back(cluster);
  }
}

void IndexNewControllers(JointIndex& index, const IdList<ControllerRecord>& controllers) {
  for (; index.indexedControllers < controllers.GetCount(); ++index.indexedControllers) {
    const ControllerRecord* controller = controllers.Get(index.indexedControllers);
    if (!controller) continue;
    for (int i = 0; i < controller->clusters.GetCount(); ++i) {
      KZylCluster* cluster = controller->clusters[i];
      if (KZylNode* link = cluster ? cluster->GetLink() : nullptr)
        index.controllerClustersByLink[link->GetNameWithoutNameSpacePrefix()].push_back({index.indexedControllers, i});
    }
  }
}

void IndexNewBindPoses(JointIndex& index, const KArrayTemplate<KZylPose*>& poses) {
  for (; index.indexedBindPoses < poses.GetCount(); ++index.indexedBindPoses) {
    KZylPose* pose = poses[index.indexedBindPoses];
    if (!pose) continue;
    index.bindPosesByName[pose->GetNameWithoutNameSpacePrefix()].push_back(pose);
    std::unordered_map<const KZylNode*, int>& nodes = index.poseNodes[pose];
    for (int i = 0; i < pose->GetCount(); ++i) ++nodes[pose->GetNode(i)];
  }
}

// Removes the joint's entry from the pose and adds the node of the entry that followed it
// again, with the joint's matrix. This order of calls is old behaviour, kept as it is; when no
// entry followed, nothing is added.
void MoveJointEntry(const NodeImportContext& context, JointIndex& index, KZylPose& pose, const KZylNode& joint) {
  std::unordered_map<const KZylNode*, int>& nodes = index.poseNodes[&pose];
  auto held = nodes.find(&joint);
  const int at = (held != nodes.end() && held->second > 0) ? pose.Find(&joint) : -1;
  if (at < 0) {
    context.reader.AddNotificationWarning("joint " + joint.GetName() + " not found in pose " + pose.GetName());
    return;
  }
  const KZylMatrix matrix = pose.GetMatrix(at);
  pose.Remove(at);
  --held->second;
  if (at >= pose.GetCount()) return;
  KZylNode* next = pose.GetNode(at);
  pose.Add(next, matrix, false);
  ++nodes[next];
}

}  // namespace

bool RetargetClustersToJoint(const NodeImportContext& context, KZylNode& joint, const KString& id) {
  JointIndex& index = IndexOf(context.state);
  IndexNewClusters(index, context.state.clusters);
  auto found = index.clustersByLink.find(id);
  if (found == index.clustersByLink.end()) return true;
  for (KZylCluster* cluster : found->second) {
    KZylNode* link = cluster->GetLink();
    if (!link || link->GetNameWithoutNameSpacePrefix() != id) continue;
    if (link->GetNodeAttribute()) {
      context.reader.AddNotificationError("link has two joints");
      return false;
    }
    cluster->DisconnectZylSrc(link);
    cluster->SetLink(&joint);
  }
  return true;
}

void RetargetBindPosesToJoint(const NodeImportContext& context, KZylNode& joint) {
  JointIndex& index = IndexOf(context.state);
  IndexNewControllers(index, context.state.controllers);
  IndexNewBindPoses(index, context.state.bindPoses);
  auto found = index.controllerClustersByLink.find(joint.GetNameWithoutNameSpacePrefix());
  if (found == index.controllerClustersByLink.end()) return;
  for (const JointIndex::ControllerCluster& entry : found->second) {
    const ControllerRecord* controller = context.state.controllers.Get(entry.entry);
    KZylCluster* cluster = controller->clusters[entry.cluster];
    KZylNode* link = cluster->GetLink();
    if (!link || link->GetName() != joint.GetName()) continue;
    auto poses = index.bindPosesByName.find(controller->id);
    if (poses == index.bindPosesByName.end()) continue;
    for (KZylPose* pose : poses->second) MoveJointEntry(context, index, *pose, joint);
  }
}

}  // namespace zylsdk
