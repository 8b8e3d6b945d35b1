#pragma once
// Writes a kit scene as glTF 2.0: a `.gltf` JSON file with its binary data in a `.bin` file
// beside it (images referenced by URIs relative to the written file), or a single `.glb` with
// the data and the images found on disk inside it.
//
// Before writing, the scene is converted in place to glTF's conventions with the kit's scene
// conversions: Y up, front +Z, right-handed, metres (ConvertAxisSystem, ConvertUnit).
//
// What glTF cannot carry (light and camera animation, textures in formats other than PNG and
// JPEG or whose file is missing, polygons with fewer than three valid vertices, ...) is left
// out; the report names each kind of loss once.

#include <ostream>
#include <string>
#include <vector>

#include "kit/scene.h"

namespace tinygltf {
class Model;
}

namespace zylgltf {

struct GltfReport {
  bool ok = false;
  std::string error;                  // why the file could not be written, when !ok
  std::vector<std::string> leftOut;   // what the conversion left out, one line per kind, sorted
};

struct GltfOptions {
  // Put the bytes of every image found (PNG or JPEG) in the buffer; otherwise images are
  // referenced by URIs relative to `outputFolder`.
  bool embedImages = false;
  std::string outputFolder = ".";
};

// Converts the scene (in place, see above) and fills `model`.
GltfReport BuildGltfModel(zylsdk::KZylScene& scene, const GltfOptions& options, tinygltf::Model& model);

// Converts and writes `path`: binary glTF when it ends in ".glb", JSON and a ".bin" otherwise.
GltfReport WriteGltfFile(zylsdk::KZylScene& scene, const std::string& path);

// Converts and writes the scene as binary glTF (images embedded) to `out`.
GltfReport WriteGlb(zylsdk::KZylScene& scene, std::ostream& out);

}  // namespace zylgltf
