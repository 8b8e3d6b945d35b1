// Reading skinned meshes: a skin of 200 joints over 100 000 vertices, each weighted by four
// joints, instanced by one node after a skeleton of joint chains. Prints libxml2's parse time
// alone, our whole read, and their ratio; then series that double the vertices, the joints and
// the instances. The ratio staying flat while the vertices or the joints double shows that
// filling the clusters grows linearly (filling each cluster by a scan of every weight would
// double the read time with each doubling of the joints); the read time growing by about the
// same step per added instance shows the same for copying and re-linking the clusters.
//
//   bench_skin_read [vertices] [joints]   (default 100000 200)

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/bench_support.h"
#include "bench/generated_documents.h"

namespace {

bool Measure(long vertices, int joints, int instances) {
  return zylbench::Measure(std::to_string(vertices) + " vertices, " + std::to_string(joints) + " joints, " +
                               std::to_string(instances) + " instance(s)",
                           zylbench::SkinDocument(vertices, joints, instances));
}

}  // namespace

int main(int argc, char** argv) {
  const long vertices = argc > 1 ? std::max(3L, std::atol(argv[1])) : 100000;
  const int joints = argc > 2 ? std::max(1, std::atoi(argv[2])) : 200;
  bool ok = Measure(vertices, joints, 1);

  std::printf("\nvertices doubling (%d joints):\n", joints);
  for (long count = vertices / 4; count <= vertices * 2; count *= 2) ok = Measure(count, joints, 1) && ok;
  std::printf("\njoints doubling (%ld vertices):\n", vertices);
  for (int count = std::max(1, joints / 4); count <= joints * 4; count *= 2) ok = Measure(vertices, count, 1) && ok;
  std::printf("\ninstances doubling (%ld vertices, %d joints):\n", vertices / 4, joints);
  for (int count = 1; count <= 8; count *= 2) ok = Measure(vertices / 4, joints, count) && ok;
  return ok ? 0 : 1;
}
