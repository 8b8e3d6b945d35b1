#include "tests/gltf/gltf_reading.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace zyltest {

using namespace zylsdk;

namespace {

bool SkipImage(tinygltf::Image*, const int, std::string*, std::string*, int, int, const unsigned char*, int, void*) { return true; }

int ComponentCount(int type) {
  switch (type) {
    case TINYGLTF_TYPE_SCALAR: return 1;
    case TINYGLTF_TYPE_VEC2: return 2;
    case TINYGLTF_TYPE_VEC3: return 3;
    case TINYGLTF_TYPE_VEC4: return 4;
    case TINYGLTF_TYPE_MAT4: return 16;
    default: return 0;
  }
}

// The accessor's bytes, element after element, with its component size; null when it does not
// fit its buffer.
const unsigned char* AccessorBytes(const tinygltf::Model& model, int index, size_t componentSize, size_t& count, size_t& stride) {
  if (index < 0 || static_cast<size_t>(index) >= model.accessors.size()) return nullptr;
  const tinygltf::Accessor& accessor = model.accessors[static_cast<size_t>(index)];
  if (accessor.bufferView < 0 || static_cast<size_t>(accessor.bufferView) >= model.bufferViews.size()) return nullptr;
  const tinygltf::BufferView& view = model.bufferViews[static_cast<size_t>(accessor.bufferView)];
  if (view.buffer < 0 || static_cast<size_t>(view.buffer) >= model.buffers.size()) return nullptr;
  const std::vector<unsigned char>& data = model.buffers[static_cast<size_t>(view.buffer)].data;
  const size_t components = static_cast<size_t>(ComponentCount(accessor.type));
  stride = view.byteStride ? view.byteStride : components * componentSize;
  count = accessor.count * components;
  const size_t start = view.byteOffset + accessor.byteOffset;
  const size_t needed = accessor.count ? (accessor.count - 1) * stride + components * componentSize : 0;
  if (start + needed > data.size() || needed > view.byteLength) return nullptr;
  return data.data() + start;
}

double QuaternionDot(const std::vector<double>& a, const std::vector<double>& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2] + a[3] * b[3];
}

}  // namespace

bool LoadGltf(const std::string& path, tinygltf::Model& model, std::string& error) {
  tinygltf::TinyGLTF loader;
  loader.SetImageLoader(SkipImage, nullptr);
  std::string warning;
  const bool binary = path.size() > 4 && path.compare(path.size() - 4, 4, ".glb") == 0;
  return binary ? loader.LoadBinaryFromFile(&model, &error, &warning, path) : loader.LoadASCIIFromFile(&model, &error, &warning, path);
}

std::vector<float> ReadFloats(const tinygltf::Model& model, int index) {
  size_t count = 0, stride = 0;
  if (index < 0 || static_cast<size_t>(index) >= model.accessors.size() ||
      model.accessors[static_cast<size_t>(index)].componentType != TINYGLTF_COMPONENT_TYPE_FLOAT)
    return {};
  const unsigned char* bytes = AccessorBytes(model, index, sizeof(float), count, stride);
  if (!bytes) return {};
  const size_t components = static_cast<size_t>(ComponentCount(model.accessors[static_cast<size_t>(index)].type));
  std::vector<float> values(count);
  for (size_t i = 0; i < count; ++i)
    std::memcpy(&values[i], bytes + (i / components) * stride + (i % components) * sizeof(float), sizeof(float));
  return values;
}

std::vector<int> ReadIntegers(const tinygltf::Model& model, int index) {
  if (index < 0 || static_cast<size_t>(index) >= model.accessors.size()) return {};
  const tinygltf::Accessor& accessor = model.accessors[static_cast<size_t>(index)];
  size_t size = 0;
  switch (accessor.componentType) {
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE: size = 1; break;
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT: size = 2; break;
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT: size = 4; break;
    default: return {};
  }
  size_t count = 0, stride = 0;
  const unsigned char* bytes = AccessorBytes(model, index, size, count, stride);
  if (!bytes) return {};
  const size_t components = static_cast<size_t>(ComponentCount(accessor.type));
  std::vector<int> values(count);
  for (size_t i = 0; i < count; ++i) {
    uint32_t value = 0;
    std::memcpy(&value, bytes + (i / components) * stride + (i % components) * size, size);
    values[i] = static_cast<int>(value);
  }
  return values;
}

KZylMatrix TrsMatrix(const std::vector<double>& t, const std::vector<double>& r, const std::vector<double>& s) {
  const double x = r[0], y = r[1], z = r[2], w = r[3];
  // The rotation matrix of a unit quaternion, transposed for row vectors.
  const double rotation[3][3] = {{1 - 2 * (y * y + z * z), 2 * (x * y + z * w), 2 * (x * z - y * w)},
                                 {2 * (x * y - z * w), 1 - 2 * (x * x + z * z), 2 * (y * z + x * w)},
                                 {2 * (x * z + y * w), 2 * (y * z - x * w), 1 - 2 * (x * x + y * y)}};
  KZylMatrix m;
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) m.Set(row, column, s[static_cast<size_t>(row)] * rotation[row][column]);
    m.Set(3, row, t[static_cast<size_t>(row)]);
  }
  return m;
}

KZylMatrix LocalMatrix(const tinygltf::Node& node) {
  if (node.matrix.size() == 16) {
    KZylMatrix m;
    for (int i = 0; i < 16; ++i) m.Set(i / 4, i % 4, node.matrix[static_cast<size_t>(i)]);
    return m;
  }
  return TrsMatrix(node.translation.size() == 3 ? node.translation : std::vector<double>{0, 0, 0},
                   node.rotation.size() == 4 ? node.rotation : std::vector<double>{0, 0, 0, 1},
                   node.scale.size() == 3 ? node.scale : std::vector<double>{1, 1, 1});
}

std::map<std::string, KZylMatrix> GlobalMatrices(const tinygltf::Model& model) {
  std::map<std::string, KZylMatrix> globals;
  struct Pending {
    int node;
    KZylMatrix parent;
  };
  std::vector<Pending> pending;
  for (const tinygltf::Scene& scene : model.scenes)
    for (int node : scene.nodes) pending.push_back({node, KZylMatrix()});
  // A cycle or a shared child would loop; a glTF file that passes the validator has neither.
  for (size_t visits = 0; !pending.empty() && visits <= model.nodes.size(); ++visits) {
    const Pending item = pending.back();
    pending.pop_back();
    const tinygltf::Node& node = model.nodes.at(static_cast<size_t>(item.node));
    const KZylMatrix global = LocalMatrix(node) * item.parent;
    globals[node.name] = global;
    for (int child : node.children) pending.push_back({child, global});
  }
  return globals;
}

std::vector<double> SampleAt(const tinygltf::Model& model, const tinygltf::AnimationSampler& sampler, double time, int components) {
  const std::vector<float> times = ReadFloats(model, sampler.input);
  const std::vector<float> values = ReadFloats(model, sampler.output);
  const bool cubic = sampler.interpolation == "CUBICSPLINE";
  const size_t c = static_cast<size_t>(components);
  const size_t per = cubic ? 3 * c : c;
  auto value = [&](size_t key, size_t part) {
    std::vector<double> v(c);
    for (size_t i = 0; i < c; ++i) v[i] = values.at(key * per + part * c + i);
    return v;
  };
  const size_t middle = cubic ? 1 : 0;
  if (times.empty()) return {};
  if (time <= times.front()) return value(0, middle);
  if (time >= times.back()) return value(times.size() - 1, middle);
  size_t k = 0;
  while (k + 2 < times.size() && times[k + 1] <= time) ++k;
  const double span = times[k + 1] - times[k];
  const double s = (time - times[k]) / span;
  const std::vector<double> v0 = value(k, middle), v1 = value(k + 1, middle);
  std::vector<double> result(c);
  if (sampler.interpolation == "STEP") return v0;
  if (cubic) {
    const std::vector<double> b0 = value(k, 2), a1 = value(k + 1, 0);
    const double s2 = s * s, s3 = s2 * s;
    for (size_t i = 0; i < c; ++i)
      result[i] = (2 * s3 - 3 * s2 + 1) * v0[i] + (s3 - 2 * s2 + s) * span * b0[i] + (-2 * s3 + 3 * s2) * v1[i] + (s3 - s2) * span * a1[i];
    return result;
  }
  if (components == 4) {
    // Spherical interpolation along the shorter arc.
    std::vector<double> q1 = v1;
    double dot = QuaternionDot(v0, q1);
    if (dot < 0) {
      for (double& x : q1) x = -x;
      dot = -dot;
    }
    const double angle = std::acos(std::min(1.0, dot));
    const double w0 = angle > 1e-9 ? std::sin((1 - s) * angle) / std::sin(angle) : 1 - s;
    const double w1 = angle > 1e-9 ? std::sin(s * angle) / std::sin(angle) : s;
    for (size_t i = 0; i < c; ++i) result[i] = w0 * v0[i] + w1 * q1[i];
    return result;
  }
  for (size_t i = 0; i < c; ++i) result[i] = v0[i] + (v1[i] - v0[i]) * s;
  return result;
}

}  // namespace zyltest
