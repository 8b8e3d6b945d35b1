#pragma once
// Small builders of COLLADA mesh text for the geometry tests.

#include <string>

namespace zyltest {

// A `source` of float values read through an accessor of `stride` named params.
inline std::string FloatSource(const std::string& id, const std::string& values, int stride,
                               const std::string& name = "") {
  static const char* const kParams[] = {"X", "Y", "Z", "W"};
  std::string params;
  for (int i = 0; i < stride; ++i) params += "<param name=\"" + std::string(kParams[i % 4]) + "\" type=\"float\"/>";
  return "<source id=\"" + id + "\"" + (name.empty() ? "" : " name=\"" + name + "\"") + "><float_array id=\"" + id +
         "-array\">" + values + "</float_array><technique_common><accessor source=\"#" + id + "-array\" stride=\"" +
         std::to_string(stride) + "\">" + params + "</accessor></technique_common></source>";
}

// Positions of a unit square in the z = 0 plane: four control points.
inline std::string SquarePositions(const std::string& id = "pos") {
  return FloatSource(id, "0 0 0  1 0 0  1 1 0  0 1 0", 3);
}

// `vertices` with one POSITION input.
inline std::string PositionVertices(const std::string& source = "#pos") {
  return "<vertices id=\"verts\"><input semantic=\"POSITION\" source=\"" + source + "\"/></vertices>";
}

inline std::string VertexInput(int offset = 0) {
  return "<input semantic=\"VERTEX\" source=\"#verts\" offset=\"" + std::to_string(offset) + "\"/>";
}

inline std::string Mesh(const std::string& body) { return "<mesh>" + body + "</mesh>"; }

inline std::string Geometry(const std::string& id, const std::string& body) {
  return "<geometry id=\"" + id + "\">" + body + "</geometry>";
}

}  // namespace zyltest
