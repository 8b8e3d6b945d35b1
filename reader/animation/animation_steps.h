#pragma once
// The steps of the animation import, shared by its files: what one channel drives, what its
// sampler holds, and the take's time span that every key widens.

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "reader/animation/element_ids.h"
#include "reader/animation/target_index.h"
#include "reader/collada_import.h"
#include "reader/dom/dom.h"

namespace zylsdk {

// A channel on a `matrix` element (complete reading): the whole matrix (entry -1) or one entry
// (4 * row + column, as COLLADA lists matrices by rows), on the node the channel names.
struct MatrixChannelTarget {
  KZylNode* node = nullptr;
  KZylTakeNode* take = nullptr;
  const MatrixTarget* target = nullptr;
  int entry = -1;
};

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
  // Set instead of curves for a channel on a matrix element.
  std::optional<MatrixChannelTarget> matrix;
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
  // The complete reading's channels on matrix elements, kept for baking; null otherwise.
  MatrixAnimations* matrixAnimations = nullptr;
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

// Warns when the sampler's arrays do not hold `stride` values (tangents included) and
// `interpolationStride` interpolations per key.
void CheckSamplerSizes(AnimationContext& context, const SamplerArrays& arrays, int64_t stride,
                       int64_t interpolationStride);

// Curves keep single-precision numbers; larger magnitudes (infinities included) become the
// largest float of their sign.
float ToFloat(double value);

// The complete reading's channels on matrix elements. A path "<node>/<sid>" names a whole
// matrix, "<node>/<sid>(row)(column)" one entry; true, with curves.matrix set, when the path
// names a registered matrix element.
bool ResolveMatrixTarget(AnimationContext& context, KZylNode& node, KZylTakeNode& take, const KString& path,
                         const KString& member, ChannelCurves& curves);
// An empty store of such channels.
std::shared_ptr<MatrixAnimations> NewMatrixAnimations();
// Keeps the channel's keys for BakeMatrixAnimations and widens the take's span by them; a later
// channel on the same entry replaces an earlier one.
void RecordMatrixChannel(AnimationContext& context, const SamplerArrays& arrays, const MatrixChannelTarget& target);

// Sets the keys of one curve from the sampler.
void SetCurveKeys(AnimationContext& context, const SamplerArrays& arrays, KFCurve& curve, int64_t component,
                  int64_t stride);

}  // namespace zylsdk
