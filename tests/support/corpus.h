#pragma once
// The shared corpus of third-party documents, for the tests that read it. The corpus is not part
// of the project: without it, these give no documents and the tests skip.

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zyltest {

// The .dae files below `folder`, as paths relative to it, sorted.
std::vector<std::string> DocumentsIn(const std::string& folder);
// The documents of the shared corpus.
std::vector<std::string> CorpusDocuments();
// A test name made from a parameter that is a file name.
std::string FileTestName(const ::testing::TestParamInfo<std::string>& info);

}  // namespace zyltest
