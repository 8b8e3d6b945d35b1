// Reading a large mesh: a grid of one million triangles with normals and texture coordinates,
// instanced by one node. Prints libxml2's parse time alone, our whole read, and their ratio.
//
//   bench_mesh_read [quads per side]   (default 708: 1 002 528 triangles)
//
// With ZYLBENCH_KEEP set, the generated document stays in /tmp for profiling.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/bench_support.h"

namespace {

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

// A source of `stride` floats per item with params named from `names`.
void AppendSource(std::string& out, const std::string& id, const std::string& values, long count, int stride,
                  const char* names) {
  out += "<source id=\"" + id + "\" name=\"" + id + "\"><float_array id=\"" + id + "-array\" count=\"" +
         std::to_string(count * stride) + "\">" + values + "</float_array><technique_common><accessor source=\"#" + id +
         "-array\" count=\"" + std::to_string(count) + "\" stride=\"" + std::to_string(stride) + "\">";
  for (int k = 0; k < stride; ++k) out += std::string("<param name=\"") + names[k] + "\" type=\"float\"/>";
  out += "</accessor></technique_common></source>\n";
}

// A gently waved grid of `side` x `side` quads, two triangles each; every input indexes the
// grid's points, as exporters write a smooth surface.
std::string GridDocument(long side) {
  const long points = (side + 1) * (side + 1);
  std::string positions, normals, uvs, indices;
  positions.reserve(static_cast<size_t>(points) * 30);
  normals.reserve(static_cast<size_t>(points) * 30);
  uvs.reserve(static_cast<size_t>(points) * 20);
  indices.reserve(static_cast<size_t>(side * side) * 6 * 3 * 8);
  for (long j = 0; j <= side; ++j) {
    for (long i = 0; i <= side; ++i) {
      const double u = static_cast<double>(i) / side;
      const double v = static_cast<double>(j) / side;
      const double slope = 0.1 * std::cos(u * 20.0);
      AppendNumber(positions, u * 100.0);
      AppendNumber(positions, v * 100.0);
      AppendNumber(positions, 0.5 * std::sin(u * 20.0));
      const double length = std::sqrt(slope * slope + 1.0);
      AppendNumber(normals, -slope / length);
      AppendNumber(normals, 0.0);
      AppendNumber(normals, 1.0 / length);
      AppendNumber(uvs, u);
      AppendNumber(uvs, v);
    }
  }
  auto corner = [&](long i, long j) {
    const long index = j * (side + 1) + i;
    for (int input = 0; input < 3; ++input) AppendInt(indices, index);
  };
  for (long j = 0; j < side; ++j) {
    for (long i = 0; i < side; ++i) {
      corner(i, j), corner(i + 1, j), corner(i + 1, j + 1);
      corner(i, j), corner(i + 1, j + 1), corner(i, j + 1);
    }
  }

  std::string document =
      "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<COLLADA xmlns=\"http://www.collada.org/2005/11/COLLADASchema\" "
      "version=\"1.4.1\">\n<asset><unit meter=\"0.01\"/><up_axis>Y_UP</up_axis></asset>\n"
      "<library_geometries><geometry id=\"grid\"><mesh>\n";
  document.reserve(positions.size() + normals.size() + uvs.size() + indices.size() + 4096);
  AppendSource(document, "grid-pos", positions, points, 3, "XYZ");
  AppendSource(document, "grid-nrm", normals, points, 3, "XYZ");
  AppendSource(document, "grid-uv", uvs, points, 2, "ST");
  document += "<vertices id=\"grid-vtx\"><input semantic=\"POSITION\" source=\"#grid-pos\"/></vertices>\n"
              "<triangles count=\"" + std::to_string(side * side * 2) + "\">"
              "<input semantic=\"VERTEX\" source=\"#grid-vtx\" offset=\"0\"/>"
              "<input semantic=\"NORMAL\" source=\"#grid-nrm\" offset=\"1\"/>"
              "<input semantic=\"TEXCOORD\" source=\"#grid-uv\" offset=\"2\" set=\"0\"/><p>";
  document += indices;
  document += "</p></triangles>\n</mesh></geometry></library_geometries>\n"
              "<library_visual_scenes><visual_scene id=\"scene\"><node id=\"ground\" name=\"ground\">"
              "<instance_geometry url=\"#grid\"/></node></visual_scene></library_visual_scenes>\n"
              "<scene><instance_visual_scene url=\"#scene\"/></scene>\n</COLLADA>\n";
  return document;
}

}  // namespace

int main(int argc, char** argv) {
  const long side = argc > 1 ? std::max(1L, std::atol(argv[1])) : 708;
  const std::string path = zylbench::WriteTemporary("mesh_read.dae", GridDocument(side));
  const double parse = zylbench::BestSeconds(3, [&] { zylbench::ParseOnly(path); });
  bool ok = true;
  const double read = zylbench::BestSeconds(3, [&] { ok = zylbench::ReadWhole(path) && ok; });
  zylbench::Report(std::to_string(side * side * 2) + " triangles, normals, UVs", parse, read);
  if (!std::getenv("ZYLBENCH_KEEP")) std::remove(path.c_str());
  if (!ok) std::printf("the read failed\n");
  return ok ? 0 : 1;
}
