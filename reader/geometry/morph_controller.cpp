// Morphs: a controller's `morph` keeps its target geometries and their weights; a node that
// instances it gets each target as a shape of its own copy of the base mesh, weighted as the
// document says (0 to 1, unscaled), and recorded for the morph-weight animations.

#include <memory>

#include "reader/geometry/controller_steps.h"

namespace zylsdk {
namespace {

// The registered geometry of a target id; null when the id names no geometry.
KZylGeometryBase* TargetGeometry(const IdList<KZylNodeAttribute>& attributes, const KString& id) {
  KZylNodeAttribute* attribute = attributes.Lookup(id);
  return attribute && attribute->Is(KZylGeometryBase::ClassId) ? static_cast<KZylGeometryBase*>(attribute) : nullptr;
}

}  // namespace

bool ImportMorph(KZylReaderCollada& reader, DaeElement* morph, ControllerRecord& record) {
  const KString method = DAE_GetProperty(morph, "method");
  if (method != "RELATIVE")
    reader.AddNotificationWarning("Morph " + record.id + " has method " + method + ", which is not supported." +
                                  " Morph will be read as RELATIVE.");
  // The base geometry is looked up by the node that instances the controller.
  record.source = DAE_GetProperty(morph, "source");
  return reader.ImportTargetsInController(morph, record.morphTargets, record.morphWeightSource, record.morphWeights);
}

bool KZylReaderCollada::ImportTargetsInController(DaeElement* morph, KArrayTemplate<KString>& targets,
                                                  KString& weightSource, KArrayTemplate<double>& weights) {
  DaeElement* targetsElement = findChildByType(morph, "targets");
  if (!targetsElement) {
    AddNotificationError(KString("<") + "targets" + "> node not found in controller\n");
    return mStatus = false;
  }
  targets.Clear();
  weights.Clear();
  KArrayTemplate<DaeElement*> inputs;
  findChildrenByType(targetsElement, "input", inputs);
  MeshSources sources(morph);
  for (DaeElement* input : inputs) {
    const KString semantic = DAE_GetProperty(input, "semantic");
    if (semantic == "MORPH_TARGET") {
      const KArrayTemplate<KString>* ids = ReadInputSource<KString>(*this, sources, input);
      if (!ids) return mStatus = false;
      targets = *ids;
    } else if (semantic == "MORPH_WEIGHT") {
      const KArrayTemplate<double>* values = ReadInputSource<double>(*this, sources, input);
      if (!values) return mStatus = false;
      weights = *values;
      // The morph-weight animations name this source.
      weightSource = DAE_GetProperty(input, "source").Mid(1);
    } else {
      return mStatus = RejectInput(*this, semantic);
    }
  }
  if (targets.IsEmpty() || weights.IsEmpty()) {
    // The same text as for skins.
    AddNotificationError("Unable to find weight or bind matrices for controller");
    return mStatus = false;
  }
  if (targets.GetCount() != weights.GetCount()) {
    AddNotificationError(KString("in controller, number of targets ") + targets.GetCount() +
                         " is different than number of weights " + weights.GetCount());
    return mStatus = false;
  }
  return mStatus = true;
}

bool KZylReaderCollada::ConnectShapes(KZylGeometry* geometry, KString name, const KArrayTemplate<KString>& targets,
                                      KString key, const KArrayTemplate<double>& weights) {
  if (targets.IsEmpty()) return mStatus = true;
  if (!geometry) return mStatus = false;
  for (int i = 0; i < targets.GetCount(); ++i) {
    const KString& target = targets[i];
    KZylGeometryBase* targetGeometry = TargetGeometry(mState->nodeAttributes, target);
    if (!targetGeometry) {
      // Nothing to copy; the other targets keep their positions.
      AddNotificationWarning("Morph target not found: " + target);
      continue;
    }
    KZylShape* shape = KZylShape::Create(mManager, "");
    CopyShape(shape, targetGeometry);
    const int index = geometry->AddShape(shape, target);
    if (index < 0) {
      AddNotificationError("could not add shape " + target + " to mesh " + name + ";\n" + "Error code is " +
                           geometry->GetLastErrorString());
      return mStatus = false;
    }
    // Adding the shape made the property that holds its weight.
    KZylProperty weight = geometry->FindProperty(target, true);
    if (weight.IsValid()) weight.Set(weights.GetAt(i));
    ShapeRecordList* records = mState->shapes.Lookup(key);
    if (!records) records = mState->shapes.Add(key, ShapeRecordList());
    records->Add(ShapeRecord{key, name, target, index, i});
  }
  KZylGeometryConverter* converter = KZylGeometryConverter::Create(mManager, "");
  KZylMesh* mesh = geometry->Is(KZylMesh::ClassId) ? static_cast<KZylMesh*>(geometry) : nullptr;
  if (!(mStatus = converter->EmulateNormalsByPolygonVertex(mesh))) {
    AddNotificationError("Badly formed mesh or shape; Could not convert shape normals to polygon vertex.");
    return false;
  }
  converter->Destroy();
  return true;
}

}  // namespace zylsdk
