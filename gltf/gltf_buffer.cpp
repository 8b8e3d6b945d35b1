#include "gltf/gltf_buffer.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace zylgltf {
namespace {

int AccessorType(int components) {
  switch (components) {
    case 1: return TINYGLTF_TYPE_SCALAR;
    case 2: return TINYGLTF_TYPE_VEC2;
    case 3: return TINYGLTF_TYPE_VEC3;
    case 4: return TINYGLTF_TYPE_VEC4;
    default: return TINYGLTF_TYPE_MAT4;
  }
}

}  // namespace

GltfBuffer::GltfBuffer(tinygltf::Model& model) : mModel(model) {
  if (mModel.buffers.empty()) mModel.buffers.emplace_back();
}

int GltfBuffer::AddView(const void* data, size_t size, int target) {
  std::vector<unsigned char>& bytes = mModel.buffers[0].data;
  bytes.resize((bytes.size() + 3) & ~size_t{3}, 0);
  tinygltf::BufferView view;
  view.buffer = 0;
  view.byteOffset = bytes.size();
  view.byteLength = size;
  view.target = target;
  bytes.resize(bytes.size() + size);
  if (size) std::memcpy(bytes.data() + view.byteOffset, data, size);
  mModel.bufferViews.push_back(view);
  return static_cast<int>(mModel.bufferViews.size() - 1);
}

int GltfBuffer::AddAccessor(int view, int componentType, int count, int type) {
  tinygltf::Accessor accessor;
  accessor.bufferView = view;
  accessor.byteOffset = 0;
  accessor.componentType = componentType;
  accessor.count = static_cast<size_t>(count);
  accessor.type = type;
  mModel.accessors.push_back(accessor);
  return static_cast<int>(mModel.accessors.size() - 1);
}

int GltfBuffer::AddFloats(const std::vector<float>& given, int components, bool withBounds, int target) {
  // glTF has no room for infinities and NaN: they become 0.
  std::vector<float> values(given);
  for (float& value : values)
    if (!std::isfinite(value)) value = 0.0f;
  const int count = static_cast<int>(values.size() / static_cast<size_t>(components));
  const int view = AddView(values.data(), values.size() * sizeof(float), target);
  const int accessor = AddAccessor(view, TINYGLTF_COMPONENT_TYPE_FLOAT, count, AccessorType(components));
  if (withBounds && count > 0) {
    std::vector<double> low(static_cast<size_t>(components), std::numeric_limits<double>::max());
    std::vector<double> high(static_cast<size_t>(components), std::numeric_limits<double>::lowest());
    for (size_t i = 0; i < values.size(); ++i) {
      const size_t c = i % static_cast<size_t>(components);
      low[c] = std::min(low[c], static_cast<double>(values[i]));
      high[c] = std::max(high[c], static_cast<double>(values[i]));
    }
    mModel.accessors[static_cast<size_t>(accessor)].minValues = low;
    mModel.accessors[static_cast<size_t>(accessor)].maxValues = high;
  }
  return accessor;
}

int GltfBuffer::AddIndices(const std::vector<uint32_t>& indices) {
  const int view = AddView(indices.data(), indices.size() * sizeof(uint32_t), TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER);
  return AddAccessor(view, TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT, static_cast<int>(indices.size()), TINYGLTF_TYPE_SCALAR);
}

int GltfBuffer::AddJoints(const std::vector<uint16_t>& joints) {
  const int view = AddView(joints.data(), joints.size() * sizeof(uint16_t), TINYGLTF_TARGET_ARRAY_BUFFER);
  return AddAccessor(view, TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT, static_cast<int>(joints.size() / 4), TINYGLTF_TYPE_VEC4);
}

int GltfBuffer::AddBytes(const std::vector<unsigned char>& bytes) { return AddView(bytes.data(), bytes.size(), 0); }

}  // namespace zylgltf
