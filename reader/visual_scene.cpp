// Visual scenes, each built into a scene of its own, and the `scene` element that copies the
// chosen ones into the application's scene.

#include <cstring>
#include <string_view>
#include <unordered_map>

#include "reader/collada_import.h"
#include "reader/dom/dom.h"
#include "reader/nodes/node_steps.h"

namespace zylsdk {
namespace {

// The default views of modelling packages, which are not part of a scene's content.
constexpr std::string_view kDefaultCameras[] = {"persp", "top", "bottom", "left", "right", "side", "front", "back"};

}  // namespace

bool IsDefaultViewCamera(const KString& id) {
  // Every node's id comes here: lengths compare first, without a pass over the id's text.
  const std::string_view name = id.Std();
  for (std::string_view camera : kDefaultCameras)
    if (name == camera) return true;
  return false;
}

bool KZylReaderCollada::ImportVisualScene(DaeElement* visualScene) {
  const ReadingAt reading(*this, visualScene);
  const KString id = DAE_GetProperty(visualScene, "id");
  KZylScene* scene = KZylScene::Create(mManager, "");
  for (DaeElement* child = firstChildElement(visualScene); child; child = nextSiblingElement(child)) {
    const char* name = DAE_GetName(child);
    const ReadingAt readingChild(*this, child);
    if (std::strcmp(name, "node") == 0) {
      KString nodeName = DAE_GetProperty(child, "name");
      KString nodeId = DAE_GetProperty(child, "id");
      if (!IsNodeExportable(nodeId)) continue;
      // Nodes are named after their COLLADA id.
      KZylNode* node = KZylNode::Create(mManager, nodeId.Buffer());
      node->SetTransformationInheritType(eInheritRSrs);
      if (!(mStatus = ImportNode(child, *node, nodeId))) return false;
      KZylNode* root = scene->GetRootNode();
      if (!root->AddChild(node)) {
        AddNotificationError("could not add node " + nodeName + "\nError: " + root->GetLastErrorString());
        return false;
      }
    } else if (std::strcmp(name, "extra") == 0) {
      // Names the visual scene element itself, so the text always ends in "visual_scene".
      AddNotificationWarning(KString("Extra node is not supported in node ") + DAE_GetName(visualScene));
    } else if (std::strcmp(name, "boundingbox") == 0) {
      WarnOnce("boundingbox", "Bounding boxes are not supported");
    } else if (mComplete) {
      SkipUnknownElement(name);
    } else {
      AddNotificationError(KString("structure ") + name + " unknown");
      return false;
    }
  }
  // Every bind pose made so far: a second visual scene receives the first one's poses too. The
  // complete reading gives a visual scene its own poses, linked to its joints.
  if (mComplete) LinkSkinsToJoints();
  const int firstPose = mComplete ? mState->firstBindPoseOfScene : 0;
  for (int i = firstPose; i < mState->bindPoses.GetCount(); ++i) scene->AddPose(mState->bindPoses[i]);
  mState->firstBindPoseOfScene = mState->bindPoses.GetCount();
  mState->visualScenes.Add(id, scene);
  return true;
}

bool KZylReaderCollada::ImportScene(KZylScene& scene, DaeElement* sceneElement, bool lastReadOfDocument) {
  const ReadingAt reading(*this, sceneElement);
  std::unordered_map<const KZylScene*, int> instances;
  DaeElement* next = nullptr;
  for (DaeElement* child = firstChildElement(sceneElement); child; child = next) {
    next = nextSiblingElement(child);
    const char* name = DAE_GetName(child);
    const ReadingAt readingChild(*this, child);
    if (std::strcmp(name, "instance_visual_scene") == 0) {
      KString url = DAE_GetUrl(child);
      KZylScene* visualScene = mState->visualScenes.Lookup(url);
      if (!mState->visualScenes.Contains(url) || !visualScene) {
        AddNotificationError("Scene not found: " + url);
        return false;
      }
      // Every instance copies the whole visual scene: past the limit, a few bytes of document
      // would each ask for a scene's worth of work and memory.
      const int count = ++instances[visualScene];
      if (count > mMaxSceneInstances) {
        if (count == mMaxSceneInstances + 1)
          AddNotificationWarning(KString("visual scene #") + url + " is instanced more than " + mMaxSceneInstances +
                                 " times: the other instances are skipped (read option MAX SCENE INSTANCES)");
        continue;
      }
      // A copy reads the kit's objects only: the last one can do without the document.
      if (lastReadOfDocument && !next) ReleaseDocument();
      if (!(mStatus = CopyScene(&scene, visualScene))) return false;
    } else if (std::strcmp(name, "instance_physics_scene") == 0) {
      AddNotificationWarning(KString("structure ") + name + " is not supported.");
    } else if (mComplete) {
      SkipUnknownElement(name);
    } else {
      AddNotificationError(KString("structure ") + name + " unknown");
      return false;
    }
  }
  return true;
}

bool KZylReaderCollada::IsNodeExportable(const KString& id) {
  if (!IsDefaultViewCamera(id)) return true;
  AddNotificationWarning("Camera " + id + " will not be imported.");
  return false;
}

}  // namespace zylsdk
