// Every third-party document of the shared corpus is read through the reader. Reading may
// fail on a document the reader does not accept, but must never crash, hang or trip a
// sanitizer. The corpus is not part of the project: without it the tests are skipped.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/documents.h"

namespace {

namespace fs = std::filesystem;

std::vector<std::string> CorpusFiles() {
  std::vector<std::string> files;
  std::error_code error;
  if (!fs::is_directory(ZYL_CORPUS_DIR, error)) return files;
  for (const auto& entry : fs::recursive_directory_iterator(ZYL_CORPUS_DIR, error))
    if (entry.is_regular_file() && entry.path().extension() == ".dae")
      files.push_back(fs::relative(entry.path(), ZYL_CORPUS_DIR).string());
  std::sort(files.begin(), files.end());
  return files;
}

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

std::string TestName(const ::testing::TestParamInfo<std::string>& info) {
  std::string name = info.param;
  for (char& c : name)
    if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
  return name;
}

INSTANTIATE_TEST_SUITE_P(Corpus, CorpusRead, ::testing::ValuesIn(CorpusFiles()), TestName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(CorpusRead);

TEST(CorpusPresence, ReportsWhetherTheCorpusIsThere) {
  if (CorpusFiles().empty()) GTEST_SKIP() << "no corpus at " << ZYL_CORPUS_DIR << ": corpus tests skipped";
  SUCCEED();
}

}  // namespace
