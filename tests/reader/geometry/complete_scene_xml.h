#pragma once
// Documents for the tests of the complete reading: one node instancing one geometry.

#include <string>
#include <vector>

#include "tests/reader/geometry/mesh_xml.h"
#include "tests/support/documents.h"

namespace zyltest {

// A scene whose node "n" instances the geometry "g" (with `binding` inside the instance),
// after the libraries `libraries` and a geometry library holding `geometries`.
inline std::string InstancedGeometryScene(const std::string& geometries, const std::string& binding = "",
                                          const std::string& libraries = "") {
  return Collada(libraries + "<library_geometries>" + geometries +
                 "</library_geometries><library_visual_scenes><visual_scene id=\"vs\"><node id=\"n\">"
                 "<instance_geometry url=\"#g\">" +
                 binding +
                 "</instance_geometry></node></visual_scene></library_visual_scenes>"
                 "<scene><instance_visual_scene url=\"#vs\"/></scene>");
}

// The same with the mesh of "g" made of the square's positions, its vertices and `meshBody`.
inline std::string SquareMeshScene(const std::string& meshBody, const std::string& binding = "",
                                   const std::string& libraries = "") {
  return InstancedGeometryScene(Geometry("g", Mesh(SquarePositions() + PositionVertices() + meshBody)), binding,
                                libraries);
}

// The attribute of the scene's first top node in a dump.
inline const zyldae::Json& FirstNodeAttribute(const zyldae::Json& dump) {
  return dump["scene"]["root"]["children"][0]["attribute"];
}

// The control-point indices of every polygon of a dumped mesh.
inline std::vector<std::vector<int>> PolygonVertices(const zyldae::Json& mesh) {
  std::vector<std::vector<int>> polygons;
  for (const zyldae::Json& polygon : mesh["polygons"]) polygons.push_back(polygon["vertices"].get<std::vector<int>>());
  return polygons;
}

}  // namespace zyltest
