// Reading a large mesh: a grid of one million triangles with normals and texture coordinates,
// instanced by one node. Prints libxml2's parse time alone, our whole read, and their ratio.
//
//   bench_mesh_read [quads per side]   (default 708: 1 002 528 triangles)
//
// With ZYLBENCH_KEEP set, the generated document stays in /tmp for profiling.

#include <algorithm>
#include <cstdlib>
#include <string>

#include "bench/bench_support.h"
#include "bench/generated_documents.h"

int main(int argc, char** argv) {
  const long side = argc > 1 ? std::max(1L, std::atol(argv[1])) : 708;
  return zylbench::Measure(std::to_string(side * side * 2) + " triangles, normals, UVs", zylbench::MeshDocument(side))
             ? 0
             : 1;
}
