#pragma once
// What the parts of a conversion share: the model being filled, its buffer, the glTF index of
// every kit object already converted, and the list of what was left out.

#include <tiny_gltf.h>

#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "gltf/gltf_buffer.h"
#include "gltf/gltf_writer.h"
#include "kit/zylsdk.h"

namespace zylgltf {

struct ConversionContext {
  ConversionContext(tinygltf::Model& target, const GltfOptions& settings) : model(target), buffer(target), options(settings) {}

  // Notes a kind of loss once.
  void LeaveOut(const std::string& what) { leftOut.insert(what); }

  tinygltf::Model& model;
  GltfBuffer buffer;
  const GltfOptions& options;
  std::unordered_map<const zylsdk::KZylNode*, int> nodes;  // kit node to glTF node
  // A converted mesh: its glTF index and, for each primitive, the control point of each vertex.
  struct MeshRecord {
    int mesh = -1;
    std::vector<std::vector<int>> vertexControlPoints;
  };
  std::unordered_map<const zylsdk::KZylMesh*, MeshRecord> meshes;
  std::map<std::pair<const zylsdk::KZylSurfaceMaterial*, const zylsdk::KZylTexture*>, int> materials;
  std::unordered_map<const zylsdk::KZylTexture*, int> textures;  // -1: left out
  std::set<std::string> leftOut;
};

// The parts of the conversion, in the order the writer runs them.
// Nodes, with their meshes, cameras and lights; fills context.nodes.
void ConvertNodes(ConversionContext& context, const zylsdk::KZylScene& scene);
// The glTF mesh of a kit mesh (and its morph targets), made once; -1 when it has no triangle.
int ConvertMesh(ConversionContext& context, const zylsdk::KZylMesh& mesh);
// The glTF material of a kit material with a base colour texture (either may be null), made
// once; `texCoord` is the TEXCOORD set of the texture (-1: the mesh has none, no texture).
int ConvertMaterial(ConversionContext& context, const zylsdk::KZylSurfaceMaterial* material,
                    const zylsdk::KZylTexture* texture, int texCoord);
// The camera or light of a node, on a child node turned so that it looks along glTF's -Z.
void ConvertCamera(ConversionContext& context, const zylsdk::KZylCamera& camera, tinygltf::Node& node);
void ConvertLight(ConversionContext& context, const zylsdk::KZylLight& light, tinygltf::Node& node);
// Skins of the meshes of skinned nodes, once every node exists.
void ConvertSkins(ConversionContext& context, const zylsdk::KZylScene& scene);
// The current take's curves.
void ConvertAnimations(ConversionContext& context, const zylsdk::KZylScene& scene);

}  // namespace zylgltf
