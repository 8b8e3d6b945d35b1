// Writes generated documents to a folder, for measuring the tool on them in fresh processes
// (`/usr/bin/time -v zyldae info FILE`, `zyldae dump FILE`):
//
//   bench_write_documents FOLDER
//
// mesh-1m.dae          a 1,002,528-triangle grid with normals and UVs
// skin-200x100k.dae    a skin of 200 joints over 100,000 vertices
// materials-N.dae      N = 2,000, 4,000, 8,000 and 16,000 materials bound on one mesh

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "bench/generated_documents.h"

namespace {

bool Write(const std::filesystem::path& path, const std::string& document) {
  std::ofstream out(path, std::ios::binary);
  out << document;
  out.close();
  if (!out) std::fprintf(stderr, "cannot write %s\n", path.c_str());
  else std::printf("%s\n", path.c_str());
  return static_cast<bool>(out);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: bench_write_documents FOLDER\n");
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  bool written = Write(folder / "mesh-1m.dae", zylbench::MeshDocument(708));
  written = Write(folder / "skin-200x100k.dae", zylbench::SkinDocument(100000, 200, 1)) && written;
  for (int count : {2000, 4000, 8000, 16000})
    written = Write(folder / ("materials-" + std::to_string(count) + ".dae"), zylbench::MaterialsDocument(count)) && written;
  return written ? 0 : 1;
}
