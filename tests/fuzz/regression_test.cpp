// Inputs that once crashed, tripped a sanitizer, broke a scene invariant or took too long under
// fuzzing: each must now read (or fail to read) cleanly, in both reading modes.

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "tests/support/corpus.h"
#include "tests/support/documents.h"

namespace {

std::vector<std::string> RegressionInputs() { return zyltest::DocumentsIn(std::string(ZYL_SOURCE_DIR) + "/tests/data/fuzz"); }

// The read opened the file, dumps, and a failure ends with the reader's failure message.
void ExpectCleanRead(const zyldae::ReadResult& read) {
  ASSERT_TRUE(read.opened);
  std::ostringstream out;
  zyldae::WriteJson(out, zyldae::DumpRead(read, "input.dae", false));
  EXPECT_FALSE(out.str().empty());
  if (!read.ok) {
    ASSERT_FALSE(read.notifications.empty());
    EXPECT_EQ(read.notifications.back().text.Std(), "ERROR: Unable to parse xml/dae file\n");
  }
}

class FuzzRegression : public ::testing::TestWithParam<std::string> {};

TEST_P(FuzzRegression, ReadsCleanly) {
  const std::string path = std::string(ZYL_SOURCE_DIR) + "/tests/data/fuzz/" + GetParam();
  for (const zyldae::ReadSettings& settings : zyltest::BothModes()) {
    SCOPED_TRACE(settings.complete ? "complete" : "default");
    ExpectCleanRead(zyltest::ReadPath(path, settings));
  }
}

INSTANTIATE_TEST_SUITE_P(Inputs, FuzzRegression, ::testing::ValuesIn(RegressionInputs()), zyltest::FileTestName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(FuzzRegression);

}  // namespace
