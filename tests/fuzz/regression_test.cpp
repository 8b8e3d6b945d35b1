// Inputs that once crashed or tripped a sanitizer under fuzzing: each must now read (or fail
// to read) cleanly.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/documents.h"

namespace {

namespace fs = std::filesystem;

std::vector<std::string> RegressionInputs() {
  std::vector<std::string> files;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(std::string(ZYL_SOURCE_DIR) + "/tests/data/fuzz", error))
    if (entry.is_regular_file() && entry.path().filename().string()[0] != '.')
      files.push_back(entry.path().filename().string());
  std::sort(files.begin(), files.end());
  return files;
}

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

std::string TestName(const ::testing::TestParamInfo<std::string>& info) {
  std::string name = info.param;
  for (char& c : name)
    if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
  return name;
}

INSTANTIATE_TEST_SUITE_P(Inputs, FuzzRegression, ::testing::ValuesIn(RegressionInputs()), TestName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(FuzzRegression);

}  // namespace
