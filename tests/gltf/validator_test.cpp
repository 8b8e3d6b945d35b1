// The Khronos glTF validator (npm package gltf-validator, run with node) finds no error in the
// conversion of the example scene and of every corpus document that reads, in both reading
// modes (the default one written as .gltf with a .bin, the complete one as .glb), and of the
// scene made in code in both formats.

#include <gtest/gtest.h>

#include <sstream>

#include "gltf/gltf_writer.h"
#include "tests/gltf/sample_scene.h"
#include "tests/support/corpus.h"
#include "tests/support/documents.h"
#include "tools/zyldae/json_writer.h"

namespace {

const std::string kViewerFolder = ZYL_SOURCE_DIR "/viewer";

// A file name for a document path: its folders joined by '_'.
std::string FlatName(std::string path) {
  for (char& c : path)
    if (c == '/') c = '_';
  return path.substr(0, path.rfind('.'));
}

// Converts a document read in one mode; false when it does not read.
bool Convert(const std::string& document, bool complete, const std::string& output) {
  zyldae::ReadSettings settings;
  settings.complete = complete;
  zyldae::ReadResult read = zyldae::ReadDocument(document.c_str(), settings);
  if (!read.ok) return false;
  const zylgltf::GltfReport report = zylgltf::WriteGltfFile(*read.scene, output);
  EXPECT_TRUE(report.ok) << document << ": " << report.error;
  return report.ok;
}

TEST(GltfValidator, NoErrorInTheExampleAndTheCorpusInBothModes) {
  if (!zyltest::HasProgram("node")) GTEST_SKIP() << "node is not installed: the glTF validator cannot run";
  if (zyltest::RunCommand("test -d " + kViewerFolder + "/node_modules/gltf-validator").status != 0)
    GTEST_SKIP() << "the npm package gltf-validator is missing (run scripts/install-deps.sh)";

  zyltest::TempFolder folder;
  std::vector<std::pair<std::string, std::string>> documents{{ZYL_SOURCE_DIR "/examples/scene.dae", "example_scene"}};
  for (const std::string& document : zyltest::CorpusDocuments())
    documents.emplace_back(std::string(ZYL_CORPUS_DIR) + "/" + document, "corpus_" + FlatName(document));
  // The scene made in code, with a texture: skins, morph targets, every interpolation.
  size_t written = 0;
  zyltest::WriteSamplePng(folder.File("pixel.png"));
  for (const char* format : {".gltf", ".glb"}) {
    zylsdk::KZylSdkManager manager;
    zyltest::SampleScene sample = zyltest::MakeSampleScene(manager, folder.File("pixel.png"));
    written += zylgltf::WriteGltfFile(*sample.scene, folder.File(std::string("sample") + format)).ok;
  }
  for (const auto& [path, name] : documents) {
    written += Convert(path, false, folder.File(name + ".gltf"));
    written += Convert(path, true, folder.File(name + "_complete.glb"));
  }
  ASSERT_GT(written, 0u);

  const zyltest::ToolRun run = zyltest::RunCommand("node " + kViewerFolder + "/validate.mjs " + folder.Path());
  ASSERT_EQ(run.status, 0) << run.err;
  std::istringstream lines(run.out);
  size_t validated = 0;
  for (std::string line; std::getline(lines, line);) {
    const zyldae::Json result = zyldae::Json::parse(line);
    EXPECT_EQ(result["errors"], 0) << result.dump();
    ++validated;
  }
  EXPECT_EQ(validated, written);
}

}  // namespace
