#pragma once
// Helpers of the node, instance and object tests: documents with one visual scene, nodes of a
// read scene or of its dump, and the reader's registries for tests that register kit objects
// themselves.

#include <string>

#include "reader/collada_import.h"
#include "tests/support/documents.h"

namespace zyltest {

// A document with `libraries`, one visual scene "vs" holding `nodes`, and the scene that
// instances it.
inline std::string SceneDocument(const std::string& libraries, const std::string& nodes) {
  return Collada(libraries + "<library_visual_scenes><visual_scene id=\"vs\">" + nodes +
                 "</visual_scene></library_visual_scenes><scene><instance_visual_scene url=\"#vs\"/></scene>");
}

// The reader's registries, writable: the state object is the reader's own, not a constant.
inline zylsdk::KZylReaderCollada::DocumentState& MutableState(zylsdk::KZylReaderCollada& reader) {
  return const_cast<zylsdk::KZylReaderCollada::DocumentState&>(reader.GetState());
}

// The first node of that name in a dump's hierarchy (depth first), or null.
inline const zyldae::Json* FindDumpNode(const zyldae::Json& node, const std::string& name) {
  if (node.is_object() && node.contains("name") && node["name"] == name) return &node;
  if (!node.is_object() || !node.contains("children")) return nullptr;
  for (const zyldae::Json& child : node["children"])
    if (const zyldae::Json* found = FindDumpNode(child, name)) return found;
  return nullptr;
}

}  // namespace zyltest
