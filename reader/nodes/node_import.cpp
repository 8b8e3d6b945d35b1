// A COLLADA `node` into a kit node: its transform, its attribute from the instance elements,
// and its subtree. Hierarchies can be deep, so the recursive ImportNode keeps only a few
// locals; the work of each child is done in helpers that return before the recursion.

#include <vector>

#include "reader/collada_import.h"
#include "reader/dom/dom.h"
#include "reader/nodes/node_steps.h"

namespace zylsdk {
namespace {

// Nodes that instance_node may make in one read, all together: past it, a document of nested
// instances could ask for more nodes than memory holds.
constexpr int kInstancedNodeLimit = 1000000;

enum class ChildKind { kBoundingBox, kInstance, kNode, kReadElsewhere, kUnknown };

ChildKind KindOf(const DaeElement* child) {
  auto is = [child](const char* name) { return DAE_IsElement(child, name); };
  if (is("boundingbox")) return ChildKind::kBoundingBox;
  if (is("instance") || is("instance_geometry") || is("instance_camera") || is("instance_light") ||
      is("instance_controller"))
    return ChildKind::kInstance;
  // The traditional reading walks an instance_node like an inline node (its url is not
  // followed; the transform import refuses it before, though); the complete reading follows it.
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

// The id a controller's source names: the source less its first character (the "#" of a local
// reference); the complete reading also takes a source written without "#".
KString GeometryIdOf(const NodeImportContext& context, const ControllerRecord& controller) {
  const bool local = controller.source.Find('#') == 0;
  return context.reader.IsComplete() && !local ? controller.source : controller.source.Mid(1);
}

// The controller, then, in the complete reading, the controllers its source names in turn (a
// skin of a morph), up to the one whose source is a geometry. A loop ends the chain.
std::vector<const ControllerRecord*> ControllerChain(const NodeImportContext& context,
                                                     const ControllerRecord& controller) {
  std::vector<const ControllerRecord*> chain(1, &controller);
  if (!context.reader.IsComplete()) return chain;
  while (chain.size() <= static_cast<size_t>(context.state.controllers.GetCount())) {
    const KString source = GeometryIdOf(context, *chain.back());
    if (context.state.nodeAttributes.Find(source) >= 0) break;
    const ControllerRecord* next = context.state.controllers.Lookup(source);
    if (!next) break;
    chain.push_back(next);
  }
  return chain;
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
      // The complete reading keeps the node, without what the instance names.
      if (reader.IsComplete()) {
        reader.AddNotificationWarning("instance of a missing element not read: " + DAE_GetProperty(instance, "url"));
        return true;
      }
      reader.AddNotificationError("Library not found: " + DAE_GetProperty(instance, "url"));
      return false;
    }
    const std::vector<const ControllerRecord*> chain = ControllerChain(context, *controller);
    const int target = attributes.Find(GeometryIdOf(context, *chain.back()));
    if (target < 0) {
      reader.AddNotificationError("Library not found for controller target: " + controller->source);
      return false;
    }
    if (KZylNodeAttribute* attribute = attributes.Get(target)) reader.ImportNodeAttribute(nodeElement, node, attribute);
    if (KZylMesh* mesh = MeshOf(node))
      for (const ControllerRecord* link : chain) AttachController(context, *link, instance, node, *mesh);
  }
  KZylMesh* mesh = MeshOf(node);
  return !mesh || BindMaterials(context, instance, node, *mesh);
}

// A child node to import: the kit node and the element it is read from.
struct ChildToImport {
  KZylNode* node = nullptr;
  DaeElement* element = nullptr;
};

// The complete reading's extra instances: a node that already has its attribute gets each further
// instance on a child node of its own, named after the node and a number.
bool ImportExtraInstance(const NodeImportContext& context, DaeElement* instance, DaeElement* nodeElement, KZylNode& node,
                         int& extraInstances) {
  KZylNode* holder = KZylNode::Create(context.reader.GetZylSdkManager(), (node.GetName() + ++extraInstances).Buffer());
  if (!ImportInstance(context, instance, nodeElement, *holder)) return false;
  if (!holder->GetNodeAttribute()) holder->SetNodeAttribute(KZylNull::Create(context.reader.GetZylSdkManager(), ""));
  node.AddChild(holder);
  return true;
}

// The node an instance_node names, for the complete reading: a node of this document, found by
// id anywhere in it; null (with a warning) for a node of another document, a missing node, a
// node being read (a cycle), or past the limit of nodes instancing may make.
DaeElement* InstancedNode(const NodeImportContext& context, const DaeElement* instance) {
  KZylReaderCollada& reader = context.reader;
  const KString url = DAE_GetProperty(instance, "url");
  if (url.Find('#') != 0) {
    reader.WarnOnce("instance_node " + url, "instance_node of another document not followed: " + url);
    return nullptr;
  }
  DaeElement* target = context.state.elementsById.Find(url.Mid(1), "node");
  if (!target) {
    reader.WarnOnce("instance_node " + url, "instance_node target not found: " + url);
    return nullptr;
  }
  if (context.state.openNodeElements.count(target)) {
    reader.WarnOnce("instance_node cycle " + url, "instance_node cycle through " + url + " not followed");
    return nullptr;
  }
  if (context.state.nodesRead > kInstancedNodeLimit) {
    reader.WarnOnce("instance_node limit", KString("instance_node not followed: the scene would exceed ") +
                                               kInstancedNodeLimit + " nodes");
    return nullptr;
  }
  return target;
}

// Handles one child element of a node. A child node to import is returned in `child` (none
// when there is none, or when the child is a default view, dropped with its subtree).
bool ImportNodeChild(const NodeImportContext& context, DaeElement* element, DaeElement* nodeElement, KZylNode& node,
                     ChildToImport& child, int& extraInstances) {
  KZylReaderCollada& reader = context.reader;
  const KZylReaderCollada::ReadingAt reading(reader, element);
  const bool complete = reader.IsComplete();
  const char* name = DAE_GetName(element);
  switch (KindOf(element)) {
    case ChildKind::kBoundingBox:
      reader.WarnOnce("boundingbox", "Bounding boxes are not supported");
      return true;
    case ChildKind::kInstance:
      if (complete && node.GetNodeAttribute())
        return ImportExtraInstance(context, element, nodeElement, node, extraInstances);
      return ImportInstance(context, element, nodeElement, node);
    case ChildKind::kNode: {
      // The complete reading follows an instance_node to the node it names.
      child.element = complete && DAE_IsElement(element, "instance_node") ? InstancedNode(context, element) : element;
      if (!child.element) return true;
      const KString id = DAE_GetProperty(child.element, "id");
      // Nested default views go without a word; only top-level ones are reported.
      if (!IsDefaultViewCamera(id)) child.node = KZylNode::Create(reader.GetZylSdkManager(), id.Buffer());
      return true;
    }
    case ChildKind::kReadElsewhere:
      return true;
    case ChildKind::kUnknown:
      break;
  }
  if (complete) {
    reader.SkipUnknownElement(name);
    return true;
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
  // The complete reading links skins to their joints once the whole visual scene is built.
  if (context.reader.IsComplete()) return true;
  if (!RetargetClustersToJoint(context, node, id)) return false;
  RetargetBindPosesToJoint(context, node);
  return true;
}

}  // namespace

bool KZylReaderCollada::ImportNode(DaeElement* nodeElement, KZylNode& node, KString id) {
  const ReadingAt reading(*this, nodeElement);
  if (mComplete) {
    // The first node made of an element stands for it when joints are looked up.
    mState->nodeOfElement.emplace(nodeElement, &node);
    mState->openNodeElements.insert(nodeElement);
    ++mState->nodesRead;
  }
  if (!(mStatus = ImportTransforms(nodeElement, &node))) return false;
  const NodeImportContext context{*this, *mState, mStatus};
  int extraInstances = 0;
  for (DaeElement* element = firstChildElement(nodeElement); element; element = nextSiblingElement(element)) {
    ChildToImport child;
    if (!ImportNodeChild(context, element, nodeElement, node, child, extraInstances)) return false;
    if (!child.node) continue;
    // Child nodes are named after their id.
    if (!(mStatus = ImportNode(child.element, *child.node, child.node->GetName()))) return false;
    node.AddChild(child.node);
  }
  if (mComplete) mState->openNodeElements.erase(nodeElement);
  return GiveDefaultAttribute(context, nodeElement, node, id);
}

}  // namespace zylsdk
