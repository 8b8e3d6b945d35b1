// Every third-party document of the shared corpus is read through the reader. Reading may
// fail on a document the reader does not accept, but must never crash, hang or trip a
// sanitizer. The corpus is not part of the project: without it the tests are skipped.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/corpus.h"
#include "tests/support/documents.h"

namespace {

class CorpusRead : public ::testing::TestWithParam<std::string> {};

TEST_P(CorpusRead, ReadsWithoutCrashing) {
  zyldae::ReadResult read = zyldae::ReadDocument((std::string(ZYL_CORPUS_DIR) + "/" + GetParam()).c_str());
  ASSERT_TRUE(read.opened);
  ASSERT_NE(read.scene, nullptr);
  // A failed read always says why, with the reader's own failure message last.
  if (!read.ok) {
    ASSERT_FALSE(read.notifications.empty());
    EXPECT_EQ(read.notifications.back().text.Std(), "ERROR: Unable to parse xml/dae file\n");
  }
}

INSTANTIATE_TEST_SUITE_P(Corpus, CorpusRead, ::testing::ValuesIn(zyltest::CorpusDocuments()), zyltest::FileTestName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(CorpusRead);

TEST(CorpusPresence, ReportsWhetherTheCorpusIsThere) {
  if (zyltest::CorpusDocuments().empty()) GTEST_SKIP() << "no corpus at " << ZYL_CORPUS_DIR << ": corpus tests skipped";
  SUCCEED();
}

}  // namespace
