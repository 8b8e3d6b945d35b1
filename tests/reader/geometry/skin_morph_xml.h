#pragma once
// Builders of COLLADA controller text (skins and morphs) for the controller tests, and the
// documents they share.

#include <string>

#include "tests/reader/geometry/mesh_xml.h"

namespace zyltest {

// A `source` of names (`Name_array`, or `IDREF_array` as morphs write their targets).
inline std::string NameSource(const std::string& id, const std::string& names,
                              const std::string& array = "Name_array") {
  return "<source id=\"" + id + "\"><" + array + " id=\"" + id + "-array\">" + names + "</" + array +
         "><technique_common><accessor source=\"#" + id +
         "-array\" stride=\"1\"><param name=\"JOINT\" type=\"name\"/></accessor></technique_common></source>";
}

// A `source` of 4x4 matrices, written as COLLADA writes them (by rows).
inline std::string MatrixSource(const std::string& id, const std::string& values) {
  return "<source id=\"" + id + "\"><float_array id=\"" + id + "-array\">" + values +
         "</float_array><technique_common><accessor source=\"#" + id +
         "-array\" stride=\"16\"><param name=\"TRANSFORM\" type=\"float4x4\"/></accessor></technique_common></source>";
}

// A COLLADA matrix (by rows, translation in the fourth column) that moves by (x, y, z).
inline std::string Translation(double x, double y, double z) {
  return "1 0 0 " + std::to_string(x) + "  0 1 0 " + std::to_string(y) + "  0 0 1 " + std::to_string(z) + "  0 0 0 1 ";
}

inline std::string Input(const std::string& semantic, const std::string& source, int offset = -100) {
  return "<input semantic=\"" + semantic + "\" source=\"" + source + "\"" +
         (offset == -100 ? std::string() : " offset=\"" + std::to_string(offset) + "\"") + "/>";
}

// `joints` with a JOINT input on "#joints" and an INV_BIND_MATRIX input on "#ibm".
inline std::string JointsElement(const std::string& joints = "#joints", const std::string& matrices = "#ibm") {
  return "<joints>" + Input("JOINT", joints) + Input("INV_BIND_MATRIX", matrices) + "</joints>";
}

// `vertex_weights` with a JOINT input on "#joints" at offset 0 and a WEIGHT input on "#weights"
// at offset 1.
inline std::string VertexWeights(const std::string& vcount, const std::string& v) {
  return "<vertex_weights count=\"0\">" + Input("JOINT", "#joints", 0) + Input("WEIGHT", "#weights", 1) + "<vcount>" +
         vcount + "</vcount><v>" + v + "</v></vertex_weights>";
}

inline std::string Controller(const std::string& id, const std::string& body) {
  return "<controller id=\"" + id + "\">" + body + "</controller>";
}

// A skin over `geometry` whose joints are `names`, with inverse bind matrices `matrices` and
// weights `weights`; `rest` holds the vertex weights (and anything else).
inline std::string Skin(const std::string& geometry, const std::string& names, const std::string& matrices,
                        const std::string& weights, const std::string& rest) {
  return "<skin source=\"#" + geometry + "\">" + NameSource("joints", names) + MatrixSource("ibm", matrices) +
         FloatSource("weights", weights, 1) + JointsElement() + rest + "</skin>";
}

// A triangle mesh with the three control points `points` (nine numbers).
inline std::string TriangleGeometry(const std::string& id, const std::string& points) {
  return Geometry(id, Mesh(FloatSource(id + "-pos", points, 3) + "<vertices id=\"" + id +
                           "-vtx\"><input semantic=\"POSITION\" source=\"#" + id + "-pos\"/></vertices>" +
                           "<triangles count=\"1\"><input semantic=\"VERTEX\" source=\"#" + id +
                           "-vtx\" offset=\"0\"/><p>0 1 2</p></triangles>"));
}

// A morph of `base` towards `targets` (ids) with `weights`; its weights source is
// "morph-weights".
inline std::string Morph(const std::string& base, const std::string& targets, const std::string& weights,
                         const std::string& method = "RELATIVE") {
  return "<morph source=\"#" + base + "\" method=\"" + method + "\">" +
         NameSource("morph-targets", targets, "IDREF_array") + FloatSource("morph-weights", weights, 1) + "<targets>" +
         Input("MORPH_TARGET", "#morph-targets") + Input("MORPH_WEIGHT", "#morph-weights") + "</targets></morph>";
}

}  // namespace zyltest
