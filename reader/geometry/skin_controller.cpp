// Controllers. A skin becomes one cluster per joint, holding the control points that the joint
// weighs, the bind shape matrix, the joint's bind matrix and a placeholder link node named after
// the joint, plus a bind pose over those placeholders; a morph (morph_controller.cpp) keeps its
// targets and weights. Nothing is attached to a mesh here: each node that instances the
// controller receives copies, and its joints take the placeholders' place.

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "reader/dom/numbers.h"
#include "reader/geometry/controller_steps.h"

namespace zylsdk {
namespace {

// The values of `v` read between two returns of their memory.
constexpr size_t kReleaseStep = 64 * 1024;

// The value of the input at `offset` in the group of `v` that starts at `start`; -1 past the end
// of the list, and for an offset below 0, which names no value.
int ValueAt(const std::vector<int>& v, int64_t start, int offset) {
  if (offset < 0) return -1;
  const size_t at = static_cast<size_t>(start + offset);
  return at < v.size() ? v[at] : -1;
}

// Walks `vcount` and `v` and calls visit(joint, vertex, weight index) for each group, in the
// order of `v`, and passed(vertices, values) after each vertex with how many of each list it has
// read. Joints outside the names (-1 stands for the bind shape) match no cluster and are passed
// over. The walk ends with the `v` list: past it every joint would read as -1.
template <class Visit, class Passed>
void ForEachJointWeight(const std::vector<int>& counts, const std::vector<int>& v, int stride, int jointOffset,
                        int weightOffset, int jointCount, Visit&& visit, Passed&& passed) {
  const int64_t size = static_cast<int64_t>(v.size());
  int64_t start = 0;
  for (size_t vertex = 0; vertex < counts.size() && start < size; ++vertex) {
    // A count below 0 counts as none.
    const int64_t span = static_cast<int64_t>(stride) * std::max(0, counts[vertex]);
    for (int64_t k = 0; k < span && start + k < size; k += stride) {
      const int joint = ValueAt(v, start + k, jointOffset);
      if (joint >= 0 && joint < jointCount) visit(joint, static_cast<int>(vertex), ValueAt(v, start + k, weightOffset));
    }
    start += span;
    passed(vertex + 1, static_cast<size_t>(std::min(start, size)));
  }
}

bool ReadVertexWeights(KZylReaderCollada& reader, DaeElement* skin, MeshSources& sources,
                       KArrayTemplate<KZylCluster*>& clusters) {
  DaeElement* vertexWeights = findChildByType(skin, "vertex_weights");
  if (!vertexWeights) {
    reader.AddNotificationError(KString("<") + "vertex_weights" + "> node not found in controller\n");
    return false;
  }
  // The `count` attribute is not used: the vertices are those of `vcount`.
  KArrayTemplate<DaeElement*> inputs;
  findChildrenByType(vertexWeights, "input", inputs);
  // The groups of `v` hold one value per input, whatever the offsets say.
  const int stride = inputs.GetCount();
  int jointOffset = stride;
  int weightOffset = stride;
  const KArrayTemplate<KString>* joints = nullptr;
  const NumberSource* weights = nullptr;
  for (DaeElement* input : inputs) {
    const KString semantic = DAE_GetProperty(input, "semantic");
    if (semantic == "JOINT") {
      if (!(joints = ReadInputSource<KString>(reader, sources, input))) return false;
      jointOffset = DAE_GetOffset(input);
    } else if (semantic == "WEIGHT") {
      if (!(weights = ReadInputNumbers(reader, sources, input))) return false;
      weightOffset = DAE_GetOffset(input);
    } else {
      return RejectInput(reader, semantic);
    }
  }
  // Only an input sets an offset below the input count, so both sources were read.
  if (jointOffset >= stride || weightOffset >= stride) {
    reader.AddNotificationError(KString("Controller: could not find ") + "JOINT" + " or " + "WEIGHT");
    return false;
  }
  if (weights->Count() == 0 || joints->IsEmpty()) {
    reader.AddNotificationError("Unable to find weight or jointIds for controller");
    return false;
  }
  // The document's own values, read where they are.
  std::vector<int> countStorage, valueStorage;
  const DaeElement* countsElement = findChildByType(vertexWeights, "vcount");
  const DaeElement* valuesElement = findChildByType(vertexWeights, "v");
  const std::vector<int>& counts = DAE_GetInts(countsElement, countStorage);
  const std::vector<int>& v = DAE_GetInts(valuesElement, valueStorage);
  const int jointCount = joints->GetCount();
  // Two walks: one counts each joint's weights so that its cluster is allocated once, the other
  // fills the clusters in the order of `v`. A weight index outside the weights gives 0.
  std::vector<int> weightsPerJoint(static_cast<size_t>(jointCount), 0);
  ForEachJointWeight(
      counts, v, stride, jointOffset, weightOffset, jointCount,
      [&](int joint, int, int) { ++weightsPerJoint[static_cast<size_t>(joint)]; }, [](size_t, size_t) {});
  // A joint that weighs no vertex still gets its cluster.
  std::vector<KZylCluster*> made;
  made.reserve(weightsPerJoint.size());
  while (made.size() < weightsPerJoint.size()) {
    KZylCluster* cluster = reader.CreateCluster();
    cluster->SetLinkMode(KZylCluster::eNormalize);
    clusters.Add(cluster);
    made.push_back(cluster);
  }
  // The lists are read once, in order: what has been read goes while the clusters grow, and a
  // cluster takes its room (all of it at once) only when its first weight comes.
  size_t released = 0;
  ForEachJointWeight(
      counts, v, stride, jointOffset, weightOffset, jointCount,
      [&](int joint, int vertex, int weight) {
        const double value = weight >= 0 && weight < weights->Count() ? weights->Item<double>(weight) : 0.0;
        KZylCluster& cluster = *made[static_cast<size_t>(joint)];
        if (cluster.GetControlPointIndicesCount() == 0) cluster.ReserveControlPoints(weightsPerJoint[static_cast<size_t>(joint)]);
        cluster.AddControlPointIndex(vertex, value);
      },
      [&](size_t vertices, size_t values) {
        if (values - released < kReleaseStep) return;
        reader.ReleaseReadListFront(countsElement, vertices);
        reader.ReleaseReadListFront(valuesElement, values);
        released = values;
      });
  return true;
}

bool ReadLinkMatrices(KZylReaderCollada& reader, DaeElement* skin, MeshSources& sources,
                      KArrayTemplate<KZylCluster*>& clusters) {
  DaeElement* jointsElement = findChildByType(skin, "joints");
  if (!jointsElement) {
    reader.AddNotificationError(KString("<") + "joints" + "> node not found in controller\n");
    return false;
  }
  KArrayTemplate<DaeElement*> inputs;
  findChildrenByType(jointsElement, "input", inputs);
  const KArrayTemplate<KString> none;
  const KArrayTemplate<KZylXMatrix> noMatrices;
  const KArrayTemplate<KString>* names = &none;
  const KArrayTemplate<KZylXMatrix>* matrices = &noMatrices;
  for (DaeElement* input : inputs) {
    const KString semantic = DAE_GetProperty(input, "semantic");
    if (semantic == "JOINT") {
      if (!(names = ReadInputSource<KString>(reader, sources, input))) return false;
    } else if (semantic == "INV_BIND_MATRIX") {
      if (!(matrices = ReadInputSource<KZylXMatrix>(reader, sources, input))) return false;
    } else {
      return RejectInput(reader, semantic);
    }
  }
  const int jointCount = names->GetCount();
  const int matrixCount = matrices->GetCount();
  if (jointCount == 0 || matrixCount == 0) {
    reader.AddNotificationError("Unable to find weight or bind matrices for controller");
    return false;
  }
  if (jointCount != matrixCount) {
    reader.AddNotificationError(KString("in controller, number of joints ") + jointCount +
                                " is different than number of bind pose matrices " + matrixCount);
    return false;
  }
  if (jointCount != clusters.GetCount()) {
    reader.AddNotificationError(KString("in controller, number of links ") + clusters.GetCount() +
                                " is different than number of bind pose matrices " + jointCount);
    return false;
  }
  for (int i = 0; i < jointCount; ++i) {
    // The document gives the inverse of the joint's global matrix at bind time.
    const KZylXMatrix bindMatrix = (*matrices)[i].Inverse();
    clusters[i]->SetTransformLinkMatrix(bindMatrix);
    KZylNode* link = KZylNode::Create(reader.GetZylSdkManager(), (*names)[i].Buffer());
    reader.SetMatrix(link, &bindMatrix);
    clusters[i]->SetLink(link);
  }
  return true;
}

bool ImportSkin(KZylReaderCollada& reader, DaeElement* skin, ControllerRecord& record) {
  record.source = DAE_GetProperty(skin, "source");
  // Without a bind_shape_matrix there are no values, which reads as the identity.
  record.bindShapeMatrix = DAE_GetMatrix(findChildByType(skin, "bind_shape_matrix"));
  // Both steps name the joints' source; it is read once.
  MeshSources sources(skin, reader.SourceReadingRules());
  if (!ReadVertexWeights(reader, skin, sources, record.clusters)) return false;
  if (!ReadLinkMatrices(reader, skin, sources, record.clusters)) return false;
  for (KZylCluster* cluster : record.clusters) cluster->SetTransformMatrix(record.bindShapeMatrix);
  return true;
}

// The skin's joints at their bind matrices. The placeholder links have no parent, so their
// global matrix is the one their bind matrix gave them.
KZylPose* MakeBindPose(KZylSdkManager* manager, const ControllerRecord& record) {
  KZylPose* pose = KZylPose::Create(manager, record.id.Buffer());
  pose->SetIsBindPose(true);
  for (KZylCluster* cluster : record.clusters)
    if (KZylNode* link = cluster->GetLink()) pose->Add(link, link->GetGlobalFromDefaultTake(eSourcePivot), false);
  return pose;
}

}  // namespace

bool KZylReaderCollada::ImportController(DaeElement* controller) {
  const ReadingAt reading(*this, controller);
  auto record = std::make_unique<ControllerRecord>();
  record->id = DAE_GetProperty(controller, "id");
  bool skinRead = false;
  bool morphRead = false;
  for (DaeElement* child = firstChildElement(controller); child; child = nextSiblingElement(child)) {
    const bool isSkin = DAE_IsElement(child, "skin");
    if (!isSkin && !DAE_IsElement(child, "morph")) {
      AddNotificationWarning(KString("unknown structure in controller: <") + DAE_GetName(child) + ">");
      continue;
    }
    bool& read = isSkin ? skinRead : morphRead;
    if (read) {
      AddNotificationError(KString("more than one ") + DAE_GetName(child) + " defined for library " + record->id);
      return mStatus = false;
    }
    if (!(mStatus = isSkin ? ImportSkin(*this, child, *record) : ImportMorph(*this, child, *record))) return false;
    read = true;
  }
  if (record->source.IsEmpty()) {
    AddNotificationError("Controller is missing a source");
    return mStatus = false;
  }
  if (skinRead) record->bindPose = MakeBindPose(mManager, *record);
  const KString id = record->id;
  mState->controllers.Add(id, std::move(record));
  return mStatus = true;
}

bool KZylReaderCollada::ImportVertexWeightsInController(DaeElement* skin, KArrayTemplate<KZylCluster*>& clusters) {
  MeshSources sources(skin, SourceReadingRules());
  return mStatus = ReadVertexWeights(*this, skin, sources, clusters);
}

bool KZylReaderCollada::ImportLinkMatricesInController(DaeElement* skin, KArrayTemplate<KZylCluster*>& clusters) {
  MeshSources sources(skin, SourceReadingRules());
  return mStatus = ReadLinkMatrices(*this, skin, sources, clusters);
}

}  // namespace zylsdk
