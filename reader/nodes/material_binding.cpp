// Material binding: the geometry import leaves a placeholder material in each material slot of
// a mesh, named after the slot's symbol; `bind_material` of the instance element says which
// document material each symbol stands for.

#include "reader/dom/dom.h"
#include "reader/nodes/node_steps.h"

namespace zylsdk {
namespace {

// Binds one `instance_material`: false after an error.
bool BindMaterial(const NodeImportContext& context, DaeElement* instanceMaterial, const KZylNode& node, KZylMesh& mesh) {
  KZylReaderCollada& reader = context.reader;
  const KString symbol = DAE_GetProperty(instanceMaterial, "symbol");
  const KString target = DAE_GetProperty(instanceMaterial, "target");
  const int slot = mesh.GMI(symbol, 0);
  if (slot < 0) {
    reader.AddNotificationWarning("material of symbol " + symbol + " not found for node " + node.GetName());
    return true;
  }
  const int found = context.state.materials.Find(target.Mid(1));
  if (found < 0) {
    // The message ends in the digit 1, as it always has.
    reader.AddNotificationError("Library not found: " + target + 1);
    return false;
  }
  // The slot was found in layer 0's material element, so both exist.
  KZylLayer* layer = mesh.GetLayer(0);
  KZylLayerElementMaterial* element = layer ? layer->GetMaterials() : nullptr;
  if (!element) return true;
  element->SetReferenceMode(KZylLayerElement::eIndexToDirect);
  KArrayTemplate<KZylSurfaceMaterial*>& materials = element->GetDirectArray();
  reader.AddToMaterialSet(materials.RemoveAt(slot));
  materials.InsertAt(slot, context.state.materials.Get(found));
  return true;
}

}  // namespace

bool BindMaterials(const NodeImportContext& context, DaeElement* instance, const KZylNode& node, KZylMesh& mesh) {
  for (DaeElement* binding = firstChildElement(instance); binding; binding = nextSiblingElement(binding)) {
    if (!DAE_IsElement(binding, "bind_material")) continue;
    DaeElement* technique = getTechniqueCommonNode(binding);
    if (!technique) {
      context.reader.AddNotificationError("no <technique_common> node found for bind_material node ");
      return false;
    }
    for (DaeElement* child = firstChildElement(technique); child; child = nextSiblingElement(child))
      if (DAE_IsElement(child, "instance_material") && !BindMaterial(context, child, node, mesh)) return false;
  }
  return true;
}

}  // namespace zylsdk
