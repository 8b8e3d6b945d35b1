// Instances: a node receives a fresh copy of the library object it instances, never the object
// itself, with the orientation fix-ups cameras and lights need; and the reverse question, which
// nodes instance a library element.

#include <algorithm>
#include <vector>

#include "reader/collada_import.h"
#include "reader/dom/dom.h"
#include "reader/nodes/element_numbers.h"
#include "reader/nodes/node_steps.h"

namespace zylsdk {
namespace {

// The post-rotations that turn the kit's cameras and oriented (directional and spot) lights onto
// COLLADA's viewing axis.
const KZylVector4 kCameraPostRotation(0.0, -90.0, 0.0);
const KZylVector4 kLightPostRotation(-90.0, 0.0, 0.0);

void SetPostRotation(KZylNode& node, const KZylVector4& rotation) {
  node.SetPostRotation(eSourcePivot, rotation);
  node.SetRotationActive(true);
}

// A camera's position, interest and up vector from a `lookat` of the node, when it has one.
void ApplyLookAt(KZylReaderCollada& reader, DaeElement* nodeElement, KZylNode& node, KZylCamera& camera) {
  KZylVector4 position(0.0, 0.0, 0.0, 1.0);
  KZylVector4 interest(0.0, -1.0, 0.0, 1.0);
  KZylVector4 up(0.0, 1.0, 0.0);
  KZylXMatrix matrix;
  if (!reader.ImportLookAt(nodeElement, position, interest, up, matrix)) return;
  camera.SetPosition(position);
  camera.SetDefaultCameraInterestPosition(interest);
  camera.SetUpVector(up);
  // The complete reading has composed the look-at with the node's other transform elements.
  if (!reader.IsComplete()) node.SetDefaultR(matrix.GetR());
  camera.SetFocusDistanceSource(KZylCamera::eCameraInterest);
  camera.SetSpecificDistance((interest - position).Length());
}

// The node of the first instance of a camera, controller, geometry or light that `element`
// holds, when its url is `url`; the node is found by the element's name. False when the
// element holds no such instance.
bool FindInstanceNode(const DaeElement* element, KZylNode* root, const KString& url, KZylNode*& found) {
  const DaeElement* instance = FirstObjectInstance(element);
  if (!instance || DAE_GetProperty(instance, "url") != url) return false;
  found = root ? root->FindChild(DAE_GetProperty(element, "name"), true, false) : nullptr;
  return true;
}

}  // namespace

const DaeElement* FirstObjectInstance(const DaeElement* element) {
  static const char* const kInstanceKinds[] = {"instance_camera", "instance_controller", "instance_geometry",
                                               "instance_light"};
  for (const char* kind : kInstanceKinds)
    if (const DaeElement* instance = findChildByType(element, kind)) return instance;
  return nullptr;
}

bool KZylReaderCollada::ImportNodeAttribute(DaeElement* nodeElement, KZylNode& node, KZylNodeAttribute* attribute) {
  if (!attribute) return mStatus = true;
  switch (attribute->GetAttributeType()) {
    case KZylNodeAttribute::eNull:
      node.SetNodeAttribute(KZylNull::Create(mManager, ""));
      return mStatus = true;
    case KZylNodeAttribute::eMarker:
      AddNotificationError("bad geometry: marker not implemented.");
      return mStatus = false;
    case KZylNodeAttribute::eLight: {
      KZylLight* light = KZylLight::Create(mManager, "");
      node.SetNodeAttribute(light);
      CopyLight(light, static_cast<KZylLight*>(attribute));
      if (light->GetLightType() == KZylLight::eSpot || light->GetLightType() == KZylLight::eDirectional)
        SetPostRotation(node, kLightPostRotation);
      return mStatus = true;
    }
    case KZylNodeAttribute::eCamera: {
      KZylCamera* camera = KZylCamera::Create(mManager, "");
      node.SetNodeAttribute(camera);
      CopyCamera(camera, static_cast<KZylCamera*>(attribute));
      ApplyLookAt(*this, nodeElement, node, *camera);
      SetPostRotation(node, kCameraPostRotation);
      return mStatus = true;
    }
    case KZylNodeAttribute::eCameraSwitcher:
      AddNotificationError("bad node attributed: camera switcher not implemented.");
      return mStatus = false;
    case KZylNodeAttribute::eSkeleton:
      node.SetNodeAttribute(KZylSkeleton::Create(mManager, ""));
      return mStatus = true;
    case KZylNodeAttribute::eMesh: {
      KZylMesh* mesh = KZylMesh::Create(mManager, "");
      node.SetNodeAttribute(mesh);
      CopyMesh(mesh, static_cast<KZylMesh*>(attribute));
      node.SetShadingMode(eLightTextureShading);
      return mStatus = true;
    }
    case KZylNodeAttribute::eNurb:
    case KZylNodeAttribute::ePatch:
      AddNotificationError("bad geometry in node " + node.GetName() + ": nurb and patches not implemented.\n");
      return mStatus = false;
    default:
      // The node keeps no attribute; the node import then gives it a null or a skeleton.
      AddNotificationWarning("unknown geometry for node " + node.GetName());
      return mStatus = true;
  }
}

KArrayTemplate<KZylNode*> KZylReaderCollada::FindInstances(DaeElement* element, KZylNode* root, KString url) {
  // Depth first, each element before its descendants; only visual scenes and nodes are looked
  // into. An explicit stack keeps deep hierarchies off the call stack.
  KArrayTemplate<KZylNode*> nodes;
  std::vector<const DaeElement*> pending(1, element);
  while (!pending.empty()) {
    const DaeElement* current = pending.back();
    pending.pop_back();
    if (!DAE_IsElement(current, "visual_scene") && !DAE_IsElement(current, "node")) continue;
    KZylNode* found = nullptr;
    // A name that no node has still gives an entry, a null one.
    if (FindInstanceNode(current, root, url, found)) nodes.Add(found);
    const size_t firstChild = pending.size();
    for (DaeElement* child = firstChildElement(current); child; child = nextSiblingElement(child)) pending.push_back(child);
    std::reverse(pending.begin() + static_cast<std::ptrdiff_t>(firstChild), pending.end());
  }
  return nodes;
}

bool KZylReaderCollada::ImportLookAt(DaeElement* nodeElement, KZylVector4& position, KZylVector4& interest,
                                     KZylVector4& up, KZylXMatrix& matrix) {
  DaeElement* lookAt = findChildByType(nodeElement, "lookat");
  if (!lookAt) return false;
  double values[9];
  ReadElementNumbers(lookAt, values, 9);
  position = KZylVector4(values[0], values[1], values[2], 1.0);
  interest = KZylVector4(values[3], values[4], values[5], 1.0);
  up = KZylVector4(values[6], values[7], values[8], 0.0);
  // The camera receives the normalised up vector; it is not made orthogonal to the view again.
  up.Normalize();
  KZylVector4 back = position - interest;
  back.Normalize();
  KZylVector4 side = up.CrossProduct(back);
  side.Normalize();
  matrix.SetRow(0, KZylVector4(side[0], side[1], side[2], 0.0));
  matrix.SetRow(1, KZylVector4(up[0], up[1], up[2], 0.0));
  matrix.SetRow(2, KZylVector4(back[0], back[1], back[2], 0.0));
  matrix.SetRow(3, interest);
  return true;
}

}  // namespace zylsdk
