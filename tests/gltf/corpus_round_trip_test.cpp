// Every corpus document that reads, in both reading modes: the node global matrices of the
// glTF model equal the kit scene's (after its conversion to Y up and metres) within 1e-6,
// relative to the size of large values.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "gltf/gltf_writer.h"
#include "tests/gltf/gltf_reading.h"
#include "tests/support/corpus.h"
#include "tests/support/documents.h"

namespace {

using namespace zylsdk;

class CorpusRoundTrip : public ::testing::TestWithParam<std::string> {};

TEST_P(CorpusRoundTrip, NodeGlobalMatrices) {
  for (bool complete : {false, true}) {
    zyldae::ReadSettings settings;
    settings.complete = complete;
    zyldae::ReadResult read = zyldae::ReadDocument((std::string(ZYL_CORPUS_DIR) + "/" + GetParam()).c_str(), settings);
    if (!read.ok) continue;
    tinygltf::Model model;
    ASSERT_TRUE(zylgltf::BuildGltfModel(*read.scene, zylgltf::GltfOptions(), model).ok);
    const std::map<std::string, KZylMatrix> globals = zyltest::GlobalMatrices(model);
    for (KZylNode* node : read.scene->GetNodes()) {
      if (node->GetName().IsEmpty()) continue;  // named after its glTF index, found by no name here
      auto found = globals.find(node->GetName().Std());
      ASSERT_NE(found, globals.end()) << node->GetName().Std();
      const KZylMatrix expected = node->GetGlobalFromDefaultTake();
      for (int i = 0; i < 16; ++i) {
        const double want = expected.Get(i / 4, i % 4);
        if (!std::isfinite(want)) continue;  // written as the identity, and said so
        EXPECT_NEAR(found->second.Get(i / 4, i % 4), want, 1e-6 * std::max(1.0, std::fabs(want)))
            << node->GetName().Std() << " element " << i << (complete ? " (complete)" : "");
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Corpus, CorpusRoundTrip, ::testing::ValuesIn(zyltest::CorpusDocuments()), zyltest::FileTestName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(CorpusRoundTrip);

}  // namespace
