#pragma once
// Reading written glTF files back for tests: loading with tinygltf, accessor contents, node
// matrices in the kit's row-vector convention, and animation samplers evaluated as glTF
// defines them.

#include <tiny_gltf.h>

#include <map>
#include <string>
#include <vector>

#include "kit/kmath.h"

namespace zyltest {

// Loads a .gltf or .glb file; images are not decoded. False with `error` set on failure.
bool LoadGltf(const std::string& path, tinygltf::Model& model, std::string& error);

// The components of a float accessor (empty when it is not one or does not fit its buffer).
std::vector<float> ReadFloats(const tinygltf::Model& model, int accessor);
// The components of an unsigned byte, short or int accessor.
std::vector<int> ReadIntegers(const tinygltf::Model& model, int accessor);

// A node's local matrix (row vectors, translation in the fourth row).
zylsdk::KZylMatrix LocalMatrix(const tinygltf::Node& node);
// A node's local matrix made from explicit translation, rotation (quaternion) and scale.
zylsdk::KZylMatrix TrsMatrix(const std::vector<double>& t, const std::vector<double>& r, const std::vector<double>& s);
// Every node's global matrix, by node name.
std::map<std::string, zylsdk::KZylMatrix> GlobalMatrices(const tinygltf::Model& model);

// The value of an animation sampler at `time` (STEP, LINEAR or CUBICSPLINE; `components` per
// value).
std::vector<double> SampleAt(const tinygltf::Model& model, const tinygltf::AnimationSampler& sampler, double time, int components);

}  // namespace zyltest
