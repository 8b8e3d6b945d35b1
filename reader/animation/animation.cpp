// Animation elements: the channels of each `animation`, then its nested animations.

#include <memory>

#include "reader/animation/animation_steps.h"
#include "reader/dom/dom.h"

namespace zylsdk {
namespace {

// One channel: its curves, then its sampler's keys on them. False when the animation element
// must end here.
bool ImportChannel(AnimationContext& context, const DaeElement* animation, const DaeElement* channel) {
  const KZylReaderCollada::ReadingAt reading(context.reader, channel);
  ChannelCurves curves;
  switch (ResolveChannelTarget(context, DAE_GetProperty(channel, "target"), curves)) {
    case TargetResult::kFail:
      return false;
    case TargetResult::kSkip:
      return true;
    case TargetResult::kCurves:
      break;
  }
  if (curves.matrix) {
    if (const SamplerArrays* arrays = ReadSampler(context, animation, channel))
      RecordMatrixChannel(context, *arrays, *curves.matrix);
    return true;
  }
  if (curves.targets.empty()) return true;
  if (const SamplerArrays* arrays = ReadSampler(context, animation, channel)) ApplySampler(context, *arrays, curves);
  return true;
}

// The channels of `animation` first, then its nested animations, whose results do not count.
// Recursion follows the nesting of the document.
bool ImportAnimationElement(AnimationContext& context, DaeElement* animation) {
  KArrayTemplate<DaeElement*> channels;
  findChildrenByType(animation, "channel", channels);
  // The first key of each animation that has channels restarts the take's span.
  if (!channels.IsEmpty()) context.span.firstKey = true;
  const KZylReaderCollada::ReadingAt reading(context.reader, animation);
  for (DaeElement* channel : channels)
    if (!ImportChannel(context, animation, channel)) return false;
  KArrayTemplate<DaeElement*> nested;
  findChildrenByType(animation, "animation", nested);
  for (DaeElement* child : nested) ImportAnimationElement(context, child);
  return true;
}

}  // namespace

bool KZylReaderCollada::ImportAnimation(DaeElement* animation, KZylScene& scene) {
  const ReadingAt reading(*this, animation);
  if (!DAE_IsElement(animation, "animation")) {
    AddNotificationError("Node is not an animation node: " + DAE_GetProperty(animation, "id"));
    return mStatus = false;
  }
  std::shared_ptr<AnimationTargetIndex>& index = mState->animationTargetIndex;
  if (!index || !index->Covers(scene.GetRootNode()))
    index = std::make_shared<AnimationTargetIndex>(scene.GetRootNode(), mSceneElement);
  const AnimationElementIds ids(animation);
  std::shared_ptr<MatrixAnimations>& matrixAnimations = mState->matrixAnimations;
  if (mComplete && !matrixAnimations) matrixAnimations = NewMatrixAnimations();
  AnimationContext context{*this, *mState, scene, *index, ids, {mAnimationStart, mAnimationStop, mFirstKey}, {},
                           matrixAnimations.get()};
  return mStatus = ImportAnimationElement(context, animation);
}

}  // namespace zylsdk
