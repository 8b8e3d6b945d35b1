// Animations: many animated nodes with many keys each, one animation per node, and one
// animation that holds every channel. Each size is read whole and parsed alone; the ratio of
// the two staying flat as the number of keys doubles shows that the read grows linearly.

#include <cstdio>
#include <string>

#include "bench/bench_support.h"

namespace {

// Numbers 0, 1, ..., count - 1 scaled by `step`, as text.
std::string Series(int count, double step) {
  std::string text;
  char number[32];
  for (int i = 0; i < count; ++i) {
    std::snprintf(number, sizeof number, "%g ", i * step);
    text += number;
  }
  return text;
}

std::string Source(const std::string& id, const std::string& values, int count, const char* param) {
  return "<source id=\"" + id + "\"><float_array id=\"" + id + "-array\" count=\"" + std::to_string(count) + "\">" +
         values + "</float_array><technique_common><accessor source=\"#" + id + "-array\" count=\"" +
         std::to_string(count) + "\"><param name=\"" + param +
         "\" type=\"float\"/></accessor></technique_common></source>";
}

// The sources, sampler and channel of node `i`'s X translation.
std::string Channel(int i, const std::string& times, const std::string& values, int keys) {
  const std::string id = "a" + std::to_string(i);
  return Source(id + "-in", times, keys, "TIME") + Source(id + "-out", values, keys, "X") + "<sampler id=\"" + id +
         "-s\"><input semantic=\"INPUT\" source=\"#" + id + "-in\"/><input semantic=\"OUTPUT\" source=\"#" + id +
         "-out\"/></sampler><channel source=\"#" + id + "-s\" target=\"n" + std::to_string(i) + "/translate.X\"/>";
}

// `nodes` nodes, each with `keys` keys on its X translation; all channels in one animation
// when `grouped`.
std::string Document(int nodes, int keys, bool grouped) {
  const std::string times = Series(keys, 1.0 / 30.0);
  const std::string values = Series(keys, 0.5);
  std::string scene;
  std::string animations;
  for (int i = 0; i < nodes; ++i) {
    scene += "<node id=\"n" + std::to_string(i) + "\"><translate sid=\"translate\">0 0 0</translate></node>\n";
    const std::string channel = Channel(i, times, values, keys);
    animations += grouped ? channel : "<animation id=\"a" + std::to_string(i) + "\">" + channel + "</animation>\n";
  }
  if (grouped) animations = "<animation id=\"all\">" + animations + "</animation>";
  return "<?xml version=\"1.0\"?>\n<COLLADA xmlns=\"http://www.collada.org/2005/11/COLLADASchema\" "
         "version=\"1.4.1\"><asset/><library_visual_scenes><visual_scene id=\"vs\">" +
         scene + "</visual_scene></library_visual_scenes><library_animations>" + animations +
         "</library_animations><scene><instance_visual_scene url=\"#vs\"/></scene></COLLADA>\n";
}

void Measure(const std::string& what, const std::string& document) {
  const std::string path = zylbench::WriteTemporary("animation_read.dae", document);
  bool ok = true;
  const double parse = zylbench::BestSeconds(3, [&] { zylbench::ParseOnly(path); });
  const double read = zylbench::BestSeconds(3, [&] { ok = zylbench::ReadWhole(path) && ok; });
  zylbench::Report(what, parse, read);
  if (!ok) std::printf("  (the read failed)\n");
}

}  // namespace

int main() {
  for (int nodes : {125, 250, 500, 1000})
    Measure(std::to_string(nodes) + " nodes x 1000 keys", Document(nodes, 1000, false));
  for (int nodes : {1000, 2000, 4000, 8000})
    Measure(std::to_string(nodes) + " nodes x 10 keys, one animation each", Document(nodes, 10, false));
  for (int nodes : {1000, 2000, 4000, 8000})
    Measure(std::to_string(nodes) + " nodes x 10 keys, all in one animation", Document(nodes, 10, true));
  return 0;
}
