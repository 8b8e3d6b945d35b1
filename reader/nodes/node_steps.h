#pragma once
// Steps of the node import that live in files of their own. They work on the reader through
// its public operations and on the document state that the node import hands them.

#include "reader/collada_import.h"
#include "reader/dom/dom.h"

namespace zylsdk {

// What a node import step works on.
struct NodeImportContext {
  KZylReaderCollada& reader;
  KZylReaderCollada::DocumentState& state;
  bool& status;  // the reader's status flag
};

// True for the ids of the default views of modelling packages ("persp", "top"...), which are
// not part of a scene's content.
bool IsDefaultViewCamera(const KString& id);

// The first instance of a camera, controller, geometry or light (looked for in that order)
// among the children of `element`; null when it has none. Animation targets and instance
// lookups name a node by this instance's url.
const DaeElement* FirstObjectInstance(const DaeElement* element);

// Replaces the placeholder materials of the mesh's slots by the document's materials, as the
// `bind_material` children of the instance element ask. False after an error.
bool BindMaterials(const NodeImportContext& context, DaeElement* instance, const KZylNode& node, KZylMesh& mesh);

// Gives the mesh of a node that instances a controller its own copy of the controller's skin
// (clusters and bind pose) and its morph targets as shapes.
// `instance` is the instance_controller element.
void AttachController(const NodeImportContext& context, const ControllerRecord& controller, const DaeElement* instance,
                      KZylNode& node, KZylMesh& mesh);

// A node of type JOINT replaces the placeholder link named `id` of every cluster of the read;
// false ("link has two joints") when such a link is already a node with an attribute.
bool RetargetClustersToJoint(const NodeImportContext& context, KZylNode& joint, const KString& id);
// Then, in each bind pose of a controller whose clusters link to the joint, the joint's entry
// is removed and the node of the entry that followed it is added again, at the end, with the
// joint's matrix; a pose without the joint gives a warning.
void RetargetBindPosesToJoint(const NodeImportContext& context, KZylNode& joint);

// The complete reading's transform: the node's local matrix becomes the product of its
// transform elements in document order. The translation, rotation, scaling and pivots already
// read stay when they give that product; otherwise the node takes the product's translation,
// rotation and scaling, without pivots, and a product with shear gives a warning once. Each
// `matrix` element with a sid is registered as an animation target.
void ComposeTransformStack(const NodeImportContext& context, const DaeElement* nodeElement, KZylNode& node);

}  // namespace zylsdk
