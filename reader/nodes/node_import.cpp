// A COLLADA `node` into a kit node: its transform, its attribute from the instance elements,
// and its subtree. Hierarchies can be deep, so the recursive ImportNode keeps only a few
// locals; the work of each child is done in helpers that return before the recursion.

#include "reader/collada_reader.h"
#include "reader/dom/dom.h"
#include "reader/nodes/node_steps.h"

namespace zylsdk {
namespace {

enum class ChildKind { kBoundingBox, kInstance, kNode, kReadElsewhere, kUnknown };

ChildKind KindOf(const DaeElement* child) {
  auto is = [child](const char* name) { return DAE_IsElement(child, name); };
  if (is("boundingbox")) return ChildKind::kBoundingBox;
  if (is("instance") || is("instance_geometry") || is("instance_camera") || is("instance_light") ||
      is("instance_controller"))
    return ChildKind::kInstance;
  // An instance_node is walked like an inline node (its url is not followed); the transform
  // import refuses it before, though.
  if (is("node") || is("instance_node")) return ChildKind::kNode;
  // Transform elements, read by the transform import. "perspective" is not among them.
  if (is("lookat") || is("matrix") || is("rotate") || is("scale") || is("skew") || is("translate") || is("extra"))
    return ChildKind::kReadElsewhere;
  return ChildKind::kUnknown;
}

KZylMesh* MeshOf(const KZylNode& node) {
  KZylNodeAttribute* attribute = node.GetNodeAttribute();
  return attribute && attribute->Is(KZylMesh::ClassId) ? static_cast<KZylMesh*>(attribute) : nullptr;
}

// Gives the node the attribute that one instance element names (a library object, or the
// target geometry of a controller), then binds the materials of the node's mesh.
bool ImportInstance(const NodeImportContext& context, DaeElement* instance, DaeElement* nodeElement, KZylNode& node) {
  KZylReaderCollada& reader = context.reader;
  const IdList<KZylNodeAttribute>& attributes = context.state.nodeAttributes;
  const KString id = DAE_GetUrl(instance);
  const int found = attributes.Find(id);
  if (found >= 0) {
    // A registered null (an ambient light) is found but gives no attribute.
    if (KZylNodeAttribute* attribute = attributes.Get(found)) reader.ImportNodeAttribute(nodeElement, node, attribute);
  } else {
    const ControllerRecord* controller = context.state.controllers.Lookup(id);
    if (!controller) {
      reader.AddNotificationError("Library not found: " + DAE_GetProperty(instance, "url"));
      return false;
    }
    const int target = attributes.Find(controller->source.Mid(1));
    if (target < 0) {
      reader.AddNotificationError("Library not found for controller target: " + controller->source);
      return false;
    }
    if (KZylNodeAttribute* attribute = attributes.Get(target)) reader.ImportNodeAttribute(nodeElement, node, attribute);
    if (KZylMesh* mesh = MeshOf(node)) AttachController(context, *controller, node, *mesh);
  }
  KZylMesh* mesh = MeshOf(node);
  return !mesh || BindMaterials(context, instance, node, *mesh);
}

// Handles one child element of a node. A child node to import is returned in `childNode`
// (null when there is none, or when the child is a default view, dropped with its subtree).
bool ImportNodeChild(const NodeImportContext& context, DaeElement* child, DaeElement* nodeElement, KZylNode& node,
                     KZylNode*& childNode) {
  KZylReaderCollada& reader = context.reader;
  const char* name = DAE_GetName(child);
  switch (KindOf(child)) {
    case ChildKind::kBoundingBox:
      reader.WarnOnce("boundingbox", "Bounding boxes are not supported");
      return true;
    case ChildKind::kInstance:
      return ImportInstance(context, child, nodeElement, node);
    case ChildKind::kNode: {
      const KString id = DAE_GetProperty(child, "id");
      // Nested default views go without a word; only top-level ones are reported.
      if (!IsDefaultViewCamera(id)) childNode = KZylNode::Create(reader.GetZylSdkManager(), id.Buffer());
      return true;
    }
    case ChildKind::kReadElsewhere:
      return true;
    case ChildKind::kUnknown:
      break;
  }
  reader.AddNotificationError(KString("structure ") + name + " unknown");
  return false;
}

// Every node ends with an attribute: a joint skeleton for nodes of type JOINT, which also takes
// over the placeholder links of the skins, and a null otherwise.
bool GiveDefaultAttribute(const NodeImportContext& context, DaeElement* nodeElement, KZylNode& node, const KString& id) {
  if (node.GetNodeAttribute()) return true;
  KZylSdkManager* manager = context.reader.GetZylSdkManager();
  if (DAE_GetProperty(nodeElement, "type") != "JOINT") {
    node.SetNodeAttribute(KZylNull::Create(manager, ""));
    return true;
  }
  KZylSkeleton* skeleton = KZylSkeleton::Create(manager, "");
  node.SetNodeAttribute(skeleton);
  skeleton->SetSkeletonType(KZylSkeleton::eLimbNode);
  if (!RetargetClustersToJoint(context, node, id)) return false;
  RetargetBindPosesToJoint(context, node);
  return true;
}

}  // namespace

bool KZylReaderCollada::ImportNode(DaeElement* nodeElement, KZylNode& node, KString id) {
  if (!(mStatus = ImportTransforms(nodeElement, &node))) return false;
  const NodeImportContext context{*this, *mState, mStatus};
  for (DaeElement* child = firstChildElement(nodeElement); child; child = nextSiblingElement(child)) {
    KZylNode* childNode = nullptr;
    if (!ImportNodeChild(context, child, nodeElement, node, childNode)) return false;
    if (!childNode) continue;
    // Child nodes are named after their id.
    if (!(mStatus = ImportNode(child, *childNode, childNode->GetName()))) return false;
    node.AddChild(childNode);
  }
  return GiveDefaultAttribute(context, nodeElement, node, id);
}

}  // namespace zylsdk
