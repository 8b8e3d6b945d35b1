// Inputs that once crashed or tripped a sanitizer under fuzzing: each must now read (or fail
// to read) cleanly.

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/corpus.h"
#include "tests/support/documents.h"

namespace {

std::vector<std::string> RegressionInputs() { return zyltest::DocumentsIn(std::string(ZYL_SOURCE_DIR) + "/tests/data/fuzz"); }

class FuzzRegression : public ::testing::TestWithParam<std::string> {};

TEST_P(FuzzRegression, ReadsCleanly) {
  std::string path = std::string(ZYL_SOURCE_DIR) + "/tests/data/fuzz/" + GetParam();
  zyldae::ReadResult read = zyldae::ReadDocument(path.c_str());
  ASSERT_TRUE(read.opened);
  std::ostringstream out;
  zyldae::WriteJson(out, zyldae::DumpRead(read, "input.dae", false));
  EXPECT_FALSE(out.str().empty());
  if (!read.ok) {
    ASSERT_FALSE(read.notifications.empty());
    EXPECT_EQ(read.notifications.back().text.Std(), "ERROR: Unable to parse xml/dae file\n");
  }
}

INSTANTIATE_TEST_SUITE_P(Inputs, FuzzRegression, ::testing::ValuesIn(RegressionInputs()), zyltest::FileTestName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(FuzzRegression);

}  // namespace
