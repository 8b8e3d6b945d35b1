// Invariants that must hold for the read of any document, checked on every document of the
// shared corpus: the dump is valid JSON; every polygon vertex and every index of a layer element
// indexes its array or is -1; cluster weights are finite; every node below the root has an
// attribute; the materials and textures the scene holds are reachable from its nodes. And no
// document that docs/corpus.md records as read may stop reading.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/corpus.h"
#include "tests/support/documents.h"

namespace {

using zyldae::Json;

// An index into an array of `size` entries, or -1.
void ExpectIndex(const Json& index, int64_t size, const std::string& where) {
  ASSERT_TRUE(index.is_number_integer()) << where;
  const int64_t value = index.get<int64_t>();
  EXPECT_TRUE(value == -1 || (value >= 0 && value < size)) << where << ": " << value << " outside 0.." << size;
}

// A uid of the scene's materials or textures, or null.
void ExpectUid(const Json& uid, size_t count, const std::string& where) {
  if (uid.is_null()) return;
  ASSERT_TRUE(uid.is_number_integer()) << where;
  EXPECT_GE(uid.get<int64_t>(), 1) << where;
  EXPECT_LE(uid.get<int64_t>(), static_cast<int64_t>(count)) << where;
}

class Checker {
 public:
  explicit Checker(const Json& scene)
      : mMaterialCount(scene["materials"].size()), mTextureCount(scene["textures"].size()) {}

  void Node(const Json& node, bool root, const std::string& path) {
    const std::string where = path + "/" + node["name"].get<std::string>();
    if (!root) {
      EXPECT_FALSE(node["attribute"].is_null()) << where << " has no attribute";
    }
    for (const Json& uid : node["materials"]) ExpectUid(uid, mMaterialCount, where + " materials");
    if (!node["attribute"].is_null() && node["attribute"]["type"] == "mesh") Mesh(node["attribute"], where);
  }

 private:
  void Mesh(const Json& mesh, const std::string& where) {
    const int64_t points = mesh["controlPointCount"].get<int64_t>();
    for (const Json& polygon : mesh["polygons"])
      for (const Json& vertex : polygon["vertices"]) ExpectIndex(vertex, points, where + " polygon vertex");
    for (const Json& layer : mesh["layers"]) {
      for (const char* kind : {"normals", "vertexColors"})
        if (layer.contains(kind)) Indices(layer[kind], where + " " + kind);
      if (layer.contains("materials")) Objects(layer["materials"], mMaterialCount, where + " materials");
      if (layer.contains("uvs"))
        for (const auto& [channel, element] : layer["uvs"].items()) Indices(element, where + " uvs " + channel);
      if (layer.contains("textures"))
        for (const auto& [channel, element] : layer["textures"].items())
          Objects(element, mTextureCount, where + " textures " + channel);
    }
    for (const Json& skin : mesh["skins"])
      for (const Json& cluster : skin["clusters"]) {
        for (const Json& weight : cluster["weights"]) EXPECT_TRUE(weight.is_number()) << where << " weight " << weight;
        for (const Json& index : cluster["indices"]) ExpectIndex(index, points, where + " cluster index");
      }
  }

  // A layer element read through its index array indexes its direct array with each entry.
  static void Indices(const Json& element, const std::string& where) {
    if (element["reference"] == 0) return;
    const int64_t direct = element["directCount"].get<int64_t>();
    for (const Json& index : element["index"]) ExpectIndex(index, direct, where + " index");
  }

  // A material or texture element's direct entries are uids of the scene's lists.
  static void Objects(const Json& element, size_t count, const std::string& where) {
    Indices(element, where);
    for (const Json& uid : element["direct"]) ExpectUid(uid, count, where + " direct");
  }

  size_t mMaterialCount;
  size_t mTextureCount;
};

class CorpusInvariants : public ::testing::TestWithParam<std::string> {};

TEST_P(CorpusInvariants, HoldForTheRead) {
  zyldae::ReadResult read = zyldae::ReadDocument((std::string(ZYL_CORPUS_DIR) + "/" + GetParam()).c_str());
  ASSERT_TRUE(read.opened);
  std::ostringstream text;
  zyldae::WriteJson(text, zyldae::DumpRead(read, GetParam().c_str(), false));
  Json dump;
  ASSERT_NO_THROW(dump = Json::parse(text.str())) << "the dump is not valid JSON";
  const Json& scene = dump["scene"];

  Checker checker(scene);
  std::vector<std::pair<const Json*, std::string>> pending{{&scene["root"], ""}};
  while (!pending.empty()) {
    auto [node, path] = pending.back();
    pending.pop_back();
    checker.Node(*node, node == &scene["root"], path);
    for (const Json& child : (*node)["children"]) pending.push_back({&child, path + "/" + (*node)["name"].get<std::string>()});
  }

  // Every material and texture connected to the scene is one the walk of its nodes reaches.
  std::multiset<std::string> reached;
  for (const Json& material : scene["materials"]) reached.insert(material["name"].get<std::string>());
  for (int i = 0; i < read.scene->GetMaterialCount(); ++i)
    EXPECT_GE(reached.count(read.scene->GetMaterial(i)->GetName().Std()), 1u)
        << "material " << read.scene->GetMaterial(i)->GetName().Std() << " is not reached";
}

INSTANTIATE_TEST_SUITE_P(Corpus, CorpusInvariants, ::testing::ValuesIn(zyltest::CorpusDocuments()), zyltest::FileTestName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(CorpusInvariants);

// The documents that docs/corpus.md records as read ("ok").
std::vector<std::string> RecordedAsRead() {
  std::ifstream table(std::string(ZYL_SOURCE_DIR) + "/docs/corpus.md");
  std::vector<std::string> files;
  const std::regex row(R"(^\| `([^`]+)` \| ok \|)");
  std::smatch match;
  for (std::string line; std::getline(table, line);)
    if (std::regex_search(line, match, row)) files.push_back(match[1]);
  return files;
}

TEST(CorpusTable, DocumentsThatReadBeforeStillRead) {
  if (zyltest::CorpusDocuments().empty()) GTEST_SKIP() << "no corpus at " << ZYL_CORPUS_DIR;
  const std::vector<std::string> recorded = RecordedAsRead();
  ASSERT_FALSE(recorded.empty()) << "docs/corpus.md records no document as read";
  for (const std::string& file : recorded) {
    zyldae::ReadResult read = zyldae::ReadDocument((std::string(ZYL_CORPUS_DIR) + "/" + file).c_str());
    EXPECT_TRUE(read.ok) << file << " read before (docs/corpus.md) and no longer does";
  }
}

}  // namespace
