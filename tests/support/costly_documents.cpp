#include "tests/support/costly_documents.h"

#include <functional>

#include "kit/stream_options.h"

namespace zyltest {

namespace {

using Generator = std::function<std::string(size_t repeats)>;

std::string Document(const std::string& body) {
  return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<COLLADA xmlns=\"http://www.collada.org/2005/11/COLLADASchema\" "
         "version=\"1.4.1\"><asset/>\n" +
         body + "\n</COLLADA>\n";
}

std::string Scene(const std::string& nodes, const std::string& libraries = "") {
  return Document(libraries + "<library_visual_scenes><visual_scene id=\"vs\">" + nodes +
                  "</visual_scene></library_visual_scenes><scene><instance_visual_scene url=\"#vs\"/></scene>");
}

std::string Repeat(size_t count, const std::function<std::string(size_t)>& item) {
  std::string text;
  for (size_t i = 0; i < count; ++i) text += item(i);
  return text;
}

std::string Numbers(size_t count, double step) {
  std::string text;
  for (size_t i = 0; i < count; ++i) text += std::to_string(static_cast<double>(i) * step) + " ";
  return text;
}

std::string FloatSource(const std::string& id, const std::string& values, size_t count, size_t stride,
                        const std::string& param) {
  std::string params;
  for (size_t i = 0; i < stride; ++i) params += "<param name=\"" + param + "\" type=\"float\"/>";
  return "<source id=\"" + id + "\"><float_array id=\"" + id + "-array\" count=\"" + std::to_string(count * stride) +
         "\">" + values + "</float_array><technique_common><accessor source=\"#" + id + "-array\" count=\"" +
         std::to_string(count) + "\" stride=\"" + std::to_string(stride) + "\">" + params +
         "</accessor></technique_common></source>\n";
}

std::string NameSource(const std::string& id, const std::string& names, size_t count) {
  return "<source id=\"" + id + "\"><Name_array id=\"" + id + "-array\" count=\"" + std::to_string(count) + "\">" +
         names + "</Name_array><technique_common><accessor source=\"#" + id + "-array\" count=\"" +
         std::to_string(count) + "\"><param name=\"JOINT\" type=\"name\"/></accessor></technique_common></source>\n";
}

// A triangle of three points, geometry `id`; `extraInputs` go after its VERTEX input, all at
// offset 0.
std::string Triangle(const std::string& id = "tri", const std::string& extraInputs = "",
                     const std::string& extraSources = "") {
  const std::string indices = "0 1 2 ";
  return "<geometry id=\"" + id + "\"><mesh>" + FloatSource(id + "-pos", "0 0 0 1 0 0 0 1 0", 3, 3, "X") +
         extraSources + "<vertices id=\"" + id + "-vtx\"><input semantic=\"POSITION\" source=\"#" + id +
         "-pos\"/></vertices><triangles count=\"1\"><input semantic=\"VERTEX\" source=\"#" + id +
         "-vtx\" offset=\"0\"/>" + extraInputs + "<p>" + indices + "</p></triangles></mesh></geometry>\n";
}

// A skin of `joints` joints on the triangle, "skin", each point weighted by the first joint.
std::string Skin(size_t joints) {
  std::string names, matrices;
  for (size_t j = 0; j < joints; ++j) {
    names += "j" + std::to_string(j) + " ";
    matrices += "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1 ";
  }
  return "<controller id=\"skin\"><skin source=\"#tri\"><bind_shape_matrix>1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1"
         "</bind_shape_matrix>" +
         NameSource("skin-joints", names, joints) + FloatSource("skin-ibm", matrices, joints, 16, "T") +
         FloatSource("skin-w", "1", 1, 1, "WEIGHT") +
         "<joints><input semantic=\"JOINT\" source=\"#skin-joints\"/><input semantic=\"INV_BIND_MATRIX\" "
         "source=\"#skin-ibm\"/></joints><vertex_weights count=\"3\"><input semantic=\"JOINT\" "
         "source=\"#skin-joints\" offset=\"0\"/><input semantic=\"WEIGHT\" source=\"#skin-w\" offset=\"1\"/>"
         "<vcount>1 1 1</vcount><v>0 0 0 0 0 0</v></vertex_weights></skin></controller>\n";
}

std::string Joints(size_t joints) {
  return Repeat(joints, [](size_t j) {
    return "<node id=\"j" + std::to_string(j) + "\" sid=\"j" + std::to_string(j) + "\" name=\"j" + std::to_string(j) +
           "\" type=\"JOINT\"/>";
  });
}

std::string TranslatedNodes(size_t count) {
  return Repeat(count, [](size_t i) {
    return "<node id=\"n" + std::to_string(i) + "\" name=\"n" + std::to_string(i) +
           "\"><translate sid=\"translate\">0 0 0</translate></node>";
  });
}

// The visual scene of `nodes`, then one animation holding `channels`.
std::string AnimatedScene(const std::string& nodes, const std::string& channels, const std::string& libraries = "") {
  return Document(libraries + "<library_visual_scenes><visual_scene id=\"vs\">" + nodes +
                  "</visual_scene></library_visual_scenes><library_animations><animation id=\"all\">" + channels +
                  "</animation></library_animations><scene><instance_visual_scene url=\"#vs\"/></scene>");
}

// A sampler "s" of `keys` keys, whose times step by `step` from `first`.
std::string SharedSampler(size_t keys, double first, double step) {
  std::string times;
  for (size_t k = 0; k < keys; ++k) times += std::to_string(first + static_cast<double>(k) * step) + " ";
  return FloatSource("s-in", times, keys, 1, "TIME") + FloatSource("s-out", times, keys, 1, "X") +
         "<sampler id=\"s\"><input semantic=\"INPUT\" source=\"#s-in\"/><input semantic=\"OUTPUT\" "
         "source=\"#s-out\"/></sampler>\n";
}

std::string ChannelsOnNodes(size_t count, const char* prefix) {
  return Repeat(count, [prefix](size_t i) {
    return "<channel source=\"#s\" target=\"" + std::string(prefix) + std::to_string(i) + "/translate.X\"/>";
  });
}

std::string MatrixNodes(size_t count) {
  return Repeat(count, [](size_t i) {
    return "<node id=\"n" + std::to_string(i) + "\" name=\"n" + std::to_string(i) +
           "\"><matrix sid=\"m\">1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1</matrix></node>";
  });
}

// Nodes with a matrix each; every other channel animates a whole matrix (sampler "w", four
// matrices), the others one entry of it (sampler "s").
std::string MatrixChannels(size_t n) {
  std::string matrices;
  for (int k = 0; k < 4; ++k) matrices += "1 0 0 " + std::to_string(k) + " 0 1 0 0 0 0 1 0 0 0 0 1 ";
  const std::string wholeSampler = FloatSource("w-in", "0 1 2 3", 4, 1, "TIME") +
                                   FloatSource("w-out", matrices, 4, 16, "T") +
                                   "<sampler id=\"w\"><input semantic=\"INPUT\" source=\"#w-in\"/><input "
                                   "semantic=\"OUTPUT\" source=\"#w-out\"/></sampler>\n";
  const std::string channels = Repeat(n, [](size_t i) {
    const bool whole = i % 2 == 0;
    return std::string("<channel source=\"#") + (whole ? "w" : "s") + "\" target=\"n" + std::to_string(i) +
           (whole ? "/m" : "/m(0)(3)") + "\"/>";
  });
  return AnimatedScene(MatrixNodes(n), SharedSampler(4, 0.0, 1.0) + wholeSampler + channels);
}

std::string VisualSceneInstances(size_t n) {
  const std::string libraries = "<library_geometries>" + Triangle() + "</library_geometries><library_controllers>" +
                                Skin(2) + "</library_controllers>";
  const std::string nodes = Joints(2) + "<node id=\"body\"><instance_controller url=\"#skin\"><skeleton>#j0</skeleton>"
                            "</instance_controller></node>";
  return Document(libraries + "<library_visual_scenes><visual_scene id=\"vs\">" + nodes +
                  "</visual_scene></library_visual_scenes><scene>" +
                  Repeat(n, [](size_t) { return std::string("<instance_visual_scene url=\"#vs\"/>"); }) + "</scene>");
}

std::string UnknownChannelTargets(size_t n) {
  return AnimatedScene(TranslatedNodes(2 * n), SharedSampler(2, 0.0, 1.0) + ChannelsOnNodes(n, "missing"));
}

std::string DescendingKeyTimes(size_t n) {
  return AnimatedScene(TranslatedNodes(1), SharedSampler(n, static_cast<double>(n), -1.0) + ChannelsOnNodes(1, "n"));
}

std::string SharedSamplerChannels(size_t n) {
  return AnimatedScene(TranslatedNodes(n), SharedSampler(4, 0.0, 1.0) + ChannelsOnNodes(n, "n"));
}

std::string ManyAttributes(size_t n) {
  // Elements of as many attributes, their id among them, as the reader takes by default (more
  // are refused).
  const size_t perElement = zylsdk::KZylStreamOptionsColladaReader::kDefaultAttributesPerElement;
  const std::string attributes = Repeat(perElement - 1, [](size_t i) { return " a" + std::to_string(i) + "=\"1\""; });
  return Scene(Repeat(n, [&attributes](size_t i) {
    return "<node id=\"n" + std::to_string(i) + "\"" + attributes + "/>";
  }));
}

std::string LongSamplerManyChannels(size_t n) {
  // Keys and channels grow together: n keys on n / 20 channels.
  const size_t channels = n / 20 + 1;
  return AnimatedScene(TranslatedNodes(channels), SharedSampler(n, 0.0, 0.5) + ChannelsOnNodes(channels, "n"));
}

std::string ManyMorphTargets(size_t n) {
  std::string targets, names, weights;
  for (size_t t = 0; t < n; ++t) {
    targets += Triangle("t" + std::to_string(t));
    names += "t" + std::to_string(t) + " ";
    weights += "0.5 ";
  }
  const std::string morph = "<controller id=\"morph\"><morph source=\"#tri\" method=\"NORMALIZED\">" +
                            NameSource("m-targets", names, n) +
                            FloatSource("m-weights", weights, n, 1, "MORPH_WEIGHT") +
                            "<targets><input semantic=\"MORPH_TARGET\" source=\"#m-targets\"/><input "
                            "semantic=\"MORPH_WEIGHT\" source=\"#m-weights\"/></targets></morph></controller>";
  return Scene("<node id=\"body\"><instance_controller url=\"#morph\"/></node>",
               "<library_geometries>" + Triangle() + targets + "</library_geometries><library_controllers>" + morph +
                   "</library_controllers>");
}

std::string InstancedSkin(size_t n) {
  // Joints and instances grow together: n joints, n / 2 instances.
  const std::string instances = Repeat(n / 2 + 1, [](size_t i) {
    return "<node id=\"b" + std::to_string(i) + "\"><instance_controller url=\"#skin\"><skeleton>#j0</skeleton>"
           "</instance_controller></node>";
  });
  return Scene(Joints(n) + instances, "<library_geometries>" + Triangle() + "</library_geometries><library_controllers>" +
                                          Skin(n) + "</library_controllers>");
}

std::string RepeatedNormalInputs(size_t n) {
  const std::string normals = FloatSource("tri-nrm", "0 0 1", 1, 3, "X");
  std::string inputs;
  for (size_t i = 0; i < n; ++i) inputs += "<input semantic=\"NORMAL\" source=\"#tri-nrm\" offset=\"0\"/>";
  return Scene("<node id=\"body\"><instance_geometry url=\"#tri\"/></node>",
               "<library_geometries>" + Triangle("tri", inputs, normals) + "</library_geometries>");
}

std::string EmptyNodes(size_t n) { return Scene(Repeat(n, [](size_t) { return std::string("<node/>"); })); }

std::string LargeFloatArray(size_t n) {
  const size_t points = n / 3 + 1;
  std::string indices;
  for (size_t v = 0; v < 3; ++v) indices += std::to_string(v) + " ";
  return Scene("<node id=\"body\"><instance_geometry url=\"#big\"/></node>",
               "<library_geometries><geometry id=\"big\"><mesh>" + FloatSource("big-pos", Numbers(points * 3, 0.25), points, 3, "X") +
                   "<vertices id=\"big-vtx\"><input semantic=\"POSITION\" source=\"#big-pos\"/></vertices>"
                   "<triangles count=\"1\"><input semantic=\"VERTEX\" source=\"#big-vtx\" offset=\"0\"/><p>" +
                   indices + "</p></triangles></mesh></geometry></library_geometries>");
}

Generator GeneratorOf(CostlyKind kind) {
  switch (kind) {
    case CostlyKind::kVisualSceneInstances: return VisualSceneInstances;
    case CostlyKind::kUnknownChannelTargets: return UnknownChannelTargets;
    case CostlyKind::kDescendingKeyTimes: return DescendingKeyTimes;
    case CostlyKind::kSharedSampler: return SharedSamplerChannels;
    case CostlyKind::kManyAttributes: return ManyAttributes;
    case CostlyKind::kLongSamplerManyChannels: return LongSamplerManyChannels;
    case CostlyKind::kManyMorphTargets: return ManyMorphTargets;
    case CostlyKind::kInstancedSkin: return InstancedSkin;
    case CostlyKind::kRepeatedNormalInputs: return RepeatedNormalInputs;
    case CostlyKind::kEmptyNodes: return EmptyNodes;
    case CostlyKind::kLargeFloatArray: return LargeFloatArray;
    case CostlyKind::kMatrixChannels: return MatrixChannels;
  }
  return EmptyNodes;
}

}  // namespace

std::vector<CostlyKind> AllCostlyKinds() {
  return {CostlyKind::kVisualSceneInstances, CostlyKind::kUnknownChannelTargets, CostlyKind::kDescendingKeyTimes,
          CostlyKind::kSharedSampler,        CostlyKind::kManyAttributes,        CostlyKind::kLongSamplerManyChannels,
          CostlyKind::kManyMorphTargets,     CostlyKind::kInstancedSkin,         CostlyKind::kRepeatedNormalInputs,
          CostlyKind::kEmptyNodes,           CostlyKind::kLargeFloatArray,       CostlyKind::kMatrixChannels};
}

const char* CostlyName(CostlyKind kind) {
  switch (kind) {
    case CostlyKind::kVisualSceneInstances: return "VisualSceneInstances";
    case CostlyKind::kUnknownChannelTargets: return "UnknownChannelTargets";
    case CostlyKind::kDescendingKeyTimes: return "DescendingKeyTimes";
    case CostlyKind::kSharedSampler: return "SharedSampler";
    case CostlyKind::kManyAttributes: return "ManyAttributes";
    case CostlyKind::kLongSamplerManyChannels: return "LongSamplerManyChannels";
    case CostlyKind::kManyMorphTargets: return "ManyMorphTargets";
    case CostlyKind::kInstancedSkin: return "InstancedSkin";
    case CostlyKind::kRepeatedNormalInputs: return "RepeatedNormalInputs";
    case CostlyKind::kEmptyNodes: return "EmptyNodes";
    case CostlyKind::kLargeFloatArray: return "LargeFloatArray";
    case CostlyKind::kMatrixChannels: return "MatrixChannels";
  }
  return "";
}

std::string CostlyDocument(CostlyKind kind, size_t bytes) {
  const Generator generate = GeneratorOf(kind);
  // The size grows about linearly with the repeats: estimate from two small documents, then
  // step back until the budget holds.
  const double small = static_cast<double>(generate(10).size());
  const double perRepeat = (static_cast<double>(generate(20).size()) - small) / 10.0;
  size_t repeats = perRepeat > 0 && bytes > small ? 10 + static_cast<size_t>((bytes - small) / perRepeat) : 1;
  std::string document = generate(repeats);
  while (document.size() > bytes && repeats > 1) {
    repeats = repeats * 95 / 100;
    document = generate(repeats);
  }
  return document;
}

}  // namespace zyltest
