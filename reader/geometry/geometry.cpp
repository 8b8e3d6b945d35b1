// Geometries: one mesh per `geometry`, its control points from `vertices`, then its polygons.

#include "reader/collada_import.h"
#include "reader/dom/dom.h"
#include "reader/geometry/index_ranges.h"
#include "reader/geometry/mesh_sources.h"

namespace zylsdk {

bool KZylReaderCollada::ImportGeometry(DaeElement* geometry) {
  const ReadingAt reading(*this, geometry);
  if (mComplete) return ImportAnyGeometry(geometry);
  const KString id = DAE_GetProperty(geometry, "id");
  bool meshRead = false;
  for (DaeElement* child = firstChildElement(geometry); child; child = nextSiblingElement(child)) {
    const ReadingAt readingChild(*this, child);
    // Only meshes are read: any other child fails the geometry, even after its mesh.
    if (!DAE_IsElement(child, "mesh")) {
      AddNotificationError(KString("Unrecognized geometry element: ") + DAE_GetName(child));
      return false;
    }
    if (meshRead) {
      AddNotificationError("more than one mesh defined for library " + id);
      return false;
    }
    // The mesh is registered under the geometry's id; it keeps an empty name.
    KZylMesh* mesh = KZylMesh::Create(mManager, "");
    if (!(mStatus = ImportMesh(child, mesh))) return false;
    mState->nodeAttributes.Add(id, mesh);
    meshRead = true;
  }
  if (!meshRead) {
    AddNotificationError("no mesh found for library " + id);
    return false;
  }
  return true;
}

DaeElement* KZylReaderCollada::MeshElementOf(DaeElement* geometry) {
  // A convex hull of another geometry reads that geometry's mesh; a chain of them is followed
  // as far as the number of geometries allows, so that a loop ends.
  const size_t largestChain = mState->elementsById.GetElementCount();
  for (size_t hops = 0; geometry && hops <= largestChain; ++hops) {
    DaeElement* mesh = nullptr;
    for (DaeElement* child = firstChildElement(geometry); child && !mesh; child = nextSiblingElement(child))
      if (DAE_IsElement(child, "mesh") || DAE_IsElement(child, "convex_mesh")) mesh = child;
    const KString hullOf = DAE_GetProperty(mesh, "convex_hull_of");
    if (!mesh || hullOf.IsEmpty()) return mesh;
    geometry = mState->elementsById.Find(hullOf.Mid(1), "geometry");
  }
  return nullptr;
}

bool KZylReaderCollada::IsHullOfAnother(const DaeElement* geometry) {
  if (!mComplete || !DAE_IsElement(geometry, "geometry")) return false;
  if (!mState->convexHullTargets) {
    // Convex meshes can stand in any geometry of the document: every element is looked at once.
    std::unordered_set<KString>& targets = mState->convexHullTargets.emplace();
    const DaeDocument& document = geometry->Document();
    for (size_t order = 0; order < document.ElementCount(); ++order) {
      const DaeElement* element = document.ElementAt(static_cast<uint32_t>(order));
      if (!DAE_IsElement(element, "convex_mesh")) continue;
      // Read as MeshElementOf reads it.
      const KString hullOf = DAE_GetProperty(element, "convex_hull_of");
      if (!hullOf.IsEmpty()) targets.insert(hullOf.Mid(1));
    }
  }
  return mState->convexHullTargets->count(DAE_GetProperty(geometry, "id")) > 0;
}

bool KZylReaderCollada::ImportAnyGeometry(DaeElement* geometry) {
  const ReadingAt reading(*this, geometry);
  const KString id = DAE_GetProperty(geometry, "id");
  // Other kinds of geometry (splines, boundary representations) have no kit counterpart.
  for (DaeElement* child = firstChildElement(geometry); child; child = nextSiblingElement(child)) {
    const char* name = DAE_GetName(child);
    if (!DAE_IsElement(child, "mesh") && !DAE_IsElement(child, "convex_mesh") && !DAE_IsElement(child, "asset") &&
        !DAE_IsElement(child, "extra"))
      WarnOnce(name, KString("geometry kind not read: ") + name);
  }
  DaeElement* meshElement = MeshElementOf(geometry);
  // Registered without an attribute, so that its instances read without one.
  if (!meshElement) {
    AddNotificationWarning("no mesh found for library " + id);
    mState->nodeAttributes.Add(id, nullptr);
    return true;
  }
  if (!findChildByType(meshElement, "vertices")) {
    AddNotificationWarning("mesh of " + id + " has no <vertices>: read without geometry");
    mState->nodeAttributes.Add(id, nullptr);
    return true;
  }
  KZylMesh* mesh = KZylMesh::Create(mManager, "");
  if (!(mStatus = ImportMesh(meshElement, mesh))) return false;
  mState->nodeAttributes.Add(id, mesh);
  return true;
}

bool KZylReaderCollada::ImportMesh(DaeElement* meshElement, KZylMesh* mesh) {
  const ReadingAt reading(*this, meshElement);
  if (!mesh->GetLayer(0)) mesh->CreateLayer();
  if (!mesh->GetNormals()) mesh->InitNormals(0);
  MeshSources sources(meshElement, SourceReadingRules());
  if (!(mStatus = ImportVertices(meshElement, mesh, sources))) return false;
  mStatus = ImportPolygons(meshElement, *mesh, sources);
  if (mStatus && mComplete) {
    if (const int cleared = ClearIndicesOutsideArrays(*mesh))
      AddNotificationWarning(KString(std::to_string(cleared)) + " indices of the mesh point outside their arrays: read as -1");
  }
  return mStatus;
}

namespace {

// Points `out` at the values of the source an input of `vertices` names; false (with the
// error said) when the source is missing or unreadable.
template <class T>
bool ReadVerticesSource(KZylReaderCollada& reader, MeshSources& sources, const KString& attribute,
                        const KArrayTemplate<T>*& out) {
  if (!sources.Find(attribute)) {
    reader.AddNotificationError("source " + attribute + " not source in vertices input");
    return false;
  }
  out = sources.Read<T>(attribute);
  if (!out) {
    reader.AddNotificationError("reading array in <source>: " + attribute);
    return false;
  }
  return true;
}

}  // namespace

void KZylReaderCollada::SetControlPointUVs(KZylGeometry& geometry, const KArrayTemplate<KZylVector2>& uvs) {
  if (!geometry.GetLayer(0)) geometry.CreateLayer();
  KZylLayerElementUV* element = mManager->CreateKZylLayerElementUV("");
  element->SetMappingMode(KZylLayerElement::eByControlPoint);
  element->SetReferenceMode(KZylLayerElement::eDirect);
  element->GetDirectArray() = uvs;
  geometry.GetLayer(0)->SetUVs(element, KZylLayerElement::eDiffuseTextures);
}

bool KZylReaderCollada::ImportVertices(DaeElement* meshElement, KZylGeometry* geometry) {
  MeshSources sources(meshElement, SourceReadingRules());
  return ImportVertices(meshElement, geometry, sources);
}

bool KZylReaderCollada::ImportVertices(DaeElement* meshElement, KZylGeometry* geometry, MeshSources& sources) {
  DaeElement* vertices = findChildByType(meshElement, "vertices");
  if (!vertices) {
    AddNotificationError("<vertex> node not found");
    return false;
  }

  const KArrayTemplate<KZylVector4> none;
  const KArrayTemplate<KZylVector4>* positions = &none;
  const KArrayTemplate<KZylVector4>* normals = &none;
  const KArrayTemplate<KZylColor>* colors = nullptr;
  const KArrayTemplate<KZylVector2>* uvs = nullptr;
  KArrayTemplate<DaeElement*> inputs;
  findChildrenByType(vertices, "input", inputs);
  for (DaeElement* input : inputs) {
    const KString semantic = DAE_GetProperty(input, "semantic");
    const KString source = DAE_GetProperty(input, "source");
    bool ok = true;
    if (semantic == "POSITION") {
      ok = ReadVerticesSource(*this, sources, source, positions);
    } else if (semantic == "NORMAL") {
      ok = ReadVerticesSource(*this, sources, source, normals);
    } else if (semantic == "COLOR") {
      ok = ReadVerticesSource(*this, sources, source, colors);
    } else if ((semantic == "UV" || semantic == "TEXCOORD") && mComplete) {
      ok = ReadVerticesSource(*this, sources, source, uvs);
    } else if (semantic == "UV" || semantic == "TEXCOORD") {
      // Texture coordinates are read from the polygons' inputs only.
      WarnOnce(semantic, semantic + " not supported in vertices input");
    } else if (mComplete) {
      WarnOnce("vertices " + semantic, semantic + " in <vertices> not read: the kit has no layer element for it");
    } else {
      AddNotificationError(semantic + " not supported in vertices input");
      return false;
    }
    if (!ok) return false;
  }

  // The control points are the positions, and the normals go with them only when there is one
  // for each (else each is zero). The arrays share the sources' storage rather than copy it.
  const int count = positions->GetCount();
  geometry->GetControlPoints() = *positions;
  geometry->InitNormals(normals->GetCount() >= count ? 0 : count);
  KArrayTemplate<KZylVector4>& controlPointNormals = geometry->GetNormals()->GetDirectArray();
  if (normals->GetCount() == count)
    controlPointNormals = *normals;
  else if (normals->GetCount() > count)
    controlPointNormals.Std().assign(normals->begin(), normals->begin() + count);

  if (uvs && !uvs->IsEmpty()) SetControlPointUVs(*geometry, *uvs);
  if (!colors || colors->IsEmpty()) return true;
  KZylLayer* layer = geometry->GetLayer(0);
  if (!layer->GetVertexColors()) layer->SetVertexColors(mManager->CreateKZylLayerElementVertexColor(""));
  KZylLayerElementVertexColor* element = layer->GetVertexColors();
  element->SetMappingMode(KZylLayerElement::eByControlPoint);
  element->SetReferenceMode(KZylLayerElement::eDirect);
  KArrayTemplate<KZylColor>& direct = element->GetDirectArray();
  direct.ReserveToFill(direct.GetCount() + colors->GetCount());
  for (const KZylColor& color : *colors) direct.Add(color);
  return true;
}

}  // namespace zylsdk
