// Every third-party document of the shared corpus is read through the reader, in both reading
// modes. Reading may fail on a document the reader does not accept, but must never crash, hang
// or trip a sanitizer; the scene keeps its invariants (checked by the read helper, see
// tests/support/scene_invariants.h) and its dump is valid JSON. The corpus is not part of the
// project: without it the tests are skipped.

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "tests/support/corpus.h"
#include "tests/support/documents.h"

namespace {

class CorpusRead : public ::testing::TestWithParam<std::string> {};

TEST_P(CorpusRead, ReadsWithoutCrashing) {
  for (const zyldae::ReadSettings& settings : zyltest::BothModes()) {
    SCOPED_TRACE(settings.complete ? "complete" : "default");
    zyldae::ReadResult read = zyltest::ReadPath(std::string(ZYL_CORPUS_DIR) + "/" + GetParam(), settings);
    ASSERT_TRUE(read.opened);
    ASSERT_NE(read.scene, nullptr);
    // A failed read always says why, with the reader's own failure message last.
    if (!read.ok) {
      ASSERT_FALSE(read.notifications.empty());
      EXPECT_EQ(read.notifications.back().text.Std(), "ERROR: Unable to parse xml/dae file\n");
    }
    std::ostringstream text;
    zyldae::WriteJson(text, zyldae::DumpRead(read, GetParam().c_str(), false));
    EXPECT_NO_THROW(zyldae::Json::parse(text.str())) << "the dump is not valid JSON";
  }
}

INSTANTIATE_TEST_SUITE_P(Corpus, CorpusRead, ::testing::ValuesIn(zyltest::CorpusDocuments()), zyltest::FileTestName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(CorpusRead);

TEST(CorpusPresence, ReportsWhetherTheCorpusIsThere) {
  if (zyltest::CorpusDocuments().empty()) GTEST_SKIP() << "no corpus at " << ZYL_CORPUS_DIR << ": corpus tests skipped";
  SUCCEED();
}

}  // namespace
