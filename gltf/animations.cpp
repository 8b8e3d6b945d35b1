// The current take's curves as one glTF animation. Translation and scaling keep their keys
// and interpolation (STEP, LINEAR, or CUBICSPLINE with the keys' derivatives) when their three
// curves share keys and interpolation; rotations become quaternions in the node's rotation
// order, with pre- and post-rotation, at the keys and, unless they step, at three more times
// inside every interval (glTF blends quaternions, not Euler angles). A node whose pivots or
// offsets make its translation depend on rotation and scaling has its translation sampled at
// those times too. Morph weights (percentages in the kit) become glTF weights.

#include <cmath>

#include "gltf/conversion_context.h"
#include "gltf/curve_sampling.h"
#include "gltf/transforms.h"

namespace zylgltf {

using namespace zylsdk;

namespace {

constexpr int kRotationSteps = 4;

using Curves = std::vector<const KFCurve*>;

const char* InterpolationName(int interpolation) {
  switch (interpolation) {
    case KFCurve::eInterpolationConstant: return "STEP";
    case KFCurve::eInterpolationCubic: return "CUBICSPLINE";
    default: return "LINEAR";
  }
}

class AnimationBuilder {
 public:
  explicit AnimationBuilder(ConversionContext& context) : mContext(context) {}

  void AddNode(const KZylNode& node, const KZylTakeNode& take, int target) {
    const Curves t = Find(take, KZylTakeNode::eTranslationX);
    const Curves r = Find(take, KZylTakeNode::eRotationX);
    const Curves s = Find(take, KZylTakeNode::eScaleX);
    const bool animatedT = Any(t), animatedR = Any(r), animatedS = Any(s);
    if (!animatedT && !animatedR && !animatedS) return;
    Curves all = t;
    all.insert(all.end(), r.begin(), r.end());
    all.insert(all.end(), s.begin(), s.end());
    const std::vector<float> keys = KeyTimes(all);
    const bool steps = CommonInterpolation(all, keys) == KFCurve::eInterpolationConstant;
    const std::vector<float> sampled = steps ? keys : Subdivided(keys, kRotationSteps);
    const bool plain = HasPlainTranslation(node);

    auto state = [&](const Curves& curves, const KZylVector4& fallback, float time) {
      KZylVector4 value = fallback;
      for (int axis = 0; axis < 3; ++axis)
        if (curves[static_cast<size_t>(axis)]) value[axis] = EvaluateCurve(*curves[static_cast<size_t>(axis)], time);
      return value;
    };
    auto trsAt = [&](float time) {
      return LocalTrs(node, state(t, node.GetDefaultT(), time), state(r, node.GetDefaultR(), time), state(s, node.GetDefaultS(), time));
    };

    if (animatedT && plain) AddKeyed(t, node.GetDefaultT(), target, "translation");
    if (!plain && (animatedT || animatedR || animatedS)) {
      std::vector<float> values;
      for (float time : sampled)
        for (double c : trsAt(time).translation) values.push_back(static_cast<float>(c));
      AddChannel(sampled, values, steps ? "STEP" : "LINEAR", target, "translation", 3);
    }
    if (animatedR) {
      std::vector<float> values;
      for (float time : sampled)
        for (double c : trsAt(time).rotation) values.push_back(static_cast<float>(c));
      AddChannel(sampled, values, steps ? "STEP" : "LINEAR", target, "rotation", 4);
    }
    if (animatedS) AddKeyed(s, node.GetDefaultS(), target, "scale");
  }

  void AddWeights(const KZylMesh& mesh, const KZylTakeNode& take, int target) {
    Curves curves;
    for (int shape = 0; shape < mesh.GetShapeCount(); ++shape) curves.push_back(take.FindShapeChannel(&mesh, shape));
    if (!Any(curves)) return;
    const std::vector<float> times = KeyTimes(curves);
    const int interpolation = CommonInterpolation(curves, times);
    const bool steps = interpolation == KFCurve::eInterpolationConstant;
    const std::vector<float> sampled = interpolation == KFCurve::eInterpolationLinear || steps ? times : Subdivided(times, kRotationSteps);
    std::vector<float> values;
    for (float time : sampled)
      for (int shape = 0; shape < mesh.GetShapeCount(); ++shape) {
        const KFCurve* curve = curves[static_cast<size_t>(shape)];
        // Animated weights are percentages; static ones are already fractions.
        const double weight = curve ? EvaluateCurve(*curve, time) / 100.0 : mesh.FindProperty(mesh.GetShapeName(shape)).GetDouble();
        values.push_back(std::isfinite(weight) ? static_cast<float>(weight) : 0.0f);
      }
    AddChannel(sampled, values, steps ? "STEP" : "LINEAR", target, "weights", 1);
  }

  void Finish(const std::string& name) {
    if (mAnimation.channels.empty()) return;
    mAnimation.name = name;
    mContext.model.animations.push_back(mAnimation);
  }

 private:
  static Curves Find(const KZylTakeNode& take, KZylTakeNode::EChannel first) {
    Curves curves;
    for (int axis = 0; axis < 3; ++axis) curves.push_back(take.FindCurve(static_cast<KZylTakeNode::EChannel>(first + axis)));
    // A curve without keys animates nothing.
    for (const KFCurve*& curve : curves)
      if (curve && curve->KeyGetCount() == 0) curve = nullptr;
    return curves;
  }

  static bool Any(const Curves& curves) {
    for (const KFCurve* curve : curves)
      if (curve && curve->KeyGetCount() > 0) return true;
    return false;
  }

  // Three curves of one vector, with their keys and interpolation when they share them.
  void AddKeyed(const Curves& curves, const KZylVector4& fallback, int target, const std::string& path) {
    const std::vector<float> keys = KeyTimes(curves);
    const int interpolation = CommonInterpolation(curves, keys);
    const std::vector<float> times = interpolation == 0 ? Subdivided(keys, kRotationSteps) : keys;
    std::vector<float> values;
    for (size_t index = 0; index < times.size(); ++index) {
      std::vector<float> in, value, out;
      for (int axis = 0; axis < 3; ++axis) {
        const KFCurve* curve = curves[static_cast<size_t>(axis)];
        value.push_back(static_cast<float>(curve ? EvaluateCurve(*curve, times[index]) : fallback[axis]));
        // With a common interpolation, every curve has its key `index` at this time.
        const int key = static_cast<int>(index);
        in.push_back(curve ? curve->KeyGetLeftDerivative(key) : 0.0f);
        out.push_back(curve ? curve->KeyGetRightDerivative(key) : 0.0f);
      }
      if (interpolation == KFCurve::eInterpolationCubic) values.insert(values.end(), in.begin(), in.end());
      values.insert(values.end(), value.begin(), value.end());
      if (interpolation == KFCurve::eInterpolationCubic) values.insert(values.end(), out.begin(), out.end());
    }
    AddChannel(times, values, interpolation == 0 ? "LINEAR" : InterpolationName(interpolation), target, path, 3);
  }

  void AddChannel(const std::vector<float>& times, const std::vector<float>& values, const std::string& interpolation,
                  int target, const std::string& path, int components) {
    if (times.empty()) return;
    tinygltf::AnimationSampler sampler;
    sampler.input = mContext.buffer.AddFloats(times, 1, true, 0);
    sampler.output = mContext.buffer.AddFloats(values, path == "weights" ? 1 : components, false, 0);
    sampler.interpolation = interpolation;
    mAnimation.samplers.push_back(sampler);
    tinygltf::AnimationChannel channel;
    channel.sampler = static_cast<int>(mAnimation.samplers.size() - 1);
    channel.target_node = target;
    channel.target_path = path;
    mAnimation.channels.push_back(channel);
  }

  ConversionContext& mContext;
  tinygltf::Animation mAnimation;
};

bool HasOtherCurves(const KZylTakeNode& take) {
  for (int channel = KZylTakeNode::eColorR; channel < KZylTakeNode::eChannelCount; ++channel)
    if (const KFCurve* curve = take.FindCurve(static_cast<KZylTakeNode::EChannel>(channel)))
      if (curve->KeyGetCount() > 0) return true;
  return false;
}

}  // namespace

void ConvertAnimations(ConversionContext& context, const KZylScene& scene) {
  const KString& takeName = scene.GetCurrentTakeName();
  AnimationBuilder builder(context);
  std::vector<const KZylNode*> nodes{scene.GetRootNode()};
  for (const KZylNode* node : scene.GetNodes()) nodes.push_back(node);
  for (const KZylNode* node : nodes) {
    const KZylTakeNode* take = takeName.IsEmpty() ? node->GetCurrentTakeNode() : node->FindTakeNode(takeName);
    if (!take) continue;
    const int target = context.nodes.at(node);
    builder.AddNode(*node, *take, target);
    const KZylNodeAttribute* attribute = node->GetNodeAttribute();
    if (attribute && attribute->GetAttributeType() == KZylNodeAttribute::eMesh) {
      const auto* mesh = static_cast<const KZylMesh*>(attribute);
      auto record = context.meshes.find(mesh);
      if (record != context.meshes.end() && record->second.mesh >= 0) builder.AddWeights(*mesh, *take, target);
    }
    if (HasOtherCurves(*take)) context.LeaveOut("light colour and intensity, cone angle and field of view curves");
  }
  builder.Finish(takeName.IsEmpty() ? "Take" : takeName.Std());
}

}  // namespace zylgltf
