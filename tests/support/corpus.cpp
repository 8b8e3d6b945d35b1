#include "tests/support/corpus.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace zyltest {

namespace fs = std::filesystem;

std::vector<std::string> DocumentsIn(const std::string& folder) {
  std::vector<std::string> files;
  std::error_code error;
  if (!fs::is_directory(folder, error)) return files;
  for (const auto& entry : fs::recursive_directory_iterator(folder, error))
    if (entry.is_regular_file() && entry.path().filename().string()[0] != '.')
      files.push_back(fs::relative(entry.path(), folder).string());
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<std::string> CorpusDocuments() {
  std::vector<std::string> files = DocumentsIn(ZYL_CORPUS_DIR);
  files.erase(std::remove_if(files.begin(), files.end(),
                             [](const std::string& f) { return fs::path(f).extension() != ".dae"; }),
              files.end());
  return files;
}

std::string FileTestName(const ::testing::TestParamInfo<std::string>& info) {
  std::string name = info.param;
  for (char& c : name)
    if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
  return name;
}

}  // namespace zyltest
