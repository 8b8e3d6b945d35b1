// corpus_table FOLDER: reads every .dae file below FOLDER and writes, as Markdown, one table row
// per file (whether it read, and what it holds) followed by the warnings of each file.
// scripts/update-corpus-table.sh writes docs/corpus.md with it.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tools/zyldae/read_file.h"
#include "tools/zyldae/scene_stats.h"

namespace {

namespace fs = std::filesystem;

std::vector<std::string> DocumentsBelow(const std::string& folder) {
  std::vector<std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder))
    if (entry.is_regular_file() && entry.path().extension() == ".dae")
      files.push_back(fs::relative(entry.path(), folder).string());
  std::sort(files.begin(), files.end());
  return files;
}

// A notification as one table-safe line.
std::string OneLine(std::string text) {
  while (!text.empty() && text.back() == '\n') text.pop_back();
  for (char& c : text)
    if (c == '\n' || c == '|') c = ' ';
  return text;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: corpus_table FOLDER\n");
    return 2;
  }
  const std::string folder = argv[1];
  std::vector<std::string> files = DocumentsBelow(folder);
  std::map<std::string, std::map<std::string, int>> messages;

  std::printf("# Corpus results\n\n");
  std::printf("Every document of the shared corpus read through the reader, as `zyldae` reads it. Written by\n");
  std::printf("`scripts/update-corpus-table.sh`; the corpus tests fail when a document marked ok here no\n");
  std::printf("longer reads.\n\n");
  std::printf("| file | read | nodes | meshes | polygons | materials | skins | shapes | curves | warnings | errors |\n");
  std::printf("|---|---|---|---|---|---|---|---|---|---|---|\n");
  for (const std::string& file : files) {
    zyldae::ReadResult read = zyldae::ReadDocument((folder + "/" + file).c_str());
    zyldae::SceneStats stats = zyldae::ComputeStats(*read.scene);
    int warnings = 0;
    int errors = 0;
    for (const auto& detail : read.notifications) {
      const std::string& text = detail.text.Std();
      warnings += text.rfind("Warning: ", 0) == 0 ? 1 : 0;
      errors += text.rfind("ERROR: ", 0) == 0 ? 1 : 0;
      ++messages[file][OneLine(text)];
    }
    std::printf("| `%s` | %s | %d | %d | %d | %d | %d | %d | %d | %d | %d |\n", file.c_str(),
                read.ok ? "ok" : "failed", stats.nodes, stats.meshes, stats.polygons, stats.materials, stats.skins,
                stats.shapes, stats.curves, warnings, errors);
  }

  std::printf("\n## Notifications\n\nEach distinct notification of a document, with how often it came.\n");
  for (const auto& [file, texts] : messages) {
    std::printf("\n### `%s`\n\n", file.c_str());
    for (const auto& [text, count] : texts) std::printf("- %s%s\n", text.c_str(), count > 1 ? (" (x" + std::to_string(count) + ")").c_str() : "");
  }
  return 0;
}
