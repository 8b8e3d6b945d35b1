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

namespace {

// Reads the sources of the sampler's inputs into `read`, recording the notifications.
void ReadSamplerInputs(const AnimationContext& context, const DaeElement* animation, const DaeElement* sampler,
                       SamplerRead& read) {
  SamplerArrays& arrays = read.arrays;
  KArrayTemplate<DaeElement*> inputs;
  findChildrenByType(sampler, "input", inputs);
  for (DaeElement* input : inputs) {
    const KString semantic = DAE_GetProperty(input, "semantic");
    const KString sourceId = DAE_GetProperty(input, "source").Mid(1);
    const DaeElement* source = context.ids.Find(animation, sourceId);
    bool ok;
    // Every component of every item: a whole vector gives three values per key.
    if (semantic == "INPUT") {
      ok = ImportSourceComponents(source, arrays.times);
    } else if (semantic == "OUTPUT") {
      ok = ImportSourceComponents(source, arrays.values);
    } else if (semantic == "IN_TANGENT") {
      ok = ImportSourceComponents(source, arrays.inTangents);
    } else if (semantic == "OUT_TANGENT") {
      ok = ImportSourceComponents(source, arrays.outTangents);
    } else if (semantic == "INTERPOLATION") {
      ok = ImportSourceComponents(source, arrays.interpolations);
    } else {
      read.notes.emplace_back(false, "unknown animation source: " + semantic);
      continue;
    }
    if (!ok) {
      read.notes.emplace_back(true, "reading array in <source>: " + sourceId);
      read.ok = false;
      return;
    }
  }
}

}  // namespace

const SamplerArrays* ReadSampler(AnimationContext& context, const DaeElement* animation, const DaeElement* channel) {
  KZylReaderCollada& reader = context.reader;
  const KString samplerSource = DAE_GetProperty(channel, "source");
  const DaeElement* sampler = context.ids.Find(animation, samplerSource.Mid(1));
  if (!sampler) {
    reader.AddNotificationWarning("animation sampler not found: " + samplerSource);
    return nullptr;
  }
  auto [cached, isNew] = context.samplers.try_emplace({animation, sampler});
  SamplerRead& read = cached->second;
  if (isNew) ReadSamplerInputs(context, animation, sampler, read);
  for (const auto& [isError, text] : read.notes) {
    if (isError)
      reader.AddNotificationError(text);
    else
      reader.AddNotificationWarning(text);
  }
  return read.ok ? &read.arrays : nullptr;
}

void CheckSamplerSizes(AnimationContext& context, const SamplerArrays& shared, int64_t stride,
                       int64_t interpolationStride) {
  const int64_t expected = static_cast<int64_t>(shared.times.GetCount()) * stride;
  const int values = shared.values.GetCount();
  const int inTangents = shared.inTangents.GetCount();
  const int outTangents = shared.outTangents.GetCount();
  const int interpolations = shared.interpolations.GetCount();
  // The values are always counted; tangents and interpolations only when there are some.
  if (values != expected || Mismatch(inTangents, expected) || Mismatch(outTangents, expected) ||
      Mismatch(interpolations, static_cast<int64_t>(shared.times.GetCount()) * interpolationStride)) {
    context.reader.AddNotificationWarning(KString("Number of outputs (") + values + ")," + " in tangents (" +
                                          inTangents + ")," + " out tangents (" + outTangents + ") " +
                                          " or interpolation (" + interpolations + ")" +
                                          " not the number expected (" + expected + ").");
  }
}

void ApplySampler(AnimationContext& context, const SamplerArrays& shared, const ChannelCurves& curves) {
  CheckSamplerSizes(context, shared, curves.stride, curves.stride);
  const int64_t keys = static_cast<int64_t>(shared.times.GetCount()) * static_cast<int64_t>(curves.targets.size());
  if (!context.reader.SpendOutput(keys * OutputBudget::kBytesPerKey, "animation channels")) return;
  if (!curves.percent) {
    for (const ChannelCurves::Target& target : curves.targets)
      SetCurveKeys(context, shared, *target.curve, target.component, curves.stride);
    return;
  }
  // Other channels may share the sampler: the scaled arrays are this channel's own.
  SamplerArrays scaled = shared;
  // Each array over its own length.
  ScaleAll(scaled.values, kPercent);
  ScaleAll(scaled.inTangents, kPercent);
  ScaleAll(scaled.outTangents, kPercent);
  for (const ChannelCurves::Target& target : curves.targets)
    SetCurveKeys(context, scaled, *target.curve, target.component, curves.stride);
}

}  // namespace zylsdk
