// Polygons of a mesh: every `polygons` element, then every `triangles` element (the complete
// reading: every polygon primitive, in document order), into the mesh's polygons, with their
// normals, colours and texture coordinates as layer elements mapped by polygon vertex.

#include <algorithm>
#include <vector>

#include "reader/collada_import.h"
#include "reader/dom/dom.h"
#include "reader/dom/numbers.h"
#include "reader/geometry/polygon_layers.h"
#include "reader/geometry/polygon_materials.h"
#include "reader/geometry/primitive_lists.h"

namespace zylsdk {
namespace {

struct PrimitiveInputs {
  bool hasVertex = false;
  int vertexOffset = 0;
  int64_t stride = 1;
  std::vector<AttributeInput> attributes;
};

PrimitiveInputs ReadInputs(const DaeElement* element) {
  PrimitiveInputs inputs;
  int64_t largestOffset = 0;
  for (DaeElement* input = firstChildElement(element); input; input = nextSiblingElement(input)) {
    if (!DAE_IsElement(input, "input")) continue;
    const KString semantic = DAE_GetProperty(input, "semantic");
    const int offset = DAE_GetOffset(input);
    largestOffset = std::max<int64_t>(largestOffset, offset);
    if (semantic == "VERTEX") {
      // A later VERTEX input replaces an earlier one.
      inputs.hasVertex = true;
      inputs.vertexOffset = offset;
      continue;
    }
    AttributeInput attribute;
    attribute.semantic = semantic;
    const KString set = DAE_GetProperty(input, "set");
    const char* cursor = set.Buffer();
    attribute.set = set.IsEmpty() ? 0 : strtoint(&cursor);
    attribute.offset = offset;
    attribute.source = DAE_GetProperty(input, "source");
    inputs.attributes.push_back(attribute);
  }
  inputs.stride = largestOffset + 1;
  return inputs;
}

// The polygons of one element, each begun with the element's material and texture.
void AddPolygons(KZylMesh& mesh, const PrimitiveLists& lists, int vertexOffset, PolygonMaterials::Indices indices) {
  mesh.ReservePolygons(lists.GetPolygonCount(), lists.GetTotalVertexCount());
  lists.ForEachPolygon([&](const PrimitiveLists::Polygon& polygon) {
    mesh.BeginPolygon(indices.material, indices.texture, -1, true);
    lists.ForEachValue(polygon, vertexOffset, [&](int index) { mesh.AddPolygon(index, -1); });
    if (!polygon.open) mesh.EndPolygon();
  });
}

// True when any element has an input of `semantic`.
bool AnyInput(const KArrayTemplate<DaeElement*>& elements, const char* semantic) {
  for (const DaeElement* element : elements)
    for (DaeElement* input = firstChildElement(element); input; input = nextSiblingElement(input))
      if (DAE_IsElement(input, "input") && DAE_GetProperty(input, "semantic") == semantic) return true;
  return false;
}

// True when the normals that `vertices` gave the control points hold anything but zeros.
bool HasControlPointNormals(const DaeElement* meshElement, const KZylMesh& mesh) {
  KArrayTemplate<DaeElement*> vertices;
  findChildrenByType(meshElement, "vertices", vertices);
  if (vertices.IsEmpty() || !AnyInput(vertices, "NORMAL")) return false;
  const KZylLayerElementNormal* normals = mesh.GetNormals();
  if (!normals || normals->GetMappingMode() != KZylLayerElement::eByControlPoint) return false;
  const KZylVector4 zero;
  for (const KZylVector4& normal : normals->GetDirectArray())
    if (normal != zero) return true;
  return false;
}

// True when a `ph` of the element has holes (`h`).
bool HasPolygonHoles(const DaeElement* element) {
  for (DaeElement* child = firstChildElement(element); child; child = nextSiblingElement(child))
    if (DAE_IsElement(child, "ph") && findChildByType(child, "h")) return true;
  return false;
}

}  // namespace

void KZylReaderCollada::CountPrimitivesLeftUnread(const DaeElement* meshElement) {
  for (DaeElement* child = firstChildElement(meshElement); child; child = nextSiblingElement(child)) {
    PrimitiveKind kind;
    if (PrimitiveKindOf(child, kind) && kind != PrimitiveKind::kPolygons && kind != PrimitiveKind::kTriangles)
      CountLeftUnread(KString(DAE_GetName(child)) + " primitives");
  }
}

KArrayTemplate<DaeElement*> KZylReaderCollada::PrimitiveElements(DaeElement* meshElement) {
  KArrayTemplate<DaeElement*> elements;
  if (!mComplete) {
    // All polygons elements first, then all triangles elements: the mesh's polygons follow this
    // order, not the document's.
    findChildrenByType(meshElement, "polygons", elements);
    findChildrenByType(meshElement, "triangles", elements);
    CountPrimitivesLeftUnread(meshElement);
    return elements;
  }
  for (DaeElement* child = firstChildElement(meshElement); child; child = nextSiblingElement(child)) {
    PrimitiveKind kind;
    if (PrimitiveKindOf(child, kind)) {
      elements.Add(child);
    } else if (DAE_IsElement(child, "lines") || DAE_IsElement(child, "linestrips")) {
      const ReadingAt reading(*this, child);
      WarnOnce(DAE_GetName(child), KString(DAE_GetName(child)) + " not read: the kit has no line geometry");
    }
  }
  return elements;
}

bool KZylReaderCollada::ImportPolygons(DaeElement* meshElement, KZylMesh& mesh, MeshSources& sources) {
  const KArrayTemplate<DaeElement*> elements = PrimitiveElements(meshElement);

  // Normals per control point are replaced by normals per polygon vertex, read or computed;
  // the complete reading keeps the document's own normals per control point when the
  // polygons give none.
  if (!mesh.GetLayer(0)) mesh.CreateLayer();
  const bool keepNormals = mComplete && !AnyInput(elements, "NORMAL") && HasControlPointNormals(meshElement, mesh);
  KZylLayerElementNormal* normals = mesh.GetLayer(0)->GetNormals();
  if (normals && !keepNormals) {
    normals->SetMappingMode(KZylLayerElement::eByPolygonVertex);
    normals->GetDirectArray().Clear();
  }
  if (elements.IsEmpty()) {
    if (!keepNormals) mesh.ComputeVertexNormals(false);
    return true;
  }

  PolygonMaterials materials(mesh, mState->textures, elements.GetCount(), !mComplete);
  PolygonLayers layers(*this, mesh, sources);
  for (int ordinal = 0; ordinal < elements.GetCount(); ++ordinal) {
    DaeElement* element = elements[ordinal];
    const ReadingAt reading(*this, element);
    const PolygonMaterials::Indices indices = materials.Assign(DAE_GetProperty(element, "material"), ordinal);
    const PrimitiveInputs inputs = ReadInputs(element);
    if (!inputs.hasVertex) {
      AddNotificationError("No vertices defined in mesh ");
      return false;
    }
    PrimitiveKind kind = PrimitiveKind::kPolygons;
    PrimitiveKindOf(element, kind);
    if (mComplete && HasPolygonHoles(element)) WarnOnce("ph", "holes of <ph> polygons not read: the kit's polygons have none");
    const PrimitiveLists lists(element, inputs.stride, kind, inputs.vertexOffset, mComplete);
    AddPolygons(mesh, lists, inputs.vertexOffset, indices);
    for (const AttributeInput& input : inputs.attributes)
      if (!layers.Import(input, lists)) return false;
  }
  // The mesh's sources and primitives are read: their lists go before the normals are made.
  ReleaseReadLists(meshElement);
  if (!layers.NormalsRead() && !keepNormals) mesh.ComputeVertexNormals(false);
  // The complete reading indexes the materials by polygon, as their mapping says.
  if (mComplete) materials.IndexEveryPolygon();
  return true;
}

}  // namespace zylsdk
