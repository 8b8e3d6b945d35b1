// Meshes: one primitive per material (and diffuse texture), every polygon vertex a glTF vertex,
// polygons triangulated; positions, normals, every UV set, vertex colours and morph targets.

#include <algorithm>
#include <cmath>

#include "gltf/conversion_context.h"
#include "gltf/layer_lookup.h"
#include "gltf/triangulation.h"

namespace zylgltf {

using namespace zylsdk;

namespace {

float Finite(double value) { return std::isfinite(value) ? static_cast<float>(value) : 0.0f; }

void Append(std::vector<float>& out, const KZylVector4& v) {
  for (int axis = 0; axis < 3; ++axis) out.push_back(Finite(v[axis]));
}

// The layer elements a mesh's vertices read, found once per mesh.
struct MeshElements {
  const KZylLayerElementNormal* normals = nullptr;
  std::vector<const KZylLayerElementUV*> uvSets;
  std::vector<const KZylLayerElementVertexColor*> colors;
  const KZylLayerElementMaterial* materials = nullptr;
  const KZylLayerElementTexture* diffuseTextures = nullptr;
  int diffuseTexCoord = 0;  // the UV set of the diffuse textures
};

MeshElements FindElements(const KZylMesh& mesh) {
  MeshElements found;
  for (int index = 0; index < mesh.GetLayerCount(); ++index) {
    const KZylLayer* layer = mesh.GetLayer(index);
    if (index == 0) {
      found.normals = layer->GetNormals();
      found.materials = layer->GetMaterials();
    }
    if (layer->GetVertexColors()) found.colors.push_back(layer->GetVertexColors());
    const bool texturesHere = !found.diffuseTextures && layer->GetTextures(KZylLayerElement::eDiffuseTextures);
    if (texturesHere) found.diffuseTextures = layer->GetTextures(KZylLayerElement::eDiffuseTextures);
    for (KZylLayerElement::ELayerElementType channel : layer->GetUVChannels()) {
      if (texturesHere && channel == KZylLayerElement::eDiffuseTextures) found.diffuseTexCoord = static_cast<int>(found.uvSets.size());
      found.uvSets.push_back(layer->GetUVs(channel));
    }
  }
  return found;
}

template <class Element, class Value>
Value PolygonValue(const Element* element, int polygon, Value fallback) {
  return element ? LayerValue(*element, VertexPlace{polygon, -1, -1}, fallback) : fallback;
}

// The vertices and triangles of one primitive under construction.
struct PrimitiveData {
  const KZylSurfaceMaterial* material = nullptr;
  const KZylTexture* texture = nullptr;
  std::vector<int> polygons;
  std::vector<float> positions, normals;
  std::vector<std::vector<float>> uvSets, colors;
  std::vector<uint32_t> indices;
  std::vector<int> controlPoints;
};

class MeshConverter {
 public:
  MeshConverter(ConversionContext& context, const KZylMesh& mesh) : mContext(context), mMesh(mesh), mElements(FindElements(mesh)) {}

  int Convert() {
    GroupPolygons();
    tinygltf::Mesh target;
    target.name = mMesh.GetName().Std();
    ConversionContext::MeshRecord record;
    for (PrimitiveData& data : mPrimitives) {
      for (int polygon : data.polygons) AddPolygon(data, polygon);
      if (data.indices.empty()) continue;
      target.primitives.push_back(MakePrimitive(data));
      record.vertexControlPoints.push_back(std::move(data.controlPoints));
    }
    if (target.primitives.empty()) return -1;
    AddShapeWeights(target);
    mContext.model.meshes.push_back(target);
    record.mesh = static_cast<int>(mContext.model.meshes.size() - 1);
    const int index = record.mesh;
    mContext.meshes[&mMesh] = std::move(record);
    return index;
  }

 private:
  // Polygons by material and diffuse texture, groups in the order they first appear.
  void GroupPolygons() {
    std::map<std::pair<const KZylSurfaceMaterial*, const KZylTexture*>, size_t> groups;
    for (int polygon = 0; polygon < mMesh.GetPolygonCount(); ++polygon) {
      if (!IsUsable(polygon)) continue;
      const KZylSurfaceMaterial* material = PolygonValue<KZylLayerElementMaterial, KZylSurfaceMaterial*>(mElements.materials, polygon, nullptr);
      const KZylTexture* texture = PolygonValue<KZylLayerElementTexture, KZylTexture*>(mElements.diffuseTextures, polygon, nullptr);
      auto found = groups.emplace(std::make_pair(material, texture), mPrimitives.size());
      if (found.second) {
        mPrimitives.emplace_back();
        mPrimitives.back().material = material;
        mPrimitives.back().texture = texture;
      }
      mPrimitives[found.first->second].polygons.push_back(polygon);
    }
  }

  // A polygon needs three corners, each a control point of the mesh.
  bool IsUsable(int polygon) {
    const int size = mMesh.GetPolygonSize(polygon);
    if (size < 3) {
      mContext.LeaveOut("polygons with fewer than three corners");
      return false;
    }
    for (int corner = 0; corner < size; ++corner) {
      const int point = mMesh.GetPolygonVertex(polygon, corner);
      if (point < 0 || point >= mMesh.GetControlPointsCount()) {
        mContext.LeaveOut("polygons with a corner outside the control points");
        return false;
      }
    }
    return true;
  }

  void AddPolygon(PrimitiveData& data, int polygon) {
    const int size = mMesh.GetPolygonSize(polygon);
    const int start = mMesh.GetPolygonVertexIndex(polygon);
    const uint32_t first = static_cast<uint32_t>(data.controlPoints.size());
    std::vector<KZylVector4> corners;
    for (int corner = 0; corner < size; ++corner) {
      const int point = mMesh.GetPolygonVertex(polygon, corner);
      corners.push_back(mMesh.GetControlPointAt(point));
      AddVertex(data, VertexPlace{polygon, start + corner, point}, corners, polygon);
    }
    for (const std::array<int, 3>& triangle : Triangulate(corners))
      for (int corner : triangle) data.indices.push_back(first + static_cast<uint32_t>(corner));
  }

  void AddVertex(PrimitiveData& data, const VertexPlace& place, const std::vector<KZylVector4>& corners, int polygon) {
    data.controlPoints.push_back(place.controlPoint);
    Append(data.positions, corners.back());
    if (mElements.normals) Append(data.normals, UnitNormal(place, polygon));
    data.uvSets.resize(mElements.uvSets.size());
    for (size_t set = 0; set < mElements.uvSets.size(); ++set) {
      const KZylVector2 uv = LayerValue(*mElements.uvSets[set], place, KZylVector2());
      // glTF's texture origin is the top left corner, the kit's the bottom left one.
      data.uvSets[set].push_back(Finite(uv[0]));
      data.uvSets[set].push_back(Finite(1.0 - uv[1]));
    }
    data.colors.resize(mElements.colors.size());
    for (size_t set = 0; set < mElements.colors.size(); ++set) {
      const KZylColor color = LayerValue(*mElements.colors[set], place, KZylColor(1.0, 1.0, 1.0, 1.0));
      for (double channel : {color.mRed, color.mGreen, color.mBlue, color.mAlpha})
        data.colors[set].push_back(std::clamp(Finite(channel), 0.0f, 1.0f));
    }
  }

  // glTF normals must have unit length: a missing or zero normal takes the polygon's.
  KZylVector4 UnitNormal(const VertexPlace& place, int polygon) {
    KZylVector4 normal = LayerValue(*mElements.normals, place, KZylVector4());
    normal[3] = 0.0;
    if (std::isfinite(normal.Length()) && normal.Normalize() > 0.0) return normal;
    mContext.LeaveOut("normals that are missing or zero (the polygon's normal written)");
    KZylVector4 face;
    const int size = mMesh.GetPolygonSize(polygon);
    for (int corner = 0; corner < size; ++corner) {
      const KZylVector4 a = mMesh.GetControlPointAt(mMesh.GetPolygonVertex(polygon, corner));
      const KZylVector4 b = mMesh.GetControlPointAt(mMesh.GetPolygonVertex(polygon, (corner + 1) % size));
      face += KZylVector4((a[1] - b[1]) * (a[2] + b[2]), (a[2] - b[2]) * (a[0] + b[0]), (a[0] - b[0]) * (a[1] + b[1]));
    }
    if (std::isfinite(face.Length()) && face.Normalize() > 0.0) return face;
    return KZylVector4(0.0, 0.0, 1.0);
  }

  tinygltf::Primitive MakePrimitive(const PrimitiveData& data) {
    GltfBuffer& buffer = mContext.buffer;
    tinygltf::Primitive primitive;
    primitive.mode = TINYGLTF_MODE_TRIANGLES;
    primitive.attributes["POSITION"] = buffer.AddFloats(data.positions, 3, true, TINYGLTF_TARGET_ARRAY_BUFFER);
    if (!data.normals.empty()) primitive.attributes["NORMAL"] = buffer.AddFloats(data.normals, 3, false, TINYGLTF_TARGET_ARRAY_BUFFER);
    for (size_t set = 0; set < data.uvSets.size(); ++set)
      primitive.attributes["TEXCOORD_" + std::to_string(set)] = buffer.AddFloats(data.uvSets[set], 2, false, TINYGLTF_TARGET_ARRAY_BUFFER);
    for (size_t set = 0; set < data.colors.size(); ++set)
      primitive.attributes["COLOR_" + std::to_string(set)] = buffer.AddFloats(data.colors[set], 4, false, TINYGLTF_TARGET_ARRAY_BUFFER);
    primitive.indices = buffer.AddIndices(data.indices);
    const bool hasTexCoord = mElements.diffuseTexCoord < static_cast<int>(mElements.uvSets.size());
    const int texCoord = hasTexCoord ? mElements.diffuseTexCoord : -1;
    primitive.material = ConvertMaterial(mContext, data.material, data.texture, texCoord);
    AddMorphTargets(primitive, data);
    return primitive;
  }

  // Each shape is a target: the displacement of every vertex's control point.
  void AddMorphTargets(tinygltf::Primitive& primitive, const PrimitiveData& data) {
    for (int shape = 0; shape < mMesh.GetShapeCount(); ++shape) {
      const KZylShape* target = mMesh.GetShape(shape);
      std::vector<float> offsets;
      offsets.reserve(data.positions.size());
      for (int point : data.controlPoints) {
        const KZylVector4 base = mMesh.GetControlPointAt(point);
        const KZylVector4 moved = target ? target->GetControlPointAt(point) : base;
        Append(offsets, moved - base);
      }
      primitive.targets.push_back({{"POSITION", mContext.buffer.AddFloats(offsets, 3, true, TINYGLTF_TARGET_ARRAY_BUFFER)}});
    }
  }

  // Default weights: the shapes' weight properties on the mesh, with their names.
  void AddShapeWeights(tinygltf::Mesh& target) {
    if (mMesh.GetShapeCount() == 0) return;
    tinygltf::Value::Array names;
    for (int shape = 0; shape < mMesh.GetShapeCount(); ++shape) {
      const KString name = mMesh.GetShapeName(shape);
      const double weight = mMesh.FindProperty(name).GetDouble();
      target.weights.push_back(std::isfinite(weight) ? weight : 0.0);
      names.emplace_back(name.Std());
    }
    tinygltf::Value::Object extras;
    extras["targetNames"] = tinygltf::Value(names);
    target.extras = tinygltf::Value(extras);
  }

  ConversionContext& mContext;
  const KZylMesh& mMesh;
  MeshElements mElements;
  std::vector<PrimitiveData> mPrimitives;
};

}  // namespace

int ConvertMesh(ConversionContext& context, const KZylMesh& mesh) {
  auto known = context.meshes.find(&mesh);
  if (known != context.meshes.end()) return known->second.mesh;
  const int index = MeshConverter(context, mesh).Convert();
  if (index < 0) context.meshes[&mesh].mesh = -1;
  return index;
}

}  // namespace zylgltf
