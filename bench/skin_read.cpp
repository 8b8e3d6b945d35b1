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
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/bench_support.h"

namespace {

constexpr int kInfluences = 4;
constexpr int kChainLength = 50;

void AppendInt(std::string& out, long value) {
  char digits[24];
  out.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
  out += ' ';
}

void AppendNumber(std::string& out, double value) {
  char digits[32];
  out.append(digits, std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, 6).ptr);
  out += ' ';
}

std::string FloatSource(const std::string& id, const std::string& values, const std::string& params, int stride) {
  return "<source id=\"" + id + "\"><float_array id=\"" + id + "-array\">" + values +
         "</float_array><technique_common><accessor source=\"#" + id + "-array\" stride=\"" + std::to_string(stride) +
         "\">" + params + "</accessor></technique_common></source>\n";
}

// A ribbon of `vertices` points (rounded down to whole triangles), one triangle per three.
std::string Geometry(long vertices) {
  std::string positions, indices;
  for (long i = 0; i < vertices; ++i) {
    AppendNumber(positions, static_cast<double>(i % 1000));
    AppendNumber(positions, static_cast<double>(i / 1000));
    AppendNumber(positions, static_cast<double>(i % 3));
    AppendInt(indices, i);
  }
  return "<geometry id=\"body-geo\"><mesh>" +
         FloatSource(
             "body-pos", positions,
             "<param name=\"X\" type=\"float\"/><param name=\"Y\" type=\"float\"/><param name=\"Z\" type=\"float\"/>",
             3) +
         "<vertices id=\"body-vtx\"><input semantic=\"POSITION\" source=\"#body-pos\"/></vertices>"
         "<triangles count=\"" +
         std::to_string(vertices / 3) + "\"><input semantic=\"VERTEX\" source=\"#body-vtx\" offset=\"0\"/><p>" +
         indices + "</p></triangles></mesh></geometry>\n";
}

// Every vertex weighted by four joints spread over the skeleton.
std::string Controller(long vertices, int joints) {
  std::string names, matrices, weights, counts, pairs;
  for (int j = 0; j < joints; ++j) {
    names += "j" + std::to_string(j) + " ";
    matrices += "1 0 0 0 0 1 0 " + std::to_string(-j) + " 0 0 1 0 0 0 0 1 ";
  }
  const double shares[kInfluences] = {0.4, 0.3, 0.2, 0.1};
  for (long i = 0; i < vertices; ++i) {
    AppendInt(counts, kInfluences);
    for (int k = 0; k < kInfluences; ++k) {
      AppendInt(pairs, (i * 7 + k * 13) % joints);
      AppendInt(pairs, i * kInfluences + k);
      AppendNumber(weights, shares[k]);
    }
  }
  return "<controller id=\"body-skin\"><skin source=\"#body-geo\"><bind_shape_matrix>1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1"
         "</bind_shape_matrix><source id=\"joints\"><Name_array id=\"joints-array\">" +
         names +
         "</Name_array><technique_common><accessor source=\"#joints-array\" stride=\"1\"><param name=\"JOINT\" "
         "type=\"name\"/></accessor></technique_common></source>\n" +
         FloatSource("ibm", matrices, "<param name=\"TRANSFORM\" type=\"float4x4\"/>", 16) +
         FloatSource("weights", weights, "<param name=\"WEIGHT\" type=\"float\"/>", 1) +
         "<joints><input semantic=\"JOINT\" source=\"#joints\"/><input semantic=\"INV_BIND_MATRIX\" source=\"#ibm\"/>"
         "</joints><vertex_weights count=\"" +
         std::to_string(vertices) +
         "\"><input semantic=\"JOINT\" source=\"#joints\" offset=\"0\"/><input semantic=\"WEIGHT\" source=\"#weights\" "
         "offset=\"1\"/><vcount>" +
         counts + "</vcount><v>" + pairs + "</v></vertex_weights></skin></controller>\n";
}

// Chains of joints, each joint one unit above its parent, then the skinned instances.
std::string VisualScene(int joints, int instances) {
  std::string nodes;
  for (int start = 0; start < joints; start += kChainLength) {
    const int end = std::min(joints, start + kChainLength);
    for (int j = start; j < end; ++j)
      nodes += "<node id=\"j" + std::to_string(j) + "\" type=\"JOINT\"><translate>0 1 0</translate>";
    for (int j = start; j < end; ++j) nodes += "</node>";
    nodes += "\n";
  }
  for (int i = 0; i < instances; ++i)
    nodes += "<node id=\"body" + std::to_string(i) + "\"><instance_controller url=\"#body-skin\"/></node>\n";
  return "<library_visual_scenes><visual_scene id=\"scene\">" + nodes + "</visual_scene></library_visual_scenes>\n";
}

std::string SkinDocument(long vertices, int joints, int instances) {
  return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<COLLADA xmlns=\"http://www.collada.org/2005/11/COLLADASchema\" "
         "version=\"1.4.1\">\n<asset><up_axis>Y_UP</up_axis></asset>\n<library_geometries>" +
         Geometry(vertices) + "</library_geometries>\n<library_controllers>" + Controller(vertices, joints) +
         "</library_controllers>\n" + VisualScene(joints, instances) +
         "<scene><instance_visual_scene url=\"#scene\"/></scene>\n</COLLADA>\n";
}

bool Measure(long vertices, int joints, int instances) {
  const std::string path = zylbench::WriteTemporary("skin_read.dae", SkinDocument(vertices, joints, instances));
  const double parse = zylbench::BestSeconds(3, [&] { zylbench::ParseOnly(path); });
  bool ok = true;
  const double read = zylbench::BestSeconds(3, [&] { ok = zylbench::ReadWhole(path) && ok; });
  zylbench::Report(std::to_string(vertices) + " vertices, " + std::to_string(joints) + " joints, " +
                       std::to_string(instances) + " instance(s)",
                   parse, read);
  std::remove(path.c_str());
  if (!ok) std::printf("  the read failed\n");
  return ok;
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
