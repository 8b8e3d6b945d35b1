// Node hierarchies: a visual scene of many sibling nodes, each with its transform elements, and
// a deep chain of nested nodes. Each size is read whole and parsed alone; the ratio of the two
// staying flat as the size doubles shows that the read grows linearly.

#include <cstdio>
#include <string>

#include "bench/bench_support.h"

namespace {

const char* const kTransforms =
    "<translate sid=\"translate\">1 2 3</translate><rotate sid=\"rotateZ\">0 0 1 30</rotate>"
    "<rotate sid=\"rotateY\">0 1 0 20</rotate><rotate sid=\"rotateX\">1 0 0 10</rotate>"
    "<scale sid=\"scale\">1 1 1</scale>";

std::string Document(const std::string& nodes) {
  return "<?xml version=\"1.0\"?>\n<COLLADA xmlns=\"http://www.collada.org/2005/11/COLLADASchema\" "
         "version=\"1.4.1\"><asset/><library_visual_scenes><visual_scene id=\"vs\">" +
         nodes + "</visual_scene></library_visual_scenes><scene><instance_visual_scene url=\"#vs\"/></scene></COLLADA>\n";
}

std::string Siblings(int count) {
  std::string nodes;
  for (int i = 0; i < count; ++i) nodes += "<node id=\"n" + std::to_string(i) + "\">" + kTransforms + "</node>\n";
  return Document(nodes);
}

std::string Chain(int depth) {
  std::string nodes;
  for (int i = 0; i < depth; ++i) nodes += "<node id=\"n" + std::to_string(i) + "\">" + kTransforms + "\n";
  for (int i = 0; i < depth; ++i) nodes += "</node>";
  return Document(nodes);
}

void Measure(const std::string& what, const std::string& document) {
  const std::string path = zylbench::WriteTemporary("scene_nodes.dae", document);
  bool ok = true;
  const double parse = zylbench::BestSeconds(3, [&] { zylbench::ParseOnly(path); });
  const double read = zylbench::BestSeconds(3, [&] { ok = zylbench::ReadWhole(path) && ok; });
  zylbench::Report(what, parse, read);
  if (!ok) std::printf("  (the read failed)\n");
}

}  // namespace

int main() {
  for (int count : {6250, 12500, 25000, 50000}) Measure(std::to_string(count) + " sibling nodes", Siblings(count));
  for (int depth : {250, 500, 1000, 2000}) Measure("chain of " + std::to_string(depth) + " nodes", Chain(depth));
  return 0;
}
