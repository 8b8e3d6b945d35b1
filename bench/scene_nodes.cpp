// Node hierarchies: a visual scene of many sibling nodes, each with its transform elements, and
// a deep chain of nested nodes. Each size is read whole and parsed alone; the ratio of the two
// staying flat as the size doubles shows that the read grows linearly.

#include <string>

#include "bench/bench_support.h"
#include "bench/generated_documents.h"

int main() {
  bool ok = true;
  for (int count : {6250, 12500, 25000, 50000})
    ok = zylbench::Measure(std::to_string(count) + " sibling nodes", zylbench::SiblingNodesDocument(count)) && ok;
  for (int depth : {250, 500, 1000, 2000})
    ok = zylbench::Measure("chain of " + std::to_string(depth) + " nodes", zylbench::NodeChainDocument(depth)) && ok;
  return ok ? 0 : 1;
}
