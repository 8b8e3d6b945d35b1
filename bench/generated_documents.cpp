#include "bench/generated_documents.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace zylbench {
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

// A source of `stride` floats per item with params named from `names`.
void AppendSource(std::string& out, const std::string& id, const std::string& values, long count, int stride,
                  const char* names) {
  out += "<source id=\"" + id + "\" name=\"" + id + "\"><float_array id=\"" + id + "-array\" count=\"" +
         std::to_string(count * stride) + "\">" + values + "</float_array><technique_common><accessor source=\"#" + id +
         "-array\" count=\"" + std::to_string(count) + "\" stride=\"" + std::to_string(stride) + "\">";
  for (int k = 0; k < stride; ++k) out += std::string("<param name=\"") + names[k] + "\" type=\"float\"/>";
  out += "</accessor></technique_common></source>\n";
}

}  // namespace

// A gently waved grid of `side` x `side` quads, two triangles each; every input indexes the
// grid's points, as exporters write a smooth surface.
std::string MeshDocument(long side) {
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

namespace {

// A source of `items` items of `stride` numbers each.
std::string FloatSource(const std::string& id, const std::string& values, const std::string& params, int stride,
                        long items) {
  return "<source id=\"" + id + "\"><float_array id=\"" + id + "-array\" count=\"" + std::to_string(items * stride) +
         "\">" + values + "</float_array><technique_common><accessor source=\"#" + id + "-array\" count=\"" +
         std::to_string(items) + "\" stride=\"" + std::to_string(stride) + "\">" + params +
         "</accessor></technique_common></source>\n";
}

// A ribbon of `vertices` points (rounded down to whole triangles), one triangle per three.
std::string Geometry(long vertices) {
  std::string positions, indices;
  const long cornerCount = vertices / 3 * 3;
  for (long i = 0; i < vertices; ++i) {
    AppendNumber(positions, static_cast<double>(i % 1000));
    AppendNumber(positions, static_cast<double>(i / 1000));
    AppendNumber(positions, static_cast<double>(i % 3));
    if (i < cornerCount) AppendInt(indices, i);
  }
  return "<geometry id=\"body-geo\"><mesh>" +
         FloatSource(
             "body-pos", positions,
             "<param name=\"X\" type=\"float\"/><param name=\"Y\" type=\"float\"/><param name=\"Z\" type=\"float\"/>",
             3, vertices) +
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
         "</bind_shape_matrix><source id=\"joints\"><Name_array id=\"joints-array\" count=\"" +
         std::to_string(joints) + "\">" +
         names +
         "</Name_array><technique_common><accessor source=\"#joints-array\" count=\"" + std::to_string(joints) +
         "\" stride=\"1\"><param name=\"JOINT\" "
         "type=\"name\"/></accessor></technique_common></source>\n" +
         FloatSource("ibm", matrices, "<param name=\"TRANSFORM\" type=\"float4x4\"/>", 16, joints) +
         FloatSource("weights", weights, "<param name=\"WEIGHT\" type=\"float\"/>", 1, vertices * kInfluences) +
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

}  // namespace

std::string SkinDocument(long vertices, int joints, int instances) {
  return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<COLLADA xmlns=\"http://www.collada.org/2005/11/COLLADASchema\" "
         "version=\"1.4.1\">\n<asset><up_axis>Y_UP</up_axis></asset>\n<library_geometries>" +
         Geometry(vertices) + "</library_geometries>\n<library_controllers>" + Controller(vertices, joints) +
         "</library_controllers>\n" + VisualScene(joints, instances) +
         "<scene><instance_visual_scene url=\"#scene\"/></scene>\n</COLLADA>\n";
}

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

std::string AnimationSource(const std::string& id, const std::string& values, int count, const char* param) {
  return "<source id=\"" + id + "\"><float_array id=\"" + id + "-array\" count=\"" + std::to_string(count) + "\">" +
         values + "</float_array><technique_common><accessor source=\"#" + id + "-array\" count=\"" +
         std::to_string(count) + "\"><param name=\"" + param +
         "\" type=\"float\"/></accessor></technique_common></source>";
}

// The sources, sampler and channel of node `i`'s X translation.
std::string Channel(int i, const std::string& times, const std::string& values, int keys) {
  const std::string id = "a" + std::to_string(i);
  return AnimationSource(id + "-in", times, keys, "TIME") + AnimationSource(id + "-out", values, keys, "X") + "<sampler id=\"" + id +
         "-s\"><input semantic=\"INPUT\" source=\"#" + id + "-in\"/><input semantic=\"OUTPUT\" source=\"#" + id +
         "-out\"/></sampler><channel source=\"#" + id + "-s\" target=\"n" + std::to_string(i) + "/translate.X\"/>";
}

}  // namespace

// `nodes` nodes, each with `keys` keys on its X translation; all channels in one animation
// when `grouped`.
std::string AnimationDocument(int nodes, int keys, bool grouped) {
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

namespace {

const char* const kTransforms =
    "<translate sid=\"translate\">1 2 3</translate><rotate sid=\"rotateZ\">0 0 1 30</rotate>"
    "<rotate sid=\"rotateY\">0 1 0 20</rotate><rotate sid=\"rotateX\">1 0 0 10</rotate>"
    "<scale sid=\"scale\">1 1 1</scale>";

std::string SceneDocument(const std::string& nodes) {
  return "<?xml version=\"1.0\"?>\n<COLLADA xmlns=\"http://www.collada.org/2005/11/COLLADASchema\" "
         "version=\"1.4.1\"><asset/><library_visual_scenes><visual_scene id=\"vs\">" +
         nodes + "</visual_scene></library_visual_scenes><scene><instance_visual_scene url=\"#vs\"/></scene></COLLADA>\n";
}

}  // namespace

std::string SiblingNodesDocument(int count) {
  std::string nodes;
  for (int i = 0; i < count; ++i) nodes += "<node id=\"n" + std::to_string(i) + "\">" + kTransforms + "</node>\n";
  return SceneDocument(nodes);
}

std::string NodeChainDocument(int depth) {
  std::string nodes;
  for (int i = 0; i < depth; ++i) nodes += "<node id=\"n" + std::to_string(i) + "\">" + kTransforms + "\n";
  for (int i = 0; i < depth; ++i) nodes += "</node>";
  return SceneDocument(nodes);
}

// Each material has an effect of its own colour; the mesh's triangles share three points.
std::string MaterialsDocument(int count) {
  std::string effects, materials, triangles, bindings;
  for (int i = 0; i < count; ++i) {
    const std::string n = std::to_string(i);
    char red[32];
    std::snprintf(red, sizeof red, "%g", static_cast<double>(i % 256) / 255.0);
    effects += "<effect id=\"fx" + n + "\"><profile_COMMON><technique sid=\"common\"><phong><diffuse><color>" + red +
               " 0.5 0.5 1</color></diffuse></phong></technique></profile_COMMON></effect>\n";
    materials += "<material id=\"mat" + n + "\" name=\"mat" + n + "\"><instance_effect url=\"#fx" + n + "\"/></material>\n";
    triangles += "<triangles material=\"sym" + n +
                 "\" count=\"1\"><input semantic=\"VERTEX\" source=\"#tri-vtx\" offset=\"0\"/><p>0 1 2</p></triangles>\n";
    bindings += "<instance_material symbol=\"sym" + n + "\" target=\"#mat" + n + "\"/>\n";
  }
  return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<COLLADA xmlns=\"http://www.collada.org/2005/11/COLLADASchema\" "
         "version=\"1.4.1\">\n<asset><up_axis>Y_UP</up_axis></asset>\n<library_effects>" +
         effects + "</library_effects>\n<library_materials>" + materials +
         "</library_materials>\n<library_geometries><geometry id=\"tri\"><mesh>" +
         FloatSource("tri-pos", "0 0 0 1 0 0 0 1 0 ",
                     "<param name=\"X\" type=\"float\"/><param name=\"Y\" type=\"float\"/><param name=\"Z\" "
                     "type=\"float\"/>",
                     3, 3) +
         "<vertices id=\"tri-vtx\"><input semantic=\"POSITION\" source=\"#tri-pos\"/></vertices>\n" + triangles +
         "</mesh></geometry></library_geometries>\n<library_visual_scenes><visual_scene id=\"scene\"><node "
         "id=\"many\"><instance_geometry url=\"#tri\"><bind_material><technique_common>\n" +
         bindings +
         "</technique_common></bind_material></instance_geometry></node></visual_scene></library_visual_scenes>\n"
         "<scene><instance_visual_scene url=\"#scene\"/></scene>\n</COLLADA>\n";
}

}  // namespace zylbench
