// Samplers: the arrays of key times, values, tangents and interpolations that a channel's
// sampler gathers from the sources of its animation.

#include "reader/animation/animation_steps.h"
#include "reader/dom/dom.h"
#include "reader/dom/source.h"

namespace zylsdk {
namespace {

constexpr double kPercent = 100.0;

void ScaleAll(KArrayTemplate<double>& values, double factor) {
  for (double& value : values) value *= factor;
}

// True when a present array (one with values) does not hold `expected` values.
bool Mismatch(int count, int64_t expected) { return count != 0 && count != expected; }

}  // namespace

bool ReadSampler(AnimationContext& context, const DaeElement* animation, const DaeElement* channel, SamplerArrays& arrays) {
  KZylReaderCollada& reader = context.reader;
  const KString samplerSource = DAE_GetProperty(channel, "source");
  DaeElement* sampler = context.ids.Find(animation, samplerSource.Mid(1));
  if (!sampler) {
    reader.AddNotificationWarning("animation sampler not found: " + samplerSource);
    return false;
  }
  KArrayTemplate<DaeElement*> inputs;
  findChildrenByType(sampler, "input", inputs);
  for (DaeElement* input : inputs) {
    const KString semantic = DAE_GetProperty(input, "semantic");
    const KString sourceId = DAE_GetProperty(input, "source").Mid(1);
    const DaeElement* source = context.ids.Find(animation, sourceId);
    bool read;
    // Every component of every item: a whole vector gives three values per key.
    if (semantic == "INPUT") {
      read = ImportSourceComponents(source, arrays.times);
    } else if (semantic == "OUTPUT") {
      read = ImportSourceComponents(source, arrays.values);
    } else if (semantic == "IN_TANGENT") {
      read = ImportSourceComponents(source, arrays.inTangents);
    } else if (semantic == "OUT_TANGENT") {
      read = ImportSourceComponents(source, arrays.outTangents);
    } else if (semantic == "INTERPOLATION") {
      read = ImportSourceComponents(source, arrays.interpolations);
    } else {
      reader.AddNotificationWarning("unknown animation source: " + semantic);
      continue;
    }
    if (!read) {
      reader.AddNotificationError("reading array in <source>: " + sourceId);
      return false;
    }
  }
  return true;
}

void ApplySampler(AnimationContext& context, SamplerArrays& arrays, const ChannelCurves& curves) {
  const int64_t expected = static_cast<int64_t>(arrays.times.GetCount()) * curves.stride;
  const int values = arrays.values.GetCount();
  const int inTangents = arrays.inTangents.GetCount();
  const int outTangents = arrays.outTangents.GetCount();
  const int interpolations = arrays.interpolations.GetCount();
  // The values are always counted; tangents and interpolations only when there are some.
  if (values != expected || Mismatch(inTangents, expected) || Mismatch(outTangents, expected) ||
      Mismatch(interpolations, expected)) {
    context.reader.AddNotificationWarning(KString("Number of outputs (") + values + ")," + " in tangents (" +
                                          inTangents + ")," + " out tangents (" + outTangents + ") " +
                                          " or interpolation (" + interpolations + ")" +
                                          " not the number expected (" + expected + ").");
  }
  if (curves.percent) {
    // Each array over its own length.
    ScaleAll(arrays.values, kPercent);
    ScaleAll(arrays.inTangents, kPercent);
    ScaleAll(arrays.outTangents, kPercent);
  }
  for (const ChannelCurves::Target& target : curves.targets)
    SetCurveKeys(context, arrays, *target.curve, target.component, curves.stride);
}

}  // namespace zylsdk
