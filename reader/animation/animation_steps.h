#pragma once
// The steps of the animation import, shared by its files: what one channel drives, what its
// sampler holds, and the take's time span that every key widens.

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "reader/animation/element_ids.h"
#include "reader/animation/target_index.h"
#include "reader/collada_import.h"
#include "reader/dom/dom.h"

namespace zylsdk {

// The curves of one channel. Key i of a curve takes its value (and tangents and
// interpolation) at i * stride + component of the sampler's arrays.
struct ChannelCurves {
  struct Target {
    KFCurve* curve;
    int64_t component;
  };
  std::vector<Target> targets;
  int64_t stride = 1;
  // Light intensities and morph weights: COLLADA's 0 to 1 becomes the curve's 0 to 100.
  bool percent = false;
};

// The arrays a sampler's inputs give.
struct SamplerArrays {
  KArrayTemplate<double> times;  // seconds
  KArrayTemplate<double> values;
  KArrayTemplate<double> inTangents;
  KArrayTemplate<double> outTangents;
  KArrayTemplate<KString> interpolations;
};

// The reader's take span, widened by every key.
struct TakeSpan {
  KTime& start;
  KTime& stop;
  bool& firstKey;  // the next key restarts the span

  void Widen(double seconds);
};

// What reading a sampler gave: its arrays, or a failure, and the notifications it made, which
// every channel of the sampler makes again.
struct SamplerRead {
  bool ok = true;
  SamplerArrays arrays;
  std::vector<std::pair<bool, KString>> notes;  // (is an error, text), in order
};

// The samplers read so far, by the animation element that looked and the sampler element:
// channels that share a sampler read its sources once.
using SamplerCache = std::map<std::pair<const DaeElement*, const DaeElement*>, SamplerRead>;

struct AnimationContext {
  KZylReaderCollada& reader;
  const KZylReaderCollada::DocumentState& state;
  KZylScene& scene;
  AnimationTargetIndex& targets;
  const AnimationElementIds& ids;
  TakeSpan span;
  SamplerCache samplers;
};

enum class TargetResult {
  kCurves,  // the channel drives the curves found
  kSkip,    // the channel is skipped (reported)
  kFail,    // the animation element ends here (reported)
};

// Finds the curves that the channel's target names, making the nodes' takes on the way.
TargetResult ResolveChannelTarget(AnimationContext& context, const KString& target, ChannelCurves& curves);

// The arrays of the sampler of `channel`, found from `animation`; null (reported) when the
// channel must be skipped. They belong to the context.
const SamplerArrays* ReadSampler(AnimationContext& context, const DaeElement* animation, const DaeElement* channel);

// Checks the sampler's sizes against the curves (a warning only), scales percent channels and
// sets the keys of every curve.
void ApplySampler(AnimationContext& context, const SamplerArrays& arrays, const ChannelCurves& curves);

// Sets the keys of one curve from the sampler.
void SetCurveKeys(AnimationContext& context, const SamplerArrays& arrays, KFCurve& curve, int64_t component,
                  int64_t stride);

}  // namespace zylsdk
