// Animations: many animated nodes with many keys each, one animation per node, and one
// animation that holds every channel. Each size is read whole and parsed alone; the ratio of
// the two staying flat as the number of keys doubles shows that the read grows linearly.

#include <string>

#include "bench/bench_support.h"
#include "bench/generated_documents.h"

int main() {
  bool ok = true;
  for (int nodes : {125, 250, 500, 1000})
    ok = zylbench::Measure(std::to_string(nodes) + " nodes x 1000 keys", zylbench::AnimationDocument(nodes, 1000, false)) && ok;
  for (int nodes : {1000, 2000, 4000, 8000})
    ok = zylbench::Measure(std::to_string(nodes) + " nodes x 10 keys, one animation each",
                           zylbench::AnimationDocument(nodes, 10, false)) && ok;
  for (int nodes : {1000, 2000, 4000, 8000})
    ok = zylbench::Measure(std::to_string(nodes) + " nodes x 10 keys, all in one animation",
                           zylbench::AnimationDocument(nodes, 10, true)) && ok;
  return ok ? 0 : 1;
}
