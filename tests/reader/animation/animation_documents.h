#pragma once
// Helpers of the animation tests: animations written from key lists, documents that hold them
// beside a visual scene, and the curves of a read scene.

#include <string>
#include <vector>

#include "kit/zylsdk.h"
#include "tests/support/documents.h"

namespace zyltest {

// A float source `id` holding `values`, read through one accessor param of `type` ("float" or
// "float4x4") per name in `params` (the stride is the number of values they take).
inline std::string FloatSource(const std::string& id, const std::string& values,
                               const std::vector<std::string>& params = {"X"}, const std::string& type = "float") {
  const size_t width = type == "float4x4" ? 16 : 1;
  std::string accessor =
      "<accessor source=\"#" + id + "-array\" stride=\"" + std::to_string(params.size() * width) + "\">";
  for (const std::string& name : params) accessor += "<param name=\"" + name + "\" type=\"" + type + "\"/>";
  return "<source id=\"" + id + "\"><float_array id=\"" + id + "-array\">" + values +
         "</float_array><technique_common>" + accessor + "</accessor></technique_common></source>";
}

// A source `id` of names.
inline std::string NameSource(const std::string& id, const std::string& names) {
  return "<source id=\"" + id + "\"><Name_array id=\"" + id + "-array\">" + names +
         "</Name_array><technique_common><accessor source=\"#" + id +
         "-array\"><param name=\"INTERPOLATION\" type=\"name\"/></accessor></technique_common></source>";
}

// The keys of one channel. Empty lists leave their input out of the sampler.
struct Keys {
  std::string times{};
  std::string values{};
  std::string interpolations{};
  std::string inTangents{};
  std::string outTangents{};
  std::vector<std::string> params = {"X"};  // of the output
  std::string type = "float";               // of the output's params
};

// The sources, sampler "<id>-sampler" and channel of one animation channel on `target`,
// without the enclosing element.
inline std::string ChannelBody(const std::string& id, const std::string& target, const Keys& keys) {
  std::string sources = FloatSource(id + "-input", keys.times, {"TIME"});
  std::string inputs = "<input semantic=\"INPUT\" source=\"#" + id + "-input\"/>";
  sources += FloatSource(id + "-output", keys.values, keys.params, keys.type);
  inputs += "<input semantic=\"OUTPUT\" source=\"#" + id + "-output\"/>";
  if (!keys.inTangents.empty()) {
    sources += FloatSource(id + "-in", keys.inTangents, keys.params);
    inputs += "<input semantic=\"IN_TANGENT\" source=\"#" + id + "-in\"/>";
  }
  if (!keys.outTangents.empty()) {
    sources += FloatSource(id + "-out", keys.outTangents, keys.params);
    inputs += "<input semantic=\"OUT_TANGENT\" source=\"#" + id + "-out\"/>";
  }
  if (!keys.interpolations.empty()) {
    sources += NameSource(id + "-interpolation", keys.interpolations);
    inputs += "<input semantic=\"INTERPOLATION\" source=\"#" + id + "-interpolation\"/>";
  }
  return sources + "<sampler id=\"" + id + "-sampler\">" + inputs + "</sampler><channel source=\"#" + id +
         "-sampler\" target=\"" + target + "\"/>";
}

// An `animation` element `id` of one channel.
inline std::string Animation(const std::string& id, const std::string& target, const Keys& keys) {
  return "<animation id=\"" + id + "\">" + ChannelBody(id, target, keys) + "</animation>";
}

// A document with `libraries`, the visual scene "vs" of `nodes` that its scene instances, and
// `animations` in a library of their own.
inline std::string AnimatedDocument(const std::string& libraries, const std::string& nodes,
                                    const std::string& animations) {
  return Collada(libraries + "<library_visual_scenes><visual_scene id=\"vs\">" + nodes +
                 "</visual_scene></library_visual_scenes><library_animations>" + animations +
                 "</library_animations><scene><instance_visual_scene url=\"#vs\"/></scene>");
}

// A node "box" with a translate, rotations about Z, Y and X, and a scale, each with a sid.
inline const char* BoxNode() {
  return "<node id=\"box\" name=\"box\"><translate sid=\"translate\">1 2 3</translate>"
         "<rotate sid=\"rotateZ\">0 0 1 0</rotate><rotate sid=\"rotateY\">0 1 0 0</rotate>"
         "<rotate sid=\"rotateX\">1 0 0 0</rotate><rotate sid=\"tilt\">0 0 2 45</rotate>"
         "<scale sid=\"scale\">1 1 1</scale></node>";
}

// The curve of `channel` in the "Take 001" take node of the scene's node `name`; null when the
// node, its take node or the curve does not exist.
inline const zylsdk::KFCurve* FindCurve(const zylsdk::KZylScene* scene, const char* name,
                                        zylsdk::KZylTakeNode::EChannel channel) {
  const zylsdk::KZylNode* node = scene ? scene->FindNodeByName(name) : nullptr;
  const zylsdk::KZylTakeNode* take = node ? node->FindTakeNode("Take 001") : nullptr;
  return take ? take->FindCurve(channel) : nullptr;
}

// The shape channel `index` of the node's geometry, the same way.
inline const zylsdk::KFCurve* FindShapeCurve(const zylsdk::KZylScene* scene, const char* name, int index) {
  const zylsdk::KZylNode* node = scene ? scene->FindNodeByName(name) : nullptr;
  const zylsdk::KZylTakeNode* take = node ? node->FindTakeNode("Take 001") : nullptr;
  return take ? take->FindShapeChannel(node->GetGeometry(), index) : nullptr;
}

// The take's local time span of a read.
inline zylsdk::KTimeSpan TakeSpan(const zyldae::ReadResult& read) {
  const zylsdk::KZylTakeInfo* take = read.scene ? read.scene->GetTakeInfo("Take 001") : nullptr;
  return take ? take->mLocalTimeSpan : zylsdk::KTimeSpan();
}

}  // namespace zyltest
