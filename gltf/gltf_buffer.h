#pragma once
// The one binary buffer of a glTF model under construction, and the accessors over it: each
// call appends tightly packed, 4-byte aligned data in a buffer view of its own.

#include <tiny_gltf.h>

#include <array>
#include <cstdint>
#include <vector>

namespace zylgltf {

class GltfBuffer {
 public:
  explicit GltfBuffer(tinygltf::Model& model);

  // Float vectors of 1, 2, 3, 4 or 16 components (`components`); `withBounds` writes the min
  // and max that POSITION accessors and animation inputs must carry. `target` is the buffer
  // view's target (0 for none). Non-finite values are written as 0. Returns the accessor index.
  int AddFloats(const std::vector<float>& values, int components, bool withBounds, int target);
  // Unsigned 32-bit indices of triangles.
  int AddIndices(const std::vector<uint32_t>& indices);
  // Unsigned 16-bit joint indices, four per vertex.
  int AddJoints(const std::vector<uint16_t>& joints);
  // Raw bytes (an image); returns the buffer view index.
  int AddBytes(const std::vector<unsigned char>& bytes);

 private:
  int AddView(const void* data, size_t size, int target);
  int AddAccessor(int view, int componentType, int count, int type);

  tinygltf::Model& mModel;
};

}  // namespace zylgltf
