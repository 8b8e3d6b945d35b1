// No document that docs/corpus.md records as read may stop reading.

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "tests/support/corpus.h"
#include "tests/support/documents.h"

namespace {

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
    zyldae::ReadResult read = zyltest::ReadPath(std::string(ZYL_CORPUS_DIR) + "/" + file);
    EXPECT_TRUE(read.ok) << file << " read before (docs/corpus.md) and no longer does";
  }
}

}  // namespace
