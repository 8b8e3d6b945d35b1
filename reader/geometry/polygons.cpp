// Polygons of a mesh: every `polygons` element, then every `triangles` element, into the
// mesh's polygons, with their normals, colours and texture coordinates as layer elements
// mapped by polygon vertex. Other primitive elements are not read.

#include <algorithm>
#include <vector>

#include "reader/collada_reader.h"
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

// One polygon per `p` of a `polygons` element; one per three vertices of a `triangles` element,
// where a trailing partial triangle is begun and left open.
void AddPolygons(KZylMesh& mesh, const PrimitiveLists& lists, int vertexOffset, bool triangles,
                 PolygonMaterials::Indices indices) {
  int64_t polygons = lists.GetListCount();
  if (triangles) {
    polygons = 0;
    for (int list = 0; list < lists.GetListCount(); ++list) polygons += (lists.GetVertexCount(list) + 2) / 3;
  }
  mesh.ReservePolygons(polygons, lists.GetTotalVertexCount());
  for (int list = 0; list < lists.GetListCount(); ++list) {
    if (!triangles) mesh.BeginPolygon(indices.material, indices.texture, -1, true);
    int corner = 0;
    lists.ForEachValue(list, vertexOffset, [&](int index) {
      if (triangles && corner == 0) mesh.BeginPolygon(indices.material, indices.texture, -1, true);
      mesh.AddPolygon(index, -1);
      if (triangles && corner == 2) mesh.EndPolygon();
      corner = corner == 2 ? 0 : corner + 1;
    });
    if (!triangles) mesh.EndPolygon();
  }
}

}  // namespace

bool KZylReaderCollada::ImportPolygons(DaeElement* meshElement, KZylMesh& mesh) {
  // All polygons elements first, then all triangles elements: the mesh's polygons follow this
  // order, not the document's.
  KArrayTemplate<DaeElement*> elements;
  findChildrenByType(meshElement, "polygons", elements);
  findChildrenByType(meshElement, "triangles", elements);

  // Normals per control point are replaced by normals per polygon vertex, read or computed.
  if (!mesh.GetLayer(0)) mesh.CreateLayer();
  if (KZylLayerElementNormal* normals = mesh.GetLayer(0)->GetNormals()) {
    normals->SetMappingMode(KZylLayerElement::eByPolygonVertex);
    normals->GetDirectArray().Clear();
  }
  if (elements.IsEmpty()) {
    mesh.ComputeVertexNormals(false);
    return true;
  }

  PolygonMaterials materials(mesh, mState->textures, elements.GetCount());
  PolygonLayers layers(*this, mesh, meshElement);
  for (int ordinal = 0; ordinal < elements.GetCount(); ++ordinal) {
    DaeElement* element = elements[ordinal];
    const PolygonMaterials::Indices indices = materials.Assign(DAE_GetProperty(element, "material"), ordinal);
    const PrimitiveInputs inputs = ReadInputs(element);
    if (!inputs.hasVertex) {
      AddNotificationError("No vertices defined in mesh ");
      return false;
    }
    const PrimitiveLists lists(element, inputs.stride);
    AddPolygons(mesh, lists, inputs.vertexOffset, DAE_IsElement(element, "triangles"), indices);
    for (const AttributeInput& input : inputs.attributes)
      if (!layers.Import(input, lists)) return false;
  }
  if (!layers.NormalsRead()) mesh.ComputeVertexNormals(false);
  return true;
}

}  // namespace zylsdk
