#include "gltf/gltf_writer.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "gltf/conversion_context.h"
#include "kit/scene_conversion.h"

namespace zylgltf {

using namespace zylsdk;

namespace {

// glTF: Y up, +Z the front, right-handed, lengths in metres.
const KZylAxisSystem kGltfAxes(KZylAxisSystem::eYAxis, KZylAxisSystem::eParityOdd, KZylAxisSystem::eRightHanded);
const KZylSystemUnit kMetre(100.0);

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// Images are never re-encoded: a URI stays as it is, embedded bytes stay in their buffer view.
bool KeepImage(const std::string*, const std::string*, const tinygltf::Image*, bool, std::string*, void*) { return false; }

GltfReport Failure(GltfReport report, const std::string& error) {
  report.ok = false;
  report.error = error;
  return report;
}

}  // namespace

GltfReport BuildGltfModel(KZylScene& scene, const GltfOptions& options, tinygltf::Model& model) {
  GltfReport report;
  model = tinygltf::Model();
  model.asset.version = "2.0";
  model.asset.generator = "zylcollada";
  if (!ConvertAxisSystem(scene, kGltfAxes)) return Failure(report, "the scene is left-handed; glTF is right-handed");
  if (!ConvertUnit(scene, kMetre)) return Failure(report, "the scene's unit has no usable size");

  ConversionContext context(model, options);
  ConvertNodes(context, scene);
  ConvertSkins(context, scene);
  ConvertAnimations(context, scene);
  // An empty buffer is not valid glTF.
  if (model.buffers[0].data.empty()) {
    model.buffers.clear();
    model.bufferViews.clear();
  }
  report.leftOut.assign(context.leftOut.begin(), context.leftOut.end());
  report.ok = true;
  return report;
}

GltfReport WriteGltfFile(KZylScene& scene, const std::string& path) {
  const bool binary = EndsWith(path, ".glb");
  GltfOptions options;
  options.embedImages = binary;
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  options.outputFolder = folder.empty() ? "." : folder.string();
  // The writer of the JSON file does not say when the file cannot be made: try first.
  if (!std::ofstream(path, std::ios::binary)) return Failure(GltfReport(), "cannot write " + path);
  tinygltf::Model model;
  GltfReport report = BuildGltfModel(scene, options, model);
  if (!report.ok) return report;
  tinygltf::TinyGLTF writer;
  writer.SetImageWriter(KeepImage, nullptr);
  if (binary) {
    std::ofstream out(path, std::ios::binary);
    if (!writer.WriteGltfSceneToStream(&model, out, false, true) || !out.flush()) return Failure(report, "cannot write " + path);
  } else if (!writer.WriteGltfSceneToFile(&model, path, false, false, true, false)) {
    return Failure(report, "cannot write " + path + " or its .bin");
  }
  return report;
}

GltfReport WriteGlb(KZylScene& scene, std::ostream& out) {
  GltfOptions options;
  options.embedImages = true;
  tinygltf::Model model;
  GltfReport report = BuildGltfModel(scene, options, model);
  if (!report.ok) return report;
  tinygltf::TinyGLTF writer;
  writer.SetImageWriter(KeepImage, nullptr);
  if (!writer.WriteGltfSceneToStream(&model, out, false, true)) return Failure(report, "cannot write the binary glTF");
  return report;
}

}  // namespace zylgltf
